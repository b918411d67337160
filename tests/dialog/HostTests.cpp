// Dialogs in a host: input sent to the application's window as the system sends it, through the frame's
// window procedure, a screen that forwards it as the README's host does and the default handling when
// nothing stops it; and controls changed from another thread while the frame renders.
#include "dialog/DialogTestSupport.h"

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>

using namespace dialogtest;

namespace {

// A screen as a host writes it: the frame's callbacks forwarded to its dialog, and the left release,
// which the frame reports with the left flag clear, forwarded as a release.
class HostScreen : public ZQ::ZQScene {
public:
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context) override {
        if (dialog)
            dialog->OnFrameMove(device, time, elapsed, context);
    }
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) override {
        BeginFrame();
        if (dialog)
            dialog->OnFrameRender(device, time, elapsed, context);
        EndFrame();
    }
    void OnKeyboard(UINT key, bool down, bool alt, void* context) override {
        if (dialog)
            dialog->OnKeyboard(key, down, alt, context);
    }
    // The frame's flags are the buttons held, and the dialog reads a left flag without down as a release:
    // only a press keeps them, so that a move with the button held is a move.
    void OnMouse(bool down, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context) override {
        if (dialog)
            dialog->OnMouse(down, down && left, down && right, down && middle, side1, side2, wheel, x, y, context);
    }
    LRESULT OnMsgProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam, bool* noFurtherProcessing,
                      void* context) override {
        if (!dialog)
            return msg;
        if (msg == WM_LBUTTONUP)
            dialog->OnMouse(false, true, false, false, false, false, 0, static_cast<short>(LOWORD(lParam)),
                            static_cast<short>(HIWORD(lParam)), context);
        else
            dialog->OnMsgProc(hWnd, msg, wParam, lParam, noFurtherProcessing, context);
        return msg;
    }

    ZQDialog* dialog = nullptr;
};

class HostTest : public DialogFixture {
protected:
    static void SetUpTestSuite() {
        DialogFixture::SetUpTestSuite();
        screen = new HostScreen; // the application owns it
        App()->Entry(L"Host", screen);
        App()->Trans(L"Host");
        App()->Dispatcher(Device(), App()->GetBackBufferSurfaceDesc(), nullptr);
    }
    static void TearDownTestSuite() {
        App()->Trans(L"No such screen");
        App()->Dispatcher(Device(), App()->GetBackBufferSurfaceDesc(), nullptr);
        DialogFixture::TearDownTestSuite();
    }
    // The window's input context starts in native mode, where letters and wide characters go to the input
    // method: each test starts in alphanumeric mode instead of inheriting whatever an earlier one left.
    void SetUp() override { SetNative(window, false); }
    void TearDown() override { screen->dialog = nullptr; }

    static void Send(UINT msg, WPARAM wParam, LPARAM lParam) { SendMessageW(window, msg, wParam, lParam); }
    // Keys as a keyboard gives them: Tab, Return and Backspace as key down, character and key up.
    static void Type(const std::wstring& text) {
        for (wchar_t c : text) {
            const UINT key = c == L'\t' ? VK_TAB : c == L'\r' ? VK_RETURN : c == L'\b' ? VK_BACK : 0;
            if (key)
                Send(WM_KEYDOWN, key, 1);
            Send(WM_CHAR, c, 1);
            if (key)
                Send(WM_KEYUP, key, 0xC0000001);
        }
    }
    // Pointer to press, button down, pointer through via to release with the button held, button up.
    static void Drag(POINT press, POINT via, POINT release) {
        Send(WM_MOUSEMOVE, 0, MAKELPARAM(press.x, press.y));
        Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(press.x, press.y));
        Send(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(via.x, via.y));
        Send(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(release.x, release.y));
        Send(WM_LBUTTONUP, 0, MAKELPARAM(release.x, release.y));
    }

    inline static HostScreen* screen = nullptr;
};

} // namespace

TEST_F(HostTest, TypingAndFocusKeysReachTheEditBoxes) {
    // Boxes of 120 pixels: room for 11 characters. In native mode letters, control and wide characters
    // belong to the input method. A password or a disabled box is the first.
    const std::wstring mixed = L"aZ5 @[`{~\x01\x00e9\xAD6D";
    struct Case {
        const char* name;
        bool native;
        std::wstring typed;
        const wchar_t* texts[3];
        int focused;
        bool password = false, disabled = false;
    } cases[] = {
        {"alphanumeric mode", false, mixed, {L"aZ5 @[`{~\x01\x00e9", L"", L""}, 0},
        {"native mode", true, mixed, {L"5 @[`{~", L"", L""}, 0},
        {"Backspace removes the last character", false, L"\babc\bd", {L"abd", L"", L""}, 0},
        {"room for eleven characters", false, L"abcdefghijklm", {L"abcdefghijk", L"", L""}, 0},
        {"Tab moves on", false, L"ab\tcd\te", {L"ab", L"cd", L"e"}, 2},
        {"Return moves on and wraps after the last", false, L"a\rb\rc\rd", {L"ad", L"b", L"c"}, 0},
        {"a password shows a star a character", false, L"\u00e9x\b1", {L"\u00e91", L"", L""}, 0, true},
        {"a disabled box takes nothing", false, L"ab", {L"", L"", L""}, 0, false, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ZQDialog dialog(sprite, nullptr, &recorder);
        for (unsigned int i = 0; i < 3; ++i) {
            ZQRect field(20.0f, 20.0f + 40.0f * i, 140.0f, 40.0f + 40.0f * i);
            dialog.AddEditBox(i, font, field, white, DT_LEFT);
        }
        dialog.GetEditBox(0)->SetPassword(c.password);
        dialog.GetEditBox(0)->SetDisable(c.disabled);
        screen->dialog = &dialog;
        SetNative(window, c.native);
        Type(c.typed);
        for (unsigned int i = 0; i < 3; ++i) {
            EXPECT_EQ(std::wstring(dialog.GetEditBox(i)->GetText()), c.texts[i]) << "box " << i;
            EXPECT_EQ(dialog.GetEditBox(i)->GetAcquire(), static_cast<int>(i) == c.focused) << "box " << i;
        }
        const std::wstring text = c.texts[c.focused], shown = c.password ? std::wstring(text.size(), L'*') : text;
        EXPECT_EQ(std::wstring(dialog.GetEditBox(c.focused)->GetDisplay()), shown + L"|");
        EXPECT_TRUE(recorder.events.empty()) << "edit boxes send no events";
        screen->dialog = nullptr;
    }
}

TEST_F(HostTest, TheInputMethodsTextIsTakenOnceAndACancelledCompositionLeaves) {
    using End = void (*)(HIMC);
    const End complete = [](HIMC c) { ImmNotifyIME(c, NI_COMPOSITIONSTR, CPS_COMPLETE, 0); };
    const End cancel = [](HIMC c) { ImmNotifyIME(c, NI_COMPOSITIONSTR, CPS_CANCEL, 0); };
    const End empty = [](HIMC c) { ImmSetCompositionStringW(c, SCS_SETSTR, const_cast<wchar_t*>(L""), 0, nullptr, 0); };
    const End endMessage = [](HIMC) { Send(WM_IME_ENDCOMPOSITION, 0, 0); };
    const std::wstring kana = L"\x304B\x306A\x304B\x306A\x304B";
    struct Case {
        const char* name;
        float width; // 10 pixels a character, less one
        std::wstring composed;
        End end;
        std::wstring typedAfter, text;
    } cases[] = {
        {"kana committed", 200.0f, L"\x3055\x304F\x3089", complete, L"", L"\x3055\x304F\x3089"},
        {"ASCII and kana committed in one result", 200.0f, L"3\x6642 A", complete, L"", L"3\x6642 A"},
        {"ASCII only committed", 200.0f, L"AB 12", complete, L"", L"AB 12"},
        // Five characters fill the box: once they are gone there is room again, and Backspace works.
        {"cancelled", 60.0f, kana, cancel, L"12345\b", L"1234"},
        {"composition emptied", 60.0f, kana, empty, L"12345\b", L"1234"},
        {"composition ended without a result", 60.0f, kana, endMessage, L"12345\b", L"1234"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ZQDialog dialog(sprite, nullptr, &recorder);
        ZQRect field(20.0f, 20.0f, 20.0f + c.width, 40.0f);
        dialog.AddEditBox(1, font, field, white, DT_LEFT);
        ZQ::ZQDialogEditBox* box = dialog.GetEditBox(1);
        screen->dialog = &dialog;
        SetNative(window, true);
        HIMC context = ImmGetContext(window);
        ASSERT_TRUE(ImmSetCompositionStringW(context, SCS_SETSTR, const_cast<wchar_t*>(c.composed.c_str()),
                                             static_cast<DWORD>(c.composed.size() * sizeof(wchar_t)), nullptr, 0));
        Pump();
        Type(L"\b");
        EXPECT_EQ(box->GetDisplay(), c.composed + L"|") << "shown; Backspace leaves it alone";
        c.end(context);
        ImmReleaseContext(window, context);
        Pump(); // what the input method and the default handling post after it
        Type(c.typedAfter);
        EXPECT_EQ(box->GetText(), c.text);
        EXPECT_EQ(box->GetDisplay(), c.text + L"|");
        screen->dialog = nullptr;
    }
}

TEST_F(HostTest, ClicksReachTheControlsUnderThePointer) {
    // A button, 32 pixels square, and edit boxes 10 and 11, in a dialog without sounds; one drag after another.
    struct Case {
        const char* name;
        POINT press, via, release;
        size_t clicks;
        unsigned int focused;
    } cases[] = {
        {"button clicked, the pointer trembling", {30, 30}, {31, 31}, {35, 40}, 1, 10},
        {"dragged over the button and off again", {300, 200}, {30, 30}, {300, 200}, 0, 10},
        {"second edit box clicked", {40, 150}, {40, 150}, {40, 150}, 0, 11},
    };
    ZQDialog dialog(sprite, nullptr, &recorder);
    D3DXVECTOR3 button(20, 20, 0);
    dialog.AddButton(1, L"normal", L"pressed", L"over", L"disabled", button, false);
    ZQRect a(20.0f, 100.0f, 120.0f, 120.0f), b(20.0f, 140.0f, 120.0f, 160.0f);
    dialog.AddEditBox(10, font, a, white, DT_LEFT);
    dialog.AddEditBox(11, font, b, white, DT_LEFT);
    screen->dialog = &dialog;
    for (const Case& c : cases) {
        recorder.events.clear();
        Drag(c.press, c.via, c.release);
        EXPECT_EQ(recorder.events.size(), c.clicks) << c.name;
        EXPECT_EQ(dialog.GetEditBox(11)->GetAcquire(), c.focused == 11) << c.name;
    }
}

namespace {

// Numbers whose two 32-bit halves are equal: a value read or drawn half old, half new shows.
const unsigned long long kBothHalves = 0x100000001ull;

// The number drawn left-aligned at (20, 200) with 8-pixel digits; -1 when a cell shows no digit colour.
long long DrawnNumber() {
    long long value = 0;
    int digits = 0;
    for (int cell = 0; cell < 20; ++cell, ++digits) {
        const D3DCOLOR colour = BackBufferPixel(20 + 8 * cell + 4, 204);
        if (Near(colour, kBlack, 3))
            break;
        int digit = 0;
        while (digit < 10 && !Near(colour, kDigitColours[digit], 3))
            ++digit;
        if (digit == 10)
            return -1;
        value = value * 10 + digit;
    }
    return digits ? value : -1;
}

} // namespace

TEST_F(HostTest, ControlsChangedFromAnotherThreadWhileFramesRenderShowWholeValues) {
    ZQRect line(20.0f, 60.0f, 200.0f, 90.0f);
    // What the status line lights with either of its texts.
    auto lit = [&](const wchar_t* text) {
        ZQDialog alone(sprite, nullptr, &recorder);
        alone.AddStatic(1, font, text, line, white, DT_LEFT | DT_TOP);
        screen->dialog = &alone;
        App()->Render3DEnvironment();
        screen->dialog = nullptr;
        return LitPixels(RECT{20, 60, 200, 90});
    };
    const int wide = lit(L"WWWWW"), narrow = lit(L"I");
    ASSERT_GT(wide, narrow);
    ZQDialog dialog(sprite, nullptr, &recorder);
    D3DXVECTOR3 credits(20, 200, 0), bar(150, 150, 0), button(220, 20, 0), check(260, 20, 0);
    dialog.AddStatic(1, font, L"I", line, white, DT_LEFT | DT_TOP);
    dialog.AddNumber(2, L"d", credits, 0.0f, DT_LEFT);
    dialog.AddProgress(3, L"normal", bar, 100.0f, 1);
    dialog.AddButton(4, L"normal", L"pressed", L"over", L"disabled", button, false);
    dialog.AddCheckBox(5, L"normal", L"mark", L"over", L"disabled", check, false);
    screen->dialog = &dialog;
    // An inactive application sleeps before each frame: many frames make a torn picture likelier to show.
    const bool active = App()->GetActive();
    App()->SetActive(true);

    // What a kiosk's worker thread does to its screen, each control found through the dialog's lookups. It
    // goes on past its count of changes until the frame has rendered enough frames beside it.
    std::atomic<int> frames{0};
    std::atomic<unsigned int> last{0};
    std::atomic<bool> done{false};
    std::thread updater([&] {
        for (unsigned int i = 1; i <= 100000 || frames < 120; ++i) {
            dialog.GetNumber(2)->Reset(i * kBothHalves);
            dialog.GetStatic(1)->SetText(i % 2 ? L"WWWWW" : L"I", white);
            dialog.GetProgress(3)->SetPos(static_cast<float>(i % 101));
            dialog.GetButton(4)->SetShow(i % 2 == 0);
            dialog.GetButton(4)->SetDisable(i % 3 == 0);
            dialog.GetCheckBox(5)->SetChecked(i % 5 == 0);
            last = i;
        }
        done = true;
    });
    int tornReads = 0, tornPictures = 0, backwards = 0, pictures = 0;
    unsigned long long previous = 0;
    const DWORD start = GetTickCount();
    while (!done && GetTickCount() - start < 240000) {
        App()->Render3DEnvironment();
        ++frames;
        const unsigned long long number = dialog.GetNumber(2)->GetNumber();
        tornReads += number % kBothHalves != 0;
        backwards += number < previous;
        previous = number;
        const long long drawn = DrawnNumber();
        pictures += drawn > 0;
        tornPictures += drawn > 0 && drawn % kBothHalves != 0;
        // Hidden, enabled or disabled: never one picture in the other state's colour.
        const D3DCOLOR shown = BackBufferPixel(236, 36);
        tornPictures += !Near(shown, kBlack, 4) && !Near(shown, kRed, 4) && !Near(shown, kGrey, 4);
        const int status = LitPixels(RECT{20, 60, 200, 90});
        tornPictures += status != wide && status != narrow;
    }
    App()->SetActive(active);
    const bool finished = done;
    const int drawn = frames;
    frames += 1000; // lets the updater end even after a timeout
    updater.join();
    ASSERT_TRUE(finished) << "the updates finished within four minutes";
    std::printf("%u rounds of six changes beside %d frames\n", last.load(), drawn);
    EXPECT_EQ(tornReads, 0) << "every number read is one that was set";
    EXPECT_EQ(backwards, 0);
    EXPECT_EQ(tornPictures, 0) << "every number drawn is one that was set, every button and text whole";
    EXPECT_GT(pictures, 30) << "the frames drew numbers while they changed";

    // The last values stay, and the next frame shows them.
    App()->Render3DEnvironment();
    EXPECT_EQ(DrawnNumber(), static_cast<long long>(last * kBothHalves));
    EXPECT_EQ(dialog.GetProgress(3)->Delta().x, 150.0f + 32.0f * static_cast<float>(last % 101) / 100.0f);
    EXPECT_EQ(dialog.GetButton(4)->GetShow(), last % 2 == 0);
    EXPECT_EQ(dialog.GetCheckBox(5)->GetChecked(), last % 5 == 0);
    const D3DCOLOR buttonShown = last % 2 ? kBlack : last % 3 ? kRed : kGrey;
    EXPECT_TRUE(Near(BackBufferPixel(236, 36), buttonShown, 4)) << std::hex << BackBufferPixel(236, 36);
    EXPECT_EQ(LitPixels(RECT{20, 60, 200, 90}), last % 2 ? wide : narrow);
}
