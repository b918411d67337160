#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// Scoped lock: enters the critical section on construction, leaves it on destruction.
class ZQ_API ZQLock {
public:
    explicit ZQLock(CRITICAL_SECTION* cs);
    ~ZQLock();
    ZQLock(const ZQLock&) = delete;
    /// Copies the pointer.
    ZQLock& operator=(const ZQLock& other) = default;

private:
    CRITICAL_SECTION* m_cs;
};

/// Scoped unlock: leaves a critical section the caller holds and enters it again on destruction.
class ZQ_API ZQUnLock {
public:
    explicit ZQUnLock(CRITICAL_SECTION* cs);
    ~ZQUnLock();
    ZQUnLock(const ZQUnLock&) = delete;
    /// Copies the pointer.
    ZQUnLock& operator=(const ZQUnLock& other) = default;

private:
    CRITICAL_SECTION* m_cs;
};

} // namespace ZQ
