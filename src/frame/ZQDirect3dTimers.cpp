// The timer list serviced once per frame.
#include "ZQ/frame/ZQDirect3d.h"
#include "ZQ/core/ZQLock.h"

#include <cmath>

namespace ZQ {

namespace {

// Float steps of a frame time that divides the period add up to a little more or less than it.
const float kTimerTolerance = 1e-5f;

} // namespace

// Timers: removal only disables an entry, so that a callback may remove timers while the list is walked;
// disabled entries are dropped when the next timer is added.

HRESULT ZQDirect3d::AddTimer(ZQCallbackTimer callback, float timeoutInSecs, UINT* id, void* context) {
    if (!callback || timeoutInSecs < 0.0f)
        return E_INVALIDARG;
    ZQLock lock(&m_stateLock);
    ZQTimerArray* list = m_TimerList;
    if (!list)
        return E_FAIL;
    for (int i = list->GetSize() - 1; i >= 0; --i)
        if (!(*list)[i].enabled)
            list->Remove(i);
    const _ZQTimerList_tag timer = {callback, context, timeoutInSecs, timeoutInSecs, true, m_nextTimerId};
    const HRESULT hr = list->Add(timer);
    if (FAILED(hr))
        return hr;
    if (id)
        *id = m_nextTimerId;
    ++m_nextTimerId;
    return S_OK;
}

HRESULT ZQDirect3d::ChangeTimer(UINT id, float timeoutInSecs) {
    if (timeoutInSecs < 0.0f)
        return E_INVALIDARG;
    ZQLock lock(&m_stateLock);
    for (int i = 0; m_TimerList && i < m_TimerList->GetSize(); ++i) {
        _ZQTimerList_tag& timer = (*m_TimerList)[i];
        if (timer.enabled && timer.id == id) {
            timer.timeoutInSecs = timeoutInSecs;
            timer.countdown = timeoutInSecs;
            return S_OK;
        }
    }
    return E_INVALIDARG;
}

HRESULT ZQDirect3d::RemoveTimer(UINT id) {
    ZQLock lock(&m_stateLock);
    for (int i = 0; m_TimerList && i < m_TimerList->GetSize(); ++i) {
        _ZQTimerList_tag& timer = (*m_TimerList)[i];
        if (timer.enabled && timer.id == id) {
            timer.enabled = false;
            return S_OK;
        }
    }
    return E_INVALIDARG;
}

void ZQDirect3d::HandleTimers() {
    const float elapsed = GetElapsedTime();
    for (int i = 0;; ++i) {
        _ZQTimerList_tag fired;
        {
            ZQLock lock(&m_stateLock);
            if (!m_TimerList || i >= m_TimerList->GetSize())
                return;
            _ZQTimerList_tag& timer = (*m_TimerList)[i];
            if (!timer.enabled)
                continue;
            // The countdown keeps its phase: a period of p fires once for each p of frame time. A frame
            // longer than the period fires once, the periods it spans beyond that are dropped (no burst
            // of calls after a stall), and the phase is kept.
            timer.countdown -= elapsed;
            if (timer.countdown > kTimerTolerance)
                continue;
            const float period = timer.timeoutInSecs;
            timer.countdown += period;
            if (timer.countdown <= kTimerTolerance)
                timer.countdown = period > 0.0f ? period - std::fmod(-timer.countdown, period) : 0.0f;
            fired = timer;
        }
        fired.callback(fired.id, fired.context);
    }
}

} // namespace ZQ
