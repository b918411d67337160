// A contact sheet of a model's animation: frames at even times from its start to its last key, drawn by
// the library into cells of one PNG, each cell labelled with its time.
//
//   contact_sheet MODEL.x ANIMATION [-frames:N] [-columns:C] [-size:WxH] [-out:FILE.png] [-distance:D]
//                 [-yaw:RADIANS]
//
// The camera sits at the origin looking along +z; the model stands at z = D (default 6), turned by the
// yaw, and is moved across so that what it draws over the whole animation sits in the middle of a cell.
#include <ZQVelisto.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

namespace {

const D3DCOLOR kBackground = 0xFF2E3440;
const D3DCOLOR kGap = 0xFF101010;
const int kGapPixels = 2;
const int kLabelFont = 1;
const float kHalfFieldOfView = 0.3926991f; // the camera's field of view is a quarter turn's half

struct Options {
    const wchar_t* model = nullptr;
    const wchar_t* animation = nullptr;
    int frames = 12;
    int columns = 0; ///< 0: four, or fewer when there are fewer frames
    int width = 256, height = 256;
    std::wstring out;
    float distance = 6.0f;
    float yaw = 0.0f;
};

// The text after "-name:" when argument is that option, else null.
const wchar_t* Value(const wchar_t* argument, const wchar_t* name) {
    const size_t length = std::wcslen(name);
    if (argument[0] != L'-' || _wcsnicmp(argument + 1, name, length) != 0 || argument[1 + length] != L':')
        return nullptr;
    return argument + 2 + length;
}

bool Parse(int argc, wchar_t** argv, Options& options) {
    int positional = 0;
    for (int i = 1; i < argc; ++i) {
        const wchar_t* arg = argv[i];
        const wchar_t* value;
        if ((value = Value(arg, L"frames")))
            options.frames = _wtoi(value);
        else if ((value = Value(arg, L"columns")))
            options.columns = _wtoi(value);
        else if ((value = Value(arg, L"size"))) {
            if (swscanf(value, L"%dx%d", &options.width, &options.height) != 2)
                return false;
        } else if ((value = Value(arg, L"out")))
            options.out = value;
        else if ((value = Value(arg, L"distance")))
            options.distance = static_cast<float>(_wtof(value));
        else if ((value = Value(arg, L"yaw")))
            options.yaw = static_cast<float>(_wtof(value));
        else if (arg[0] == L'-')
            return false;
        else if (positional == 0)
            options.model = arg, ++positional;
        else if (positional == 1)
            options.animation = arg, ++positional;
        else
            return false;
    }
    if (options.columns <= 0)
        options.columns = std::min(4, options.frames);
    return positional == 2 && options.frames > 0 && options.frames <= 1000 && options.columns > 0 &&
           options.width >= 16 && options.height >= 16 && options.width <= 4096 && options.height <= 4096 &&
           options.distance > 0.1f;
}

std::wstring DefaultOut(const Options& options) {
    std::wstring stem = options.model;
    const size_t slash = stem.find_last_of(L"\\/:");
    if (slash != std::wstring::npos)
        stem.erase(0, slash + 1);
    const size_t dot = stem.rfind(L'.');
    if (dot != std::wstring::npos)
        stem.erase(dot);
    return stem + L"-" + options.animation + L".png";
}

// Back buffer 0 as X8R8G8B8 rows, read through system memory; empty when it cannot be read.
std::vector<D3DCOLOR> ReadBackBuffer(IDirect3DDevice9* device) {
    std::vector<D3DCOLOR> pixels;
    IDirect3DSurface9* backBuffer = nullptr;
    IDirect3DSurface9* copy = nullptr;
    D3DSURFACE_DESC desc;
    D3DLOCKED_RECT locked;
    if (SUCCEEDED(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &backBuffer)) &&
        SUCCEEDED(backBuffer->GetDesc(&desc)) && (desc.Format == D3DFMT_X8R8G8B8 || desc.Format == D3DFMT_A8R8G8B8) &&
        SUCCEEDED(device->CreateOffscreenPlainSurface(desc.Width, desc.Height, desc.Format, D3DPOOL_SYSTEMMEM, &copy,
                                                      nullptr)) &&
        SUCCEEDED(device->GetRenderTargetData(backBuffer, copy)) &&
        SUCCEEDED(copy->LockRect(&locked, nullptr, D3DLOCK_READONLY))) {
        pixels.resize(static_cast<size_t>(desc.Width) * desc.Height);
        for (UINT y = 0; y < desc.Height; ++y) {
            const D3DCOLOR* row = reinterpret_cast<const D3DCOLOR*>(static_cast<const char*>(locked.pBits) +
                                                                    y * static_cast<size_t>(locked.Pitch));
            for (UINT x = 0; x < desc.Width; ++x)
                pixels[static_cast<size_t>(y) * desc.Width + x] = row[x] | 0xFF000000;
        }
        copy->UnlockRect();
    }
    if (copy)
        copy->Release();
    if (backBuffer)
        backBuffer->Release();
    return pixels;
}

HRESULT SavePng(IDirect3DDevice9* device, const std::vector<D3DCOLOR>& pixels, int width, int height,
                const wchar_t* path) {
    IDirect3DSurface9* surface = nullptr;
    HRESULT hr = device->CreateOffscreenPlainSurface(static_cast<UINT>(width), static_cast<UINT>(height),
                                                     D3DFMT_X8R8G8B8, D3DPOOL_SYSTEMMEM, &surface, nullptr);
    if (FAILED(hr))
        return hr;
    D3DLOCKED_RECT locked;
    if (SUCCEEDED(hr = surface->LockRect(&locked, nullptr, 0))) {
        for (int y = 0; y < height; ++y)
            std::copy_n(&pixels[static_cast<size_t>(y) * width], width,
                        reinterpret_cast<D3DCOLOR*>(static_cast<char*>(locked.pBits) + y * locked.Pitch));
        surface->UnlockRect();
        hr = D3DXSaveSurfaceToFileW(path, D3DXIFF_PNG, surface, nullptr, nullptr);
    }
    surface->Release();
    return hr;
}

void PumpMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// Plays the animation once through the given times, drawing each pose under the camera; overlay draws
// over a frame inside its scene, shot takes it after the scene has ended.
template <typename Overlay, typename Shot>
bool Film(IDirect3DDevice9* device, ZQ::_3D::ZQ3DObject& store, const Options& options, const D3DXVECTOR3& position,
          const std::vector<double>& times, Overlay&& overlay, Shot&& shot) {
    ZQ::_3D::ZQ3DRenderSingle player(&store);
    if (!player.Entry(L"model", position))
        return false;
    player.SetRotation(options.yaw, 0.0f, 0.0f);
    // One pass, so that the last time shows the last key's pose rather than the start again.
    if (!player.Play(options.animation, 1, 0.0f))
        return false;
    ZQ::_3D::ZQ3DCamera camera(device);
    double previous = 0.0;
    for (size_t i = 0; i < times.size(); ++i) {
        PumpMessages();
        device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, kBackground, 1.0f, 0);
        device->BeginScene();
        camera.BeginScene(0.0f);
        // The library's own evaluation: the pose is advanced by the step, never set to the time.
        player.OnFrameRender(device, times[i], static_cast<float>(times[i] - previous), nullptr);
        camera.EndScene();
        overlay(i);
        device->EndScene();
        shot(i);
        previous = times[i];
    }
    return true;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    Options options;
    if (!Parse(argc, argv, options)) {
        std::printf("usage: contact_sheet MODEL.x ANIMATION [-frames:N] [-columns:C] [-size:WxH] [-out:FILE.png]\n"
                    "                     [-distance:D] [-yaw:RADIANS]\n");
        return 2;
    }
    if (options.out.empty())
        options.out = DefaultOut(options);
    const int width = options.width, height = options.height;

    // The title names the process: two sheets may be made at once.
    wchar_t title[64];
    _snwprintf(title, 64, L"ZQVelisto contact sheet %lu", GetCurrentProcessId());
    title[63] = 0;
    ZQ::ZQVelisto app(title, width, height);
    app.Init(false, false, false, false);
    if (FAILED(app.CreateWindow(title, nullptr, nullptr, nullptr, 0, 0)) ||
        FAILED(app.CreateDevice(0, true, width, height, nullptr, nullptr, nullptr))) {
        std::printf("no window or device of %d x %d\n", width, height);
        return 1;
    }
    IDirect3DDevice9* device = app.GetDevice();

    ZQ::_3D::ZQ3DObject store(device);
    if (!store.Entry(L"model", options.model)) {
        std::printf("cannot load %ls as a .x model\n", options.model);
        return 1;
    }
    const float length = store.GetAnimationLength(L"model", options.animation);
    if (length < 0.0f) {
        std::printf("%ls has no animation %ls\n", options.model, options.animation);
        return 1;
    }
    std::vector<double> times;
    for (int i = 0; i < options.frames; ++i)
        times.push_back(options.frames > 1 ? static_cast<double>(length) * i / (options.frames - 1) : 0.0);

    // Framing: the whole animation filmed from four times as far, where it surely fits, and the box of
    // every pixel it drew taken back to the model's depth.
    const float far = options.distance * 4.0f;
    int left = width, top = height, right = -1, bottom = -1;
    const auto nothing = [](size_t) {};
    Film(device, store, options, D3DXVECTOR3(0.0f, 0.0f, far), times, nothing, [&](size_t) {
        const std::vector<D3DCOLOR> pixels = ReadBackBuffer(device);
        for (int y = 0; y < height && !pixels.empty(); ++y)
            for (int x = 0; x < width; ++x)
                if (pixels[static_cast<size_t>(y) * width + x] != kBackground) {
                    left = std::min(left, x), right = std::max(right, x);
                    top = std::min(top, y), bottom = std::max(bottom, y);
                }
    });
    D3DXVECTOR3 position(0.0f, 0.0f, options.distance);
    float fill = 0.0f;
    if (right >= 0) {
        // A pixel's size at depth far, in world units.
        const float unit = 2.0f * far * std::tan(kHalfFieldOfView) / static_cast<float>(height);
        position.x = -(0.5f * (left + right + 1) - 0.5f * width) * unit;
        position.y = (0.5f * (top + bottom + 1) - 0.5f * height) * unit;
        fill = 4.0f *
               std::max(static_cast<float>(right - left + 1) / width, static_cast<float>(bottom - top + 1) / height);
    }

    const int columns = options.columns, rows = (options.frames + columns - 1) / columns;
    const int sheetWidth = columns * width + (columns + 1) * kGapPixels;
    const int sheetHeight = rows * height + (rows + 1) * kGapPixels;
    std::vector<D3DCOLOR> sheet(static_cast<size_t>(sheetWidth) * sheetHeight, kGap);
    ZQ::ZQFont font(device);
    font.Entry(kLabelFont, L"Arial", static_cast<UINT>(std::max(12, height / 14)), 0, FW_BOLD, 1, 0, DEFAULT_CHARSET,
               OUT_DEFAULT_PRECIS, ANTIALIASED_QUALITY, DEFAULT_PITCH | FF_DONTCARE);
    bool complete = true;
    const auto label = [&](size_t i) {
        wchar_t text[64];
        _snwprintf(text, 64, L"%.3f s", times[i]);
        text[63] = 0;
        RECT shadow = {7, 5, width, height}, place = {6, 4, width, height};
        font.DrawTextW(kLabelFont, nullptr, text, -1, &shadow, DT_LEFT | DT_TOP | DT_NOCLIP, 0xFF000000);
        font.DrawTextW(kLabelFont, nullptr, text, -1, &place, DT_LEFT | DT_TOP | DT_NOCLIP, 0xFFFFFFFF);
    };
    const bool filmed = Film(device, store, options, position, times, label, [&](size_t i) {
        const std::vector<D3DCOLOR> pixels = ReadBackBuffer(device);
        if (pixels.empty()) {
            complete = false;
            return;
        }
        const int column = static_cast<int>(i) % columns, row = static_cast<int>(i) / columns;
        const int x0 = kGapPixels + column * (width + kGapPixels), y0 = kGapPixels + row * (height + kGapPixels);
        for (int y = 0; y < height; ++y)
            std::copy_n(&pixels[static_cast<size_t>(y) * width], width,
                        &sheet[static_cast<size_t>(y0 + y) * sheetWidth + x0]);
        device->Present(nullptr, nullptr, nullptr, nullptr);
    });
    if (!filmed || !complete) {
        std::printf("the model could not be filmed\n");
        return 1;
    }

    wchar_t full[MAX_PATH];
    if (!GetFullPathNameW(options.out.c_str(), MAX_PATH, full, nullptr))
        std::wcsncpy(full, options.out.c_str(), MAX_PATH - 1), full[MAX_PATH - 1] = 0;
    const HRESULT saved = SavePng(device, sheet, sheetWidth, sheetHeight, full);
    std::printf("%ls \"%ls\": %.3f s, %d frames at %.3f s steps, model at (%.2f, %.2f, %.2f), yaw %.2f\n",
                options.model, options.animation, length, options.frames,
                options.frames > 1 ? length / (options.frames - 1) : 0.0, position.x, position.y, position.z,
                options.yaw);
    if (fill > 0.95f)
        std::printf("the animation is larger than a cell at distance %.2f: try -distance:%.1f\n", options.distance,
                    options.distance * fill / 0.8f);
    if (FAILED(saved)) {
        std::printf("cannot write %ls (0x%08lx)\n", full, static_cast<unsigned long>(saved));
        return 1;
    }
    std::printf("contact sheet: %ls\n", full);
    return 0;
}
