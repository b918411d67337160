#include "FrameTestApp.h"

#include <gtest/gtest.h>

namespace {

// Uses the operations by their names alone, as a host derived from the application object does.
class NamedHost : public ZQ::ZQVelisto {
public:
    bool SpaceDown() { return GetKeys()[VK_SPACE]; }
    bool LeftDown() { return GetMouseButtons()[0]; }
    void PassEveryRecordThrough() {
        SetStartupStickyKeys(GetStartupStickyKeys());
        SetStartupToggleKeys(GetStartupToggleKeys());
        SetStartupFilterKeys(GetStartupFilterKeys());
        SetKeys(GetKeys());
        SetMouseButtons(GetMouseButtons());
        SetAllowShortcutKeysWhenFullscreen(GetAllowShortcutKeysWhenFullscreen());
        SetAllowShortcutKeysWhenWindowed(GetAllowShortcutKeysWhenWindowed());
        SetAllowShortcutKeys(GetAllowShortcutKeys());
        SetKeyboardHook(GetKeyboardHook());
        SetWindowedPlacement(GetWindowedPlacement());
        SetBackBufferSurfaceDesc(GetBackBufferSurfaceDesc());
        SetCaps(GetCaps());
        SetCurrentDeviceSettings(GetCurrentDeviceSettings());
        SetTimer(GetTimer());
        SetD3DEnumeration(GetD3DEnumeration());
        SetDeviceStats(GetDeviceStats());
        SetStaticFrameStats(GetStaticFrameStats());
        SetFPSStats(GetFPSStats());
        SetTimerList(GetTimerList());
        ZQ::ZQStopRumbleOnAllControllers();
    }
};

} // namespace

TEST(NamedOperations, AHostReachesTheStateByTheOperationNames) {
    NamedHost host;
    host.PassEveryRecordThrough();
    EXPECT_FALSE(host.SpaceDown());
    host.GetKeys()[VK_SPACE] = true;
    EXPECT_TRUE(host.IsKeyDown(VK_SPACE));
    EXPECT_FALSE(host.LeftDown());
    EXPECT_NE(host.GetTimer(), nullptr);
    EXPECT_EQ(host.GetTimerList()->GetSize(), 0);
    ASSERT_EQ(host.Init(false, false, false, false), S_OK);
    ZQ::ZQD3DEnumeration* enumeration = host.PrepareEnumerationObject();
    ASSERT_NE(enumeration, nullptr);
    EXPECT_EQ(host.GetD3DEnumeration(), enumeration);
    EXPECT_EQ(host.PrepareEnumerationObject(true), enumeration) << "read again into the same object";
    EXPECT_GE(enumeration->GetAdapterCount(), 1u);
    EXPECT_GT(enumeration->GetDisplayModes().GetSize(), 0);
}

TEST(NamedOperations, SettersStoreTheCallersPointerAndCopiesShareThem) {
    ZQ::ZQKeyboard keyboard;
    ZQ::ZQKeyboard copy(keyboard);
    EXPECT_EQ(copy.GetKeys(), keyboard.GetKeys());
    EXPECT_EQ(copy.GetStartupFilterKeys(), keyboard.GetStartupFilterKeys());
    keyboard.GetKeys()['A'] = true;
    EXPECT_TRUE(copy.IsKeyDown('A')) << "one array, two keyboards";

    bool keys[256] = {};
    STICKYKEYS sticky = {sizeof sticky, SKF_STICKYKEYSON};
    keyboard.SetKeys(keys);
    keyboard.SetStartupStickyKeys(&sticky);
    EXPECT_EQ(keyboard.GetKeys(), keys);
    EXPECT_EQ(keyboard.GetStartupStickyKeys(), &sticky) << "the caller's record, not a copy of it";
    EXPECT_FALSE(keyboard.IsKeyDown('A'));
    EXPECT_TRUE(copy.IsKeyDown('A')) << "the copy keeps the array it shared";
    { ZQ::ZQKeyboard third(copy); }
    copy = keyboard;
    EXPECT_EQ(copy.GetStartupStickyKeys(), &sticky);
    EXPECT_EQ(copy.GetKeys(), keys);

    ZQ::ZQMouse mouse;
    ZQ::ZQMouse mouseCopy(mouse);
    EXPECT_EQ(mouseCopy.GetMouseButtons(), mouse.GetMouseButtons());
    bool buttons[5] = {false, false, true, false, false};
    mouse.SetMouseButtons(buttons);
    EXPECT_TRUE(mouse.IsButtonDown(ZQ::ZQMouse::Right));
    mouseCopy = mouse;
    EXPECT_EQ(mouseCopy.GetMouseButtons(), buttons);
}

// A format's name, bits and alpha bits, as the statistics texts and a host's messages show them.
TEST(Formats, NamesBitsAndAlphaBits) {
    const struct {
        D3DFORMAT format;
        const wchar_t* name;
        UINT bits, alpha;
    } formats[] = {{D3DFMT_X8R8G8B8, L"X8R8G8B8", 32, 0},
                   {D3DFMT_A8R8G8B8, L"A8R8G8B8", 32, 8},
                   {D3DFMT_A1R5G5B5, L"A1R5G5B5", 16, 1},
                   {D3DFMT_DXT1, L"DXT1", 4, 1},
                   {D3DFMT_DXT5, L"DXT5", 8, 8},
                   {D3DFMT_D24S8, L"D24S8", 32, 0},
                   {D3DFMT_A32B32G32R32F, L"A32B32G32R32F", 128, 32},
                   {static_cast<D3DFORMAT>(12345), L"Unknown format", 0, 0}};
    for (const auto& f : formats) {
        EXPECT_STREQ(ZQ::ZQD3DFormatName(f.format), f.name);
        EXPECT_EQ(ZQ::ZQD3DFormatBits(f.format), f.bits) << f.format;
        EXPECT_EQ(ZQ::ZQD3DFormatAlphaBits(f.format), f.alpha) << f.format;
    }
    // Result codes by the names the headers give them; Win32 errors in their HRESULT form.
    EXPECT_STREQ(ZQ::ZQResultName(D3DERR_DEVICELOST), L"D3DERR_DEVICELOST");
    EXPECT_STREQ(ZQ::ZQResultName(ZQ::ZQ_E_NO_COMPATIBLE_DEVICES), L"ZQ_E_NO_COMPATIBLE_DEVICES");
    EXPECT_STREQ(ZQ::ZQResultName(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)),
                 L"HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)");
    EXPECT_STREQ(ZQ::ZQResultDescription(E_OUTOFMEMORY), L"There is not enough memory.");
    EXPECT_STREQ(ZQ::ZQResultName(static_cast<HRESULT>(0x8123ABCD)), L"Unknown error code");
}
