#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// A critical section held as a member: initialised with its holder, deleted with it. A copy gets a
/// fresh, unlocked section, and assignment keeps the target's own, so that a class holding one can
/// default its copy. Converts to the CRITICAL_SECTION* that ZQLock and ZQUnLock take.
class ZQ_API ZQCriticalSection {
public:
    ZQCriticalSection() { InitializeCriticalSection(&m_section); }
    ZQCriticalSection(const ZQCriticalSection&) : ZQCriticalSection() {}
    ZQCriticalSection& operator=(const ZQCriticalSection&) { return *this; }
    ~ZQCriticalSection() { DeleteCriticalSection(&m_section); }

    operator CRITICAL_SECTION*() { return &m_section; }

    /// A copy of member, taken inside the section (a value: not for what is handed out by pointer).
    template <typename T> T Read(const T& member) {
        ZQLock lock(&m_section);
        return member;
    }
    /// Sets member inside the section (a ZQString keeps its quirk: an empty value changes nothing).
    template <typename T> void Write(T& member, const T& value) {
        ZQLock lock(&m_section);
        member = value;
    }

private:
    CRITICAL_SECTION m_section;
};

} // namespace ZQ
