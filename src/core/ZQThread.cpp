#include "ZQ/core/ZQThread.h"
#include "ZQ/core/ZQLock.h"

namespace ZQ {

namespace {
const DWORD kThreadExitCode = 920;
const DWORD kShutdownWaitMs = 3000;
} // namespace

void _ZQResponseThread_tag::OnThread(void*) {}

void _ZQResponseThread_tag::OnThreadFinish(void*) {}

ZQThread::ZQThread() : m_param(this), m_thread(nullptr), m_posWParam(0), m_posLParam(0), m_finished(false),
                       m_started(false) {
    m_thread = CreateThread(nullptr, 0, pThread, this, CREATE_SUSPENDED, nullptr);
    InitializeCriticalSection(&m_lock);
}

ZQThread::~ZQThread() {
    if (m_thread) {
        // A job that never started has nothing to wait for.
        bool started;
        {
            ZQLock lock(&m_lock);
            started = m_started;
        }
        if (!started || WaitForSingleObject(m_thread, kShutdownWaitMs) != WAIT_OBJECT_0)
            TerminateThread(m_thread, kThreadExitCode);
        CloseHandle(m_thread);
        m_thread = nullptr;
    }
    DeleteCriticalSection(&m_lock);
}

void ZQThread::OnThread(void*) {}

void ZQThread::OnThreadFinish(void*) {}

void ZQThread::SetStart(void* param) {
    ZQLock lock(&m_lock);
    if (m_finished || m_started || !m_thread)
        return;
    m_param = param;
    m_started = true;
    ResumeThread(m_thread);
}

void ZQThread::SetPos(HWND window, unsigned int wParam, unsigned int lParam) {
    ZQLock lock(&m_lock);
    if (m_finished)
        return;
    m_posWParam = wParam;
    m_posLParam = lParam;
    PostMessageW(window, ZQ_WM_THREAD_POS, wParam, lParam);
}

void ZQThread::SetFinish(bool finished) {
    ZQLock lock(&m_lock);
    m_finished = finished;
}

bool ZQThread::GetFinish() {
    ZQLock lock(&m_lock);
    return m_finished;
}

DWORD WINAPI ZQThread::pThread(void* self) {
    ZQThread* thread = static_cast<ZQThread*>(self);
    void* param;
    {
        ZQLock lock(&thread->m_lock);
        param = thread->m_param;
    }
    thread->OnThread(param);
    thread->SetFinish(true);
    thread->OnThreadFinish(param);
    return kThreadExitCode;
}

} // namespace ZQ
