#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// Callbacks for objects that are told about a worker thread's job. Overrides must not throw: they run
/// on the library's threads, which cannot unwind.
class ZQ_API _ZQResponseThread_tag {
public:
    virtual void OnThread(void* param);
    virtual void OnThreadFinish(void* param);

protected:
    ~_ZQResponseThread_tag() = default;
};

/// Message that SetPos posts to report progress (WM_USER + 4000).
const UINT ZQ_WM_THREAD_POS = WM_USER + 4000;

/// Worker thread that runs one job once: derive, override OnThread (which must not throw), call SetStart.
/// The destructor waits up to 3 seconds for a started job and then terminates the thread
/// (exit code 920), so a hanging job cannot hang shutdown; destroy the object only after the
/// job has finished, or its override runs on a half-destroyed object.
class ZQ_API ZQThread : public ZQHeapObject {
public:
    ZQThread();
    virtual ~ZQThread();
    ZQThread(const ZQThread&) = delete;
    ZQThread& operator=(const ZQThread&) = delete;

    /// The job; runs on the worker thread.
    virtual void OnThread(void* param);
    /// Runs on the worker thread after OnThread has returned and the finished flag is set.
    virtual void OnThreadFinish(void* param);

protected:
    /// Stores param and starts the job, unless it has finished already. Starts it once.
    void SetStart(void* param);
    /// Posts ZQ_WM_THREAD_POS (5024) with both values to the window, unless the job has finished.
    void SetPos(HWND window, unsigned int wParam, unsigned int lParam);
    void SetFinish(bool finished);
    bool GetFinish();

private:
    static DWORD WINAPI pThread(void* self);

    void* m_param;
    HANDLE m_thread;
    unsigned int m_posWParam;
    unsigned int m_posLParam;
    bool m_finished;
    bool m_started;
    CRITICAL_SECTION m_lock;
};

} // namespace ZQ
