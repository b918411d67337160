#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

using ZQ::ZQLock;
using ZQ::ZQThread;
using ZQ::ZQTimer;
using ZQ::ZQUnLock;

namespace {

bool OtherThreadCanEnter(CRITICAL_SECTION* cs) {
    bool entered = false;
    std::thread([&] {
        if (TryEnterCriticalSection(cs)) {
            entered = true;
            LeaveCriticalSection(cs);
        }
    }).join();
    return entered;
}

} // namespace

TEST(ZQLock, HoldsForItsScopeAndUnLockReleasesWithin) {
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    {
        ZQLock lock(&section);
        EXPECT_FALSE(OtherThreadCanEnter(&section));
        {
            ZQUnLock unlock(&section);
            EXPECT_TRUE(OtherThreadCanEnter(&section));
        }
        EXPECT_FALSE(OtherThreadCanEnter(&section));
    }
    EXPECT_TRUE(OtherThreadCanEnter(&section));
    DeleteCriticalSection(&section);
}

namespace {

// A job that reports progress to a message-only window and logs what it was called with; a hanging one
// signals that it runs and never returns.
class ReportingJob : public ZQThread {
public:
    explicit ReportingJob(HWND window, bool hangs = false) : m_window(window), m_hangs(hangs) {}
    void Start(void* param) { SetStart(param); }
    void Report(unsigned int w, unsigned int l) { SetPos(m_window, w, l); }
    void OnThread(void* param) override {
        jobThread = GetCurrentThreadId();
        if (m_hangs) {
            DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &self, 0, FALSE,
                            DUPLICATE_SAME_ACCESS);
            SetEvent(done);
            for (;;)
                Sleep(10);
        }
        log += "job:" + std::to_string(reinterpret_cast<uintptr_t>(param)) + " ";
        Report(3, 7);
    }
    void OnThreadFinish(void*) override {
        log += GetFinish() ? "finished " : "not-finished ";
        SetEvent(done);
    }
    ~ReportingJob() override { CloseHandle(done); }

    std::string log;
    DWORD jobThread = 0;
    HANDLE self = nullptr;
    HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);

private:
    HWND m_window;
    bool m_hangs;
};

// The posted progress messages, as "wParam,lParam" each.
std::string Posted(HWND window) {
    std::string posted;
    MSG msg;
    while (PeekMessageW(&msg, window, ZQ::ZQ_WM_THREAD_POS, ZQ::ZQ_WM_THREAD_POS, PM_REMOVE))
        posted += std::to_string(msg.wParam) + "," + std::to_string(msg.lParam) + " ";
    return posted;
}

} // namespace

TEST(ZQThread, RunsTheJobOnceAndReportsProgressUntilFinished) {
    HWND window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ReportingJob job(window);
    EXPECT_EQ(WaitForSingleObject(job.done, 100), static_cast<DWORD>(WAIT_TIMEOUT)) << "created suspended";
    job.Start(reinterpret_cast<void*>(42));
    ASSERT_EQ(WaitForSingleObject(job.done, 10000), static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_NE(job.jobThread, GetCurrentThreadId());
    EXPECT_EQ(Posted(window), "3,7 ");
    job.Report(5, 5);
    EXPECT_EQ(Posted(window), "") << "nothing is posted after the job has finished";
    job.Start(nullptr);
    Sleep(50);
    EXPECT_EQ(job.log, "job:42 finished ") << "a job runs once";
    job.ZQThread::OnThreadFinish(nullptr); // the default does nothing
    EXPECT_EQ(job.log, "job:42 finished ");
    DestroyWindow(window);
}

TEST(ZQThread, AJobNeverStartedIsEndedAtOnceOneThatNeverReturnsAfterAboutThreeSeconds) {
    ULONGLONG before = GetTickCount64();
    delete new ReportingJob(nullptr);
    EXPECT_LT(GetTickCount64() - before, 2000u);

    ReportingJob* job = new ReportingJob(nullptr, true);
    job->Start(nullptr);
    ASSERT_EQ(WaitForSingleObject(job->done, 10000), static_cast<DWORD>(WAIT_OBJECT_0));
    HANDLE self = job->self;
    before = GetTickCount64();
    delete job;
    const ULONGLONG waited = GetTickCount64() - before;
    EXPECT_GE(waited, 2900u);
    EXPECT_LT(waited, 15000u);
    DWORD exitCode = 0;
    ASSERT_TRUE(GetExitCodeThread(self, &exitCode));
    EXPECT_EQ(exitCode, 920u);
    CloseHandle(self);
}

TEST(ZQTimer, ANewTimerIsPausedAtTheCounterOriginAndStepsWithAdvance) {
    ZQTimer timer;
    EXPECT_TRUE(timer.IsStopped());
    LARGE_INTEGER counter, frequency;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&counter);
    const double counterSeconds = static_cast<double>(counter.QuadPart) / frequency.QuadPart;
    EXPECT_GE(timer.GetTime(), counterSeconds) << "measured from counter 0";
    EXPECT_LT(timer.GetTime(), counterSeconds + 5.0);
    EXPECT_NEAR(timer.GetAbsoluteTime(), timer.GetTime(), 1.0);
    ZQTimer started;
    started.Start();
    EXPECT_LT(started.GetTime(), 1.0) << "a new timer started counts from 0";

    timer.Reset();
    EXPECT_FALSE(timer.IsStopped());
    Sleep(20);
    timer.Stop();
    const double atStop = timer.GetTime();
    EXPECT_GT(atStop, 0.0);
    Sleep(500);
    EXPECT_EQ(timer.GetTime(), atStop) << "a paused timer stands still";
    for (int i = 0; i < 3; ++i)
        timer.Advance();
    EXPECT_NEAR(timer.GetTime() - atStop, 0.3, 1e-6);
    EXPECT_NEAR(timer.GetElapsedTime(), 0.3, 1e-6);
    EXPECT_EQ(timer.GetElapsedTime(), 0.0);
    timer.Start();
    EXPECT_NEAR(timer.GetTime() - atStop, 0.3, 0.1) << "restarted, the advance counts and the 500 ms pause does not";
}
