// PNG decoding and encoding for the tools, over Debian's stb.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zqtools {

/// An RGBA image, rows top to bottom.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;
    uint8_t* Pixel(int x, int y) { return &rgba[(static_cast<size_t>(y) * width + x) * 4]; }
    const uint8_t* Pixel(int x, int y) const { return &rgba[(static_cast<size_t>(y) * width + x) * 4]; }
};

/// Decodes any image stb reads (PNG, JPEG, BMP, TGA, ...); false with a reason in error.
bool LoadImage(const std::string& path, Image& image, std::string& error);
/// Decodes an image held in memory, as LoadImage.
bool DecodeImage(const uint8_t* data, size_t size, Image& image, std::string& error);
/// Encodes as PNG.
std::vector<uint8_t> EncodePng(const Image& image);
bool WriteFile(const std::string& path, const std::vector<uint8_t>& bytes);
bool ReadFile(const std::string& path, std::vector<uint8_t>& bytes);
/// Width and height of an encoded image, without decoding it.
bool ImageSize(const uint8_t* data, size_t size, int& width, int& height);

} // namespace zqtools
