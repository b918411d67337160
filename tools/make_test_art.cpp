// Writes the images the texture tests pack and load; each image's pixels tell where they came from.
//   make_test_art DIR            the test images
//   make_test_art DIR COUNT      COUNT images of 8 to 40 pixels a side, for the benchmarks
//   make_test_art --wrap IMAGE WIDTH HEIGHT OUT.te
//                                an atlas holding IMAGE's bytes as they are (any format), one chunk
//                                "whole" of WIDTH x HEIGHT: images made by other tools, packed untouched
#include "ZQImage.h"
#include "ZQPackedTexture.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// A colour that encodes (image, x, y), so a test can check any pixel it reads back.
void Fill(zqtools::Image& image, int width, int height, uint8_t tag, bool transparentBorder) {
    image.width = width;
    image.height = height;
    image.rgba.assign(static_cast<size_t>(width) * height * 4, 0);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            uint8_t* p = image.Pixel(x, y);
            p[0] = static_cast<uint8_t>(x * 255 / (width > 1 ? width - 1 : 1));
            p[1] = static_cast<uint8_t>(y * 255 / (height > 1 ? height - 1 : 1));
            p[2] = tag;
            const bool border = transparentBorder && (x < 2 || y < 3 || x >= width - 4 || y >= height - 1);
            p[3] = border ? 0 : 255;
        }
}

bool Save(const std::string& dir, const char* name, int width, int height, uint8_t tag, bool border = false) {
    zqtools::Image image;
    Fill(image, width, height, tag, border);
    return zqtools::WriteFile(dir + "/" + name, zqtools::EncodePng(image));
}

// Four solid quadrants: red top-left, green top-right, blue bottom-left, white bottom-right.
bool SaveQuadrants(const std::string& dir, const char* name, int side) {
    zqtools::Image image;
    image.width = image.height = side;
    image.rgba.resize(static_cast<size_t>(side) * side * 4);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const bool right = x >= side / 2, bottom = y >= side / 2;
            uint8_t* p = image.Pixel(x, y);
            p[0] = (!right && !bottom) || (right && bottom) ? 255 : 0;
            p[1] = (right && !bottom) || (right && bottom) ? 255 : 0;
            p[2] = bottom ? 255 : 0;
            p[3] = 255;
        }
    return zqtools::WriteFile(dir + "/" + name, zqtools::EncodePng(image));
}

} // namespace

int Wrap(const std::string& imagePath, int width, int height, const std::string& out) {
    std::vector<uint8_t> image;
    if (!zqtools::ReadFile(imagePath, image) || width <= 0 || height <= 0)
        return 1;
    ZQ::formats::PackedFile atlas;
    atlas.teTag = ZQ::formats::kTeTagNarrow;
    atlas.width = width;
    atlas.height = height;
    ZQ::formats::PackedRecord whole;
    whole.narrowName = "whole";
    whole.pixel[2] = width;
    whole.pixel[3] = height;
    atlas.records.push_back(whole);
    return zqtools::WriteFile(out, ZQ::formats::WriteTe(atlas, image)) ? 0 : 1;
}

int main(int argc, char** argv) {
    if (argc == 6 && std::string(argv[1]) == "--wrap")
        return Wrap(argv[2], std::atoi(argv[3]), std::atoi(argv[4]), argv[5]);
    if (argc != 2 && argc != 3) {
        std::fputs("usage: make_test_art DIR [COUNT] | --wrap IMAGE WIDTH HEIGHT OUT.te\n", stderr);
        return 2;
    }
    const std::string dir = argv[1];
    if (argc == 3) {
        const int count = std::atoi(argv[2]);
        unsigned seed = 12345;
        for (int i = 0; i < count; ++i) {
            seed = seed * 1103515245u + 12345u;
            const int width = 8 + static_cast<int>(seed >> 16) % 33;
            seed = seed * 1103515245u + 12345u;
            const int height = 8 + static_cast<int>(seed >> 16) % 33;
            char name[32];
            std::snprintf(name, sizeof name, "s%05d.png", i);
            if (!Save(dir, name, width, height, static_cast<uint8_t>(i)))
                return 1;
        }
        return 0;
    }
    bool ok = Save(dir, "wide.png", 300, 200, 10) && Save(dir, "odd.png", 301, 33, 20) &&
              Save(dir, "chunk_a.png", 100, 40, 30) && Save(dir, "chunk_b.png", 32, 16, 40, true) &&
              Save(dir, "chunk_c.png", 64, 64, 50) && SaveQuadrants(dir, "quad.png", 32) &&
              Save(dir, "strip.png", 4000, 10, 60);
    std::FILE* broken = std::fopen((dir + "/broken.png").c_str(), "wb");
    ok = ok && broken && std::fputs("this is not an image", broken) >= 0;
    if (broken)
        std::fclose(broken);
    return ok ? 0 : 1;
}
