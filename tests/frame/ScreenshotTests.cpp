#include "FrameTestApp.h"
#include "support/BackBufferCopy.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace {

std::wstring TempPng(const wchar_t* name) {
    const std::wstring path = testsupport::TempPath(name);
    DeleteFileW(path.c_str());
    return path;
}

// Pixels of a saved PNG at the points (opaque), 0 when unreadable.
std::vector<D3DCOLOR> ReadPng(IDirect3DDevice9* device, const std::wstring& path, UINT width, UINT height,
                              std::initializer_list<POINT> points) {
    const std::vector<D3DCOLOR> all = testsupport::ReadPng(device, path.c_str(), width, height);
    std::vector<D3DCOLOR> pixels;
    for (const POINT& p : points)
        pixels.push_back(all.empty() ? 0 : all[p.y * width + p.x] | 0xFF000000);
    return pixels;
}

using ScreenshotTest = frametest::AppTest<>;

} // namespace

// A render target is read back through system memory; a managed texture is saved as it is.
TEST_F(ScreenshotTest, BackBufferAndAManagedTextureSavedAsDrawn) {
    IDirect3DDevice9* device = app->GetD3DDevice();
    const D3DRECT right = {160, 0, 320, 240};
    device->Clear(0, nullptr, D3DCLEAR_TARGET, D3DCOLOR_XRGB(200, 40, 10), 1.0f, 0);
    device->Clear(1, &right, D3DCLEAR_TARGET, D3DCOLOR_XRGB(0, 90, 250), 1.0f, 0);
    const std::wstring path = TempPng(L"zq-backbuffer.png");
    ASSERT_EQ(ZQ::ZQSaveBackBuffer(device, path.c_str()), S_OK);
    EXPECT_EQ(ReadPng(device, path, 320, 240, {{0, 0}, {159, 239}, {160, 0}, {319, 239}}),
              (std::vector<D3DCOLOR>{0xFFC8280A, 0xFFC8280A, 0xFF005AFA, 0xFF005AFA}));

    IDirect3DTexture9* managed = nullptr;
    ASSERT_EQ(device->CreateTexture(64, 32, 0, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &managed, nullptr), S_OK);
    D3DLOCKED_RECT locked;
    ASSERT_EQ(managed->LockRect(0, &locked, nullptr, 0), S_OK);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 64; ++x)
            reinterpret_cast<D3DCOLOR*>(static_cast<char*>(locked.pBits) + y * locked.Pitch)[x] =
                D3DCOLOR_XRGB(x * 4, y * 8, 128);
    managed->UnlockRect(0);
    const std::wstring managedPath = TempPng(L"zq-managed.png");
    EXPECT_EQ(ZQ::ZQSaveTexture(device, managed, managedPath.c_str()), S_OK);
    EXPECT_EQ(
        ReadPng(device, managedPath, 64, 32, {{0, 0}, {63, 31}, {10, 5}}),
        (std::vector<D3DCOLOR>{D3DCOLOR_XRGB(0, 0, 128), D3DCOLOR_XRGB(252, 248, 128), D3DCOLOR_XRGB(40, 40, 128)}));
    managed->Release();
}

TEST_F(ScreenshotTest, RefusalsFailWithoutWritingOrCrashing) {
    IDirect3DDevice9* device = app->GetD3DDevice();
    IDirect3DSurface9* backBuffer = nullptr;
    IDirect3DTexture9* texture = nullptr;
    ASSERT_EQ(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &backBuffer), S_OK);
    ASSERT_EQ(device->CreateTexture(8, 8, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &texture, nullptr), S_OK);
    const std::wstring path = TempPng(L"zq-refused.png");
    const wchar_t* unwritable = L"Z:\\no\\such\\folder\\shot.png";
    struct Case {
        const char* what;
        HRESULT result;
    } cases[] = {
        {"render target, no device", ZQ::ZQSaveRenderTarget(nullptr, backBuffer, path.c_str())},
        {"render target, no surface", ZQ::ZQSaveRenderTarget(device, nullptr, path.c_str())},
        {"render target, no path", ZQ::ZQSaveRenderTarget(device, backBuffer, nullptr)},
        {"render target, empty path", ZQ::ZQSaveRenderTarget(device, backBuffer, L"")},
        {"back buffer, no device", ZQ::ZQSaveBackBuffer(nullptr, path.c_str())},
        {"back buffer, no path", ZQ::ZQSaveBackBuffer(device, nullptr)},
        {"texture, no texture", ZQ::ZQSaveTexture(device, nullptr, path.c_str())},
        {"texture, no device", ZQ::ZQSaveTexture(nullptr, texture, path.c_str())},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.result, E_INVALIDARG) << c.what;
    EXPECT_EQ(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(FAILED(ZQ::ZQSaveBackBuffer(device, unwritable)));
    EXPECT_TRUE(FAILED(ZQ::ZQSaveTexture(device, texture, unwritable)));
    texture->Release();
    backBuffer->Release();
}
