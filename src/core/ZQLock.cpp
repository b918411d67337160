#include "ZQ/core/ZQLock.h"

namespace ZQ {

ZQLock::ZQLock(CRITICAL_SECTION* cs) : m_cs(cs) {
    EnterCriticalSection(m_cs);
}

ZQLock::~ZQLock() {
    LeaveCriticalSection(m_cs);
    m_cs = nullptr;
}

ZQUnLock::ZQUnLock(CRITICAL_SECTION* cs) : m_cs(cs) {
    LeaveCriticalSection(m_cs);
}

ZQUnLock::~ZQUnLock() {
    EnterCriticalSection(m_cs);
    m_cs = nullptr;
}

} // namespace ZQ
