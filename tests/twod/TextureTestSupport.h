// The texture tests' device, data folder and pixel reading.
#pragma once
#include <ZQVelisto.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

namespace twodtest {

/// The test program's one application object and its device.
ZQ::ZQVelisto* App();
IDirect3DDevice9* Device();
/// A file of the test data folder, as a Windows path.
std::wstring Data(const std::wstring& name);
/// Copies a data file under another name, with the bytes from `cut` on removed (none when cut < 0)
/// and the byte at `patchAt` (when >= 0) set to `patchValue`.
std::wstring CopyData(const std::wstring& from, const std::wstring& to, long cut = -1, long patchAt = -1,
                      unsigned char patchValue = 0);
/// The same, with 32-bit little-endian values also written at the offsets.
std::wstring PatchData(const std::wstring& from, const std::wstring& to,
                       std::initializer_list<std::pair<long, int32_t>> values, long cut = -1, long patchAt = -1,
                       unsigned char patchValue = 0);
/// The ARGB pixel at (x, y) of a texture's level 0.
D3DCOLOR ReadPixel(IDirect3DTexture9* texture, int x, int y);
/// Levels, width and height of a texture (none for no texture).
UINT Levels(IDirect3DTexture9* texture);
D3DSURFACE_DESC LevelDesc(IDirect3DTexture9* texture);
/// The colour make_test_art gave pixel (x, y) of an image of width x height with the tag.
D3DCOLOR ArtPixel(int x, int y, int width, int height, int tag);
/// Clears the back buffer to black and begins the device scene.
void BeginFrame();
/// Ends the scene and keeps a copy of the back buffer for BackBufferPixel.
void EndFrame();
/// The X8R8G8B8 pixel of the back buffer copy (alpha forced to 0xFF).
D3DCOLOR BackBufferPixel(int x, int y);
/// Pixels of the back buffer copy inside r that are not black.
int LitPixels(const RECT& r);
/// Resizes the window's client area (the device resets to it when the frame sees the change).
void Resize(int width, int height);
/// Each channel within tolerance.
bool Near(D3DCOLOR a, D3DCOLOR b, int tolerance = 2);

} // namespace twodtest
