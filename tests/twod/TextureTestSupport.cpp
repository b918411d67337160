#include "TextureTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

namespace twodtest {

namespace {

class App : public ZQ::ZQVelisto {
public:
    App() : ZQVelisto(L"ZQVelisto texture tests", 320, 240) {}
};

App* g_app = nullptr;

class DeviceEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        g_app = new App;
        g_app->Init(false, false, false, false);
        g_app->SetShowMsgBoxOnError(false);
        ASSERT_EQ(g_app->CreateWindow(L"ZQVelisto texture tests", nullptr, nullptr, nullptr, 0, 0), S_OK);
        ASSERT_EQ(g_app->CreateDevice(0, true, 320, 240, nullptr, nullptr, nullptr), S_OK);
    }
    void TearDown() override { delete g_app; }
};

const ::testing::Environment* const g_environment = ::testing::AddGlobalTestEnvironment(new DeviceEnvironment);

} // namespace

IDirect3DDevice9* Device() {
    return g_app->GetDevice();
}

std::wstring Data(const std::wstring& name) {
    wchar_t folder[MAX_PATH] = L"";
    GetEnvironmentVariableW(L"ZQ_TEST_DATA", folder, MAX_PATH);
    return std::wstring(folder) + L"\\" + name;
}

std::wstring CopyData(const std::wstring& from, const std::wstring& to, long cut, long patchAt,
                      unsigned char patchValue) {
    std::vector<char> bytes;
    if (FILE* in = _wfopen(Data(from).c_str(), L"rb")) {
        char buffer[4096];
        size_t read;
        while ((read = fread(buffer, 1, sizeof buffer, in)) > 0)
            bytes.insert(bytes.end(), buffer, buffer + read);
        fclose(in);
    }
    if (cut >= 0 && static_cast<size_t>(cut) < bytes.size())
        bytes.resize(static_cast<size_t>(cut));
    if (patchAt >= 0 && static_cast<size_t>(patchAt) < bytes.size())
        bytes[static_cast<size_t>(patchAt)] = static_cast<char>(patchValue);
    const std::wstring path = Data(to);
    if (FILE* out = _wfopen(path.c_str(), L"wb")) {
        fwrite(bytes.data(), 1, bytes.size(), out);
        fclose(out);
    }
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

} // namespace twodtest
