#include "TextureTestSupport.h"
#include "support/BackBufferCopy.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <vector>

namespace twodtest {

namespace {

ZQ::ZQVelisto* g_app = nullptr;
std::vector<D3DCOLOR> g_frame;
UINT g_frameWidth = 0;

class DeviceEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        g_app = new ZQ::ZQVelisto(L"ZQVelisto texture tests", 320, 240);
        g_app->Init(false, false, false, false);
        g_app->SetShowMsgBoxOnError(false);
        ASSERT_EQ(g_app->CreateWindow(L"ZQVelisto texture tests", nullptr, nullptr, nullptr, 0, 0), S_OK);
        ASSERT_EQ(g_app->CreateDevice(0, true, 320, 240, nullptr, nullptr, nullptr), S_OK);
    }
    void TearDown() override { delete g_app; }
};

const ::testing::Environment* const g_environment = ::testing::AddGlobalTestEnvironment(new DeviceEnvironment);

} // namespace

ZQ::ZQVelisto* App() {
    return g_app;
}

IDirect3DDevice9* Device() {
    return g_app->GetDevice();
}

std::wstring Data(const std::wstring& name) {
    return testsupport::EnvFile(L"ZQ_TEST_DATA", name);
}

std::wstring CopyData(const std::wstring& from, const std::wstring& to, long cut, long patchAt,
                      unsigned char patchValue) {
    return PatchData(from, to, {}, cut, patchAt, patchValue);
}

std::wstring PatchData(const std::wstring& from, const std::wstring& to,
                       std::initializer_list<std::pair<long, int32_t>> values, long cut, long patchAt,
                       unsigned char patchValue) {
    testsupport::Bytes bytes = testsupport::ReadAll(Data(from));
    if (cut >= 0 && static_cast<size_t>(cut) < bytes.size())
        bytes.resize(static_cast<size_t>(cut));
    if (patchAt >= 0 && static_cast<size_t>(patchAt) < bytes.size())
        bytes[static_cast<size_t>(patchAt)] = patchValue;
    for (const auto& value : values)
        for (size_t i = 0; i < 4 && value.first + i < bytes.size(); ++i)
            bytes[value.first + i] = static_cast<unsigned char>(value.second >> (8 * i));
    const std::wstring path = Data(to);
    testsupport::WriteAll(path, bytes);
    return path;
}

D3DCOLOR ReadPixel(IDirect3DTexture9* texture, int x, int y) {
    D3DLOCKED_RECT locked;
    RECT one = {x, y, x + 1, y + 1};
    if (!texture || FAILED(texture->LockRect(0, &locked, &one, D3DLOCK_READONLY)))
        return 0xDEADBEEF;
    const D3DCOLOR colour = *static_cast<const D3DCOLOR*>(locked.pBits);
    texture->UnlockRect(0);
    return colour;
}

UINT Levels(IDirect3DTexture9* texture) {
    return texture ? texture->GetLevelCount() : 0;
}

D3DSURFACE_DESC LevelDesc(IDirect3DTexture9* texture) {
    D3DSURFACE_DESC desc = {};
    if (texture)
        texture->GetLevelDesc(0, &desc);
    return desc;
}

D3DCOLOR ArtPixel(int x, int y, int width, int height, int tag) {
    return D3DCOLOR_ARGB(255, x * 255 / (width > 1 ? width - 1 : 1), y * 255 / (height > 1 ? height - 1 : 1), tag);
}

void BeginFrame() {
    Device()->Clear(0, nullptr, D3DCLEAR_TARGET, D3DCOLOR_XRGB(0, 0, 0), 1.0f, 0);
    Device()->BeginScene();
}

void EndFrame() {
    Device()->EndScene();
    g_frame = testsupport::CopyBackBuffer(Device(), g_frameWidth);
}

D3DCOLOR BackBufferPixel(int x, int y) {
    const size_t index = static_cast<size_t>(y) * g_frameWidth + static_cast<size_t>(x);
    return index < g_frame.size() ? (g_frame[index] | 0xFF000000) : 0xDEADBEEF;
}

int LitPixels(const RECT& r) {
    int lit = 0;
    for (int y = r.top; y < r.bottom; ++y)
        for (int x = r.left; x < r.right; ++x)
            lit += (BackBufferPixel(x, y) & 0xFFFFFF) != 0;
    return lit;
}

void Resize(int width, int height) {
    HWND hWnd = App()->GethWnd();
    RECT frame = {0, 0, width, height};
    AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongW(hWnd, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongW(hWnd, GWL_EXSTYLE)));
    SetWindowPos(hWnd, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool Near(D3DCOLOR a, D3DCOLOR b, int tolerance) {
    for (int shift = 0; shift < 32; shift += 8) {
        const int difference = static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF);
        if (difference < -tolerance || difference > tolerance)
            return false;
    }
    return true;
}

} // namespace twodtest
