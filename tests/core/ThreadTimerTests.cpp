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

class CriticalSection {
public:
    CriticalSection() { InitializeCriticalSection(&cs); }
    ~CriticalSection() { DeleteCriticalSection(&cs); }
    CRITICAL_SECTION cs;
};

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
    CriticalSection section;
    {
        ZQLock lock(&section.cs);
        EXPECT_FALSE(OtherThreadCanEnter(&section.cs));
        {
            ZQUnLock unlock(&section.cs);
            EXPECT_TRUE(OtherThreadCanEnter(&section.cs));
        }
        EXPECT_FALSE(OtherThreadCanEnter(&section.cs));
    }
    EXPECT_TRUE(OtherThreadCanEnter(&section.cs));
}

namespace {

// A window whose queue shows what worker threads post to it.
class MessageWindow {
public:
    MessageWindow() { hWnd = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr); }
    ~MessageWindow() { DestroyWindow(hWnd); }
    int CountPosted(WPARAM* lastWParam = nullptr, LPARAM* lastLParam = nullptr) {
        int count = 0;
        MSG msg;
        while (PeekMessageW(&msg, hWnd, ZQ::ZQ_WM_THREAD_POS, ZQ::ZQ_WM_THREAD_POS, PM_REMOVE)) {
            ++count;
            if (lastWParam)
                *lastWParam = msg.wParam;
            if (lastLParam)
                *lastLParam = msg.lParam;
        }
        return count;
    }
    HWND hWnd;
};

class ReportingJob : public ZQThread {
public:
    explicit ReportingJob(HWND window) : m_window(window) {}
    void Start(void* param) { SetStart(param); }
    void Report(unsigned int w, unsigned int l) { SetPos(m_window, w, l); }
    bool Finished() { return GetFinish(); }
    void OnThread(void* param) override {
        log += "job:" + std::to_string(reinterpret_cast<uintptr_t>(param)) + " ";
        Report(3, 7);
        jobThread = GetCurrentThreadId();
    }
    void OnThreadFinish(void*) override {
        log += Finished() ? "finished " : "not-finished ";
        SetEvent(done);
    }
    ~ReportingJob() override { CloseHandle(done); }

    std::string log;
    DWORD jobThread = 0;
    HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);

private:
    HWND m_window;
};

} // namespace

TEST(ZQThread, RunsTheJobOnceAndReportsProgressUntilFinished) {
    MessageWindow window;
    ReportingJob job(window.hWnd);
    EXPECT_EQ(WaitForSingleObject(job.done, 100), static_cast<DWORD>(WAIT_TIMEOUT)) << "created suspended";
    job.Start(reinterpret_cast<void*>(42));
    ASSERT_EQ(WaitForSingleObject(job.done, 10000), static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_EQ(job.log, "job:42 finished ");
    EXPECT_NE(job.jobThread, GetCurrentThreadId());

    WPARAM w = 0;
    LPARAM l = 0;
    EXPECT_EQ(window.CountPosted(&w, &l), 1);
    EXPECT_EQ(w, 3u);
    EXPECT_EQ(l, 7);

    job.Report(5, 5);
    EXPECT_EQ(window.CountPosted(), 0) << "nothing is posted after the job has finished";
    job.Start(nullptr);
    Sleep(50);
    EXPECT_EQ(job.log, "job:42 finished ") << "a job runs once";
}

namespace {
class HangingJob : public ZQThread {
public:
    void Start() { SetStart(nullptr); }
    void OnThread(void*) override {
        DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &self, 0, FALSE,
                        DUPLICATE_SAME_ACCESS);
        SetEvent(running);
        for (;;)
            Sleep(10);
    }
    HANDLE self = nullptr;
    HANDLE running = CreateEventW(nullptr, TRUE, FALSE, nullptr);
};
} // namespace

TEST(ZQThread, AJobThatNeverReturnsIsEndedAfterAboutThreeSeconds) {
    HangingJob* job = new HangingJob;
    job->Start();
    ASSERT_EQ(WaitForSingleObject(job->running, 10000), static_cast<DWORD>(WAIT_OBJECT_0));
    HANDLE self = job->self;
    HANDLE running = job->running;
    const ULONGLONG before = GetTickCount64();
    delete job;
    const ULONGLONG waited = GetTickCount64() - before;
    EXPECT_GE(waited, 2900u);
    EXPECT_LT(waited, 15000u);
    DWORD exitCode = 0;
    ASSERT_TRUE(GetExitCodeThread(self, &exitCode));
    EXPECT_EQ(exitCode, 920u);
    CloseHandle(self);
    CloseHandle(running);
}

TEST(ZQThread, AJobNeverStartedIsEndedAtOnce) {
    const ULONGLONG before = GetTickCount64();
    delete new ReportingJob(nullptr);
    EXPECT_LT(GetTickCount64() - before, 2000u);
}

TEST(ZQTimer, ANewTimerIsPausedAtTheCounterOrigin) {
    ZQTimer timer;
    EXPECT_TRUE(timer.IsStopped());
    LARGE_INTEGER counter, frequency;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&counter);
    const double counterSeconds = static_cast<double>(counter.QuadPart) / frequency.QuadPart;
    EXPECT_GE(timer.GetTime(), counterSeconds) << "measured from counter 0";
    EXPECT_LT(timer.GetTime(), counterSeconds + 5.0);
    EXPECT_NEAR(timer.GetAbsoluteTime(), timer.GetTime(), 1.0);
}

TEST(ZQTimer, PausedTimerStepsWithAdvance) {
    ZQTimer timer;
    timer.Reset();
    EXPECT_FALSE(timer.IsStopped());
    Sleep(20);
    timer.Stop();
    EXPECT_TRUE(timer.IsStopped());
    const double atStop = timer.GetTime();
    EXPECT_GT(atStop, 0.0);
    Sleep(30);
    EXPECT_EQ(timer.GetTime(), atStop) << "a paused timer stands still";
    timer.Advance();
    timer.Advance();
    timer.Advance();
    EXPECT_NEAR(timer.GetTime() - atStop, 0.3, 1e-6);
    EXPECT_NEAR(timer.GetElapsedTime(), 0.3, 1e-6);
    EXPECT_EQ(timer.GetElapsedTime(), 0.0);
}

TEST(ZQTimer, APauseIsNotCounted) {
    ZQTimer timer;
    timer.Start();
    const double started = timer.GetTime();
    EXPECT_GE(started, 0.0);
    EXPECT_LT(started, 1.0) << "a new timer starts at time 0";
    timer.Stop();
    const double atStop = timer.GetTime();
    Sleep(300);
    timer.Start();
    const double afterPause = timer.GetTime();
    EXPECT_GE(afterPause, atStop);
    EXPECT_LT(afterPause - atStop, 0.25) << "the 300 ms pause is not counted";

    timer.GetElapsedTime();
    Sleep(50);
    const double elapsed = timer.GetElapsedTime();
    EXPECT_GE(elapsed, 0.04);
    EXPECT_GT(timer.GetTime(), afterPause);
}
