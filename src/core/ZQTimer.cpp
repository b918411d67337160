#include "ZQ/core/ZQTimer.h"

namespace ZQ {

namespace {
LONGLONG Counter() {
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    return now.QuadPart;
}
} // namespace

ZQTimer::ZQTimer() : m_usingCounter(false), m_stopped(true), m_ticksPerSecond(0), m_stopTime(0),
                     m_lastElapsedTime(0), m_baseTime(0) {
    LARGE_INTEGER frequency;
    m_usingCounter = QueryPerformanceFrequency(&frequency) && frequency.QuadPart > 0;
    if (m_usingCounter)
        m_ticksPerSecond = frequency.QuadPart;
}

// A stop time of 0 (a timer never started) reads the live counter.
LONGLONG ZQTimer::Now() const {
    return m_stopTime != 0 ? m_stopTime : Counter();
}

void ZQTimer::Reset() {
    if (!m_usingCounter)
        return;
    const LONGLONG now = Now();
    m_baseTime = now;
    m_lastElapsedTime = now;
    m_stopTime = 0;
    m_stopped = false;
}

void ZQTimer::Start() {
    if (!m_usingCounter)
        return;
    const LONGLONG now = Counter();
    if (m_stopped)
        m_baseTime += now - m_stopTime;
    m_stopTime = 0;
    m_lastElapsedTime = now;
    m_stopped = false;
}

void ZQTimer::Stop() {
    if (!m_usingCounter || m_stopped)
        return;
    const LONGLONG now = Counter();
    m_stopTime = now;
    m_lastElapsedTime = now;
    m_stopped = true;
}

void ZQTimer::Advance() {
    if (m_usingCounter)
        m_stopTime += m_ticksPerSecond / 10;
}

double ZQTimer::GetAbsoluteTime() {
    if (!m_usingCounter)
        return -1.0;
    return static_cast<double>(Now()) / static_cast<double>(m_ticksPerSecond);
}

double ZQTimer::GetTime() {
    if (!m_usingCounter)
        return -1.0;
    return static_cast<double>(Now() - m_baseTime) / static_cast<double>(m_ticksPerSecond);
}

double ZQTimer::GetElapsedTime() {
    if (!m_usingCounter)
        return -1.0;
    const LONGLONG now = Now();
    const double elapsed = static_cast<double>(now - m_lastElapsedTime) / static_cast<double>(m_ticksPerSecond);
    m_lastElapsedTime = now;
    return elapsed;
}

} // namespace ZQ
