// Shared pieces of the frame tests: a recording log, an application object that exposes the
// framework's protected operations, and helpers to run a child process.
#pragma once
#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace frametest {

extern std::vector<std::string> g_log;

class TestApp : public ZQ::ZQVelisto {
public:
    explicit TestApp(const wchar_t* title = L"ZQVelisto frame test") : ZQVelisto(title, 320, 240) {}
    using ZQDirect3d::DisplayErrorMessage;
    using ZQDirect3d::Init;

    /// Init without the command line, message boxes off, a window and a device.
    HRESULT Start(const wchar_t* title = L"ZQVelisto frame test");
};

/// Removes whatever a destroyed window left in this thread's queue (its quit message).
void DrainMessages();

/// A started application per test; Prepare sets what must be in place before the device is made.
template <typename App = TestApp> class AppTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_log.clear();
        DrainMessages();
        app = new App;
        Prepare();
        ASSERT_EQ(app->Start(), S_OK);
    }
    void TearDown() override {
        delete app;
        DrainMessages();
    }
    virtual void Prepare() {}
    App* app = nullptr;
};

/// Runs frame_child.exe with the arguments; returns its exit code and fills output.
int RunChild(const std::wstring& arguments, std::string* output = nullptr);

} // namespace frametest
