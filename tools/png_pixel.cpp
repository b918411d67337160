// Prints the red, green, blue and alpha of pixels of an image, one line a pixel, for the tools' tests.
//   png_pixel FILE X Y [X Y]...
#include "ZQImage.h"

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv) {
    if (argc < 4 || argc % 2 != 0) {
        std::fputs("usage: png_pixel FILE X Y [X Y]...\n", stderr);
        return 2;
    }
    zqtools::Image image;
    std::string error;
    if (!zqtools::LoadImage(argv[1], image, error)) {
        std::fprintf(stderr, "png_pixel: %s: %s\n", argv[1], error.c_str());
        return 1;
    }
    for (int i = 2; i + 1 < argc; i += 2) {
        const int x = std::atoi(argv[i]), y = std::atoi(argv[i + 1]);
        if (x < 0 || y < 0 || x >= image.width || y >= image.height) {
            std::fprintf(stderr, "png_pixel: %d %d is outside the %d x %d image\n", x, y, image.width, image.height);
            return 1;
        }
        const uint8_t* p = image.Pixel(x, y);
        std::printf("%d %d %d %d\n", p[0], p[1], p[2], p[3]);
    }
    return 0;
}
