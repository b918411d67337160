// What the dialog tests share: pictures made on the fly, the test sounds and an event recorder.
#pragma once
#include "twod/TextureTestSupport.h"

#include <gtest/gtest.h>
#include <imm.h>

#include <functional>
#include <string>
#include <vector>

namespace dialogtest {

using twodtest::BackBufferPixel;
using twodtest::Device;
using twodtest::LitPixels;
using twodtest::Near;
using ZQ::ZQDialog;
using ZQ::ZQRect;

inline std::wstring TempFile(const wchar_t* name) {
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder) + name;
}

inline std::wstring SoundFile(const wchar_t* name) {
    std::wstring path = L"Z:";
    for (const wchar_t* c = _wgetenv(L"ZQ_TEST_SOUNDS"); c && *c; ++c)
        path += *c == L'/' ? L'\\' : *c;
    return path + L"\\" + name;
}

// A size x size picture of one colour (32 by default); with hole, its left half is fully transparent.
inline void AddPicture(ZQ::ZQSprite& sprite, const wchar_t* name, D3DCOLOR colour, bool hole = false, UINT size = 32) {
    IDirect3DTexture9* texture = nullptr;
    D3DLOCKED_RECT locked;
    ASSERT_EQ(D3DXCreateTexture(twodtest::Device(), size, size, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &texture),
              S_OK);
    ASSERT_EQ(texture->LockRect(0, &locked, nullptr, 0), S_OK);
    for (UINT y = 0; y < size; ++y)
        for (UINT x = 0; x < size; ++x)
            reinterpret_cast<D3DCOLOR*>(static_cast<char*>(locked.pBits) + y * locked.Pitch)[x] =
                hole && x < size / 2 ? 0 : colour;
    texture->UnlockRect(0);
    const std::wstring file = TempFile((std::wstring(name) + L".png").c_str());
    ASSERT_EQ(D3DXSaveTextureToFileW(file.c_str(), D3DXIFF_PNG, texture, nullptr), S_OK);
    texture->Release();
    sprite.Entry(name, file.c_str(), false);
}

const D3DCOLOR kRed = D3DCOLOR_XRGB(255, 0, 0), kGreen = D3DCOLOR_XRGB(0, 255, 0), kBlue = D3DCOLOR_XRGB(0, 0, 255),
               kWhite = D3DCOLOR_XRGB(255, 255, 255), kBlack = D3DCOLOR_XRGB(0, 0, 0),
               kGrey = D3DCOLOR_XRGB(128, 128, 128), kYellow = D3DCOLOR_XRGB(255, 255, 0),
               kCyan = D3DCOLOR_XRGB(0, 255, 255);
const D3DCOLOR kDigitColours[10] = {0xFF400000, 0xFF800000, 0xFFC00000, 0xFF004000, 0xFF008000,
                                    0xFF00C000, 0xFF000040, 0xFF000080, 0xFF0000C0, 0xFF808080};

// A control's four pictures and a check mark: red, green, blue and white, and yellow with a hole.
inline void AddControlPictures(ZQ::ZQSprite& sprite, const wchar_t* normal, const wchar_t* second, const wchar_t* over,
                               const wchar_t* disabled, const wchar_t* mark) {
    AddPicture(sprite, normal, kRed);
    AddPicture(sprite, second, kGreen);
    AddPicture(sprite, over, kBlue);
    AddPicture(sprite, disabled, kWhite);
    AddPicture(sprite, mark, kYellow, true);
}

// Ten 8 x 8 digits prefix00 to prefix09 in kDigitColours.
inline void AddDigits(ZQ::ZQSprite& sprite, const wchar_t* prefix) {
    for (int i = 0; i < 10; ++i) {
        wchar_t name[16];
        swprintf(name, 16, L"%ls%02d", prefix, i);
        AddPicture(sprite, name, kDigitColours[i], false, 8);
    }
}

// A bold font whose characters are 10 pixels wide: an edit box's room is counted in them.
inline ID3DXFont* MakeFont() {
    ID3DXFont* font = nullptr;
    D3DXCreateFontW(twodtest::Device(), 20, 10, FW_BOLD, 1, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                    DEFAULT_QUALITY, DEFAULT_PITCH, L"Arial", &font);
    return font;
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

} // namespace dialogtest
