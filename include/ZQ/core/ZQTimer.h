#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// Timer on the performance counter, paused after construction. While paused, "now" is the
/// moment of pausing (moved on by Advance). Without a counter every query returns -1.0 and every
/// other operation does nothing. Not thread-safe.
class ZQ_API ZQTimer {
public:
    ZQTimer();

    /// Time 0 is now (or the pause moment); runs.
    void Reset();
    /// Runs again; a pause is not counted.
    void Start();
    /// Pauses.
    void Stop();
    /// Moves a paused timer on by 0.1 s.
    void Advance();
    /// Seconds since the counter's origin.
    double GetAbsoluteTime();
    /// Seconds since time 0.
    double GetTime();
    /// Seconds since the previous call.
    double GetElapsedTime();
    bool IsStopped() const { return m_stopped; }

private:
    LONGLONG Now() const;

    bool m_usingCounter;
    bool m_stopped;
    LONGLONG m_ticksPerSecond;
    LONGLONG m_stopTime;
    LONGLONG m_lastElapsedTime;
    LONGLONG m_baseTime;
};

} // namespace ZQ
