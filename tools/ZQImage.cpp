#include "ZQImage.h"

#include <stb_image.h>
#include <stb_image_write.h>

#include <cstdio>
#include <cstring>

namespace zqtools {

namespace {

// Takes stb's decoded pixels (null when decoding failed) into the image.
bool TakePixels(stbi_uc* pixels, Image& image, std::string& error) {
    if (!pixels) {
        error = stbi_failure_reason() ? stbi_failure_reason() : "cannot be decoded";
        return false;
    }
    image.rgba.assign(pixels, pixels + static_cast<size_t>(image.width) * image.height * 4);
    stbi_image_free(pixels);
    return true;
}

} // namespace

bool LoadImage(const std::string& path, Image& image, std::string& error) {
    int channels = 0;
    return TakePixels(stbi_load(path.c_str(), &image.width, &image.height, &channels, 4), image, error);
}

bool DecodeImage(const uint8_t* data, size_t size, Image& image, std::string& error) {
    int channels = 0;
    stbi_uc* pixels = size <= 0x7FFFFFFF ? stbi_load_from_memory(data, static_cast<int>(size), &image.width,
                                                                  &image.height, &channels, 4)
                                         : nullptr;
    return TakePixels(pixels, image, error);
}

std::vector<uint8_t> EncodePng(const Image& image) {
    std::vector<uint8_t> bytes;
    stbi_write_png_to_func(
        [](void* context, void* data, int size) {
            auto* out = static_cast<std::vector<uint8_t>*>(context);
            out->insert(out->end(), static_cast<uint8_t*>(data), static_cast<uint8_t*>(data) + size);
        },
        &bytes, image.width, image.height, 4, image.rgba.data(), image.width * 4);
    return bytes;
}

bool WriteFile(const std::string& path, const std::vector<uint8_t>& bytes) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        return false;
    const bool ok = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && ok;
}

bool ReadFile(const std::string& path, std::vector<uint8_t>& bytes) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file)
        return false;
    bytes.clear();
    uint8_t buffer[65536];
    size_t read;
    while ((read = std::fread(buffer, 1, sizeof buffer, file)) > 0)
        bytes.insert(bytes.end(), buffer, buffer + read);
    const bool ok = !std::ferror(file);
    std::fclose(file);
    return ok;
}

bool ImageSize(const uint8_t* data, size_t size, int& width, int& height) {
    int channels = 0;
    return size <= 0x7FFFFFFF &&
           stbi_info_from_memory(data, static_cast<int>(size), &width, &height, &channels) != 0;
}

} // namespace zqtools
