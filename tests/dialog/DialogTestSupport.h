// What the dialog tests share: pictures made on the fly, the test sounds, an event recorder and one fixture.
#pragma once
#include "support/Files.h"
#include "twod/TextureTestSupport.h"

#include <gtest/gtest.h>
#include <imm.h>

#include <functional>
#include <string>
#include <vector>

namespace dialogtest {

using namespace twodtest;
using ZQ::ZQDialog;
using ZQ::ZQRect;

const D3DCOLOR kRed = D3DCOLOR_XRGB(255, 0, 0), kGreen = D3DCOLOR_XRGB(0, 255, 0), kBlue = D3DCOLOR_XRGB(0, 0, 255),
               kWhite = D3DCOLOR_XRGB(255, 255, 255), kBlack = D3DCOLOR_XRGB(0, 0, 0),
               kGrey = D3DCOLOR_XRGB(128, 128, 128), kYellow = D3DCOLOR_XRGB(255, 255, 0),
               kCyan = D3DCOLOR_XRGB(0, 255, 255);
const D3DCOLOR kDigitColours[10] = {0xFF400000, 0xFF800000, 0xFFC00000, 0xFF004000, 0xFF008000,
                                    0xFF00C000, 0xFF000040, 0xFF000080, 0xFF0000C0, 0xFF808080};

// A size x size picture of one colour (32 by default), saved as a temporary PNG; with hole, its left half
// is fully transparent.
inline void AddPicture(ZQ::ZQSprite& sprite, const wchar_t* name, D3DCOLOR colour, bool hole = false, UINT size = 32) {
    IDirect3DTexture9* texture = nullptr;
    D3DLOCKED_RECT locked;
    ASSERT_EQ(D3DXCreateTexture(Device(), size, size, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &texture), S_OK);
    ASSERT_EQ(texture->LockRect(0, &locked, nullptr, 0), S_OK);
    for (UINT y = 0; y < size; ++y)
        for (UINT x = 0; x < size; ++x)
            static_cast<D3DCOLOR*>(locked.pBits)[y * locked.Pitch / 4 + x] = hole && x < size / 2 ? 0 : colour;
    texture->UnlockRect(0);
    const std::wstring file = testsupport::TempPath(name + std::wstring(L".png"));
    ASSERT_EQ(D3DXSaveTextureToFileW(file.c_str(), D3DXIFF_PNG, texture, nullptr), S_OK);
    texture->Release();
    sprite.Entry(name, file.c_str(), false);
}

// Opens the window's input method in native mode (letters go to the composition) or alphanumeric mode.
inline void SetNative(HWND window, bool native) {
    HIMC context = ImmGetContext(window);
    ImmSetOpenStatus(context, TRUE);
    DWORD conversion = 0, sentence = 0;
    ImmGetConversionStatus(context, &conversion, &sentence);
    ImmSetConversionStatus(context, native ? IME_CMODE_NATIVE : IME_CMODE_ALPHANUMERIC, sentence);
    ImmReleaseContext(window, context);
}

// Dispatches what was posted to the thread's windows (the input method posts its characters).
inline void Pump() {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

// Records events; optionally runs an action from inside OnEvent.
struct Recorder : ZQ::_ZQResponseDialog_tag {
    struct Event {
        unsigned int id;
        int a, b;
    };
    std::vector<Event> events;
    std::function<void(unsigned int)> onEvent;
    void __stdcall OnEvent(unsigned int id, int a, int b) override {
        events.push_back({id, a, b});
        if (onEvent)
            onEvent(id);
    }
};

// What every dialog test draws with, made for each suite: a control's pictures "normal", "pressed", "over"
// and "disabled" (red, green, blue, white), the check "mark" (yellow, its left half transparent), "holed"
// (red, the same hole), "quad" (cyan, what the animations of narrow.am draw), an 8 x 8 green "marker",
// digits "d00" to "d09" in kDigitColours and the chunks of pics.om; sounds "click" and "hover"; the font.
class DialogFixture : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        sprite = new ZQ::ZQSprite(Device());
        const std::pair<const wchar_t*, D3DCOLOR> pictures[] = {
            {L"normal", kRed}, {L"pressed", kGreen}, {L"over", kBlue}, {L"disabled", kWhite}, {L"quad", kCyan}};
        for (const auto& picture : pictures)
            AddPicture(*sprite, picture.first, picture.second);
        AddPicture(*sprite, L"mark", kYellow, true);
        AddPicture(*sprite, L"holed", kRed, true);
        AddPicture(*sprite, L"marker", kGreen, false, 8);
        for (int i = 0; i < 10; ++i)
            AddPicture(*sprite, (L"d0" + std::to_wstring(i)).c_str(), kDigitColours[i], false, 8);
        sprite->Entry(Data(L"pics.om").c_str());
        animate = new ZQ::ZQAnimate(sprite);
        animate->Entry(Data(L"anim\\narrow.am").c_str());
        window = App()->GethWnd();
        sound = new ZQ::ZQSound(window, DSSCL_PRIORITY);
        const std::wstring wave = testsupport::EnvFile(L"ZQ_TEST_SOUNDS", L"long.wav");
        sound->Entry(L"click", wave.c_str());
        sound->Entry(L"hover", wave.c_str());
        // A bold font whose characters are 10 pixels wide: an edit box's room is counted in them.
        D3DXCreateFontW(Device(), 20, 10, FW_BOLD, 1, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, DEFAULT_QUALITY,
                        DEFAULT_PITCH, L"Arial", &font);
    }
    static void TearDownTestSuite() {
        font->Release();
        delete sound;
        delete animate;
        delete sprite;
    }

    inline static ZQ::ZQSprite* sprite = nullptr;
    inline static ZQ::ZQAnimate* animate = nullptr;
    inline static ZQ::ZQSound* sound = nullptr;
    inline static ID3DXFont* font = nullptr;
    inline static HWND window = nullptr;
    Recorder recorder;
    D3DXCOLOR white = D3DXCOLOR(1.0f, 1.0f, 1.0f, 1.0f);
};

} // namespace dialogtest
