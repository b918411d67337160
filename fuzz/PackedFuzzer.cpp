// libFuzzer target: the parsing of ".OM" and ".TE" files, the round trip through the writers, and the
// loader's size decisions (the image's size from a PNG header, the texture asked of the image loader, each
// split chunk's rectangle and side).
#include "ZQPackedTexture.h"

#include <stb_image.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

using namespace ZQ::formats;

void Check(bool condition) {
    if (!condition)
        std::abort();
}

uint64_t PowerOfTwoAtLeast(uint64_t value) {
    uint64_t power = 1;
    while (power < value)
        power <<= 1;
    return power;
}

// The image's size as the decoder reports it; an image it cannot read stands for one of any size, taken
// from the file's last bytes, so that the decisions below see every size.
void ImageSize(const PackedFile& file, const uint8_t* data, size_t size, uint32_t& width, uint32_t& height) {
    int w = 0, h = 0, channels = 0;
    uint32_t pngWidth = 0, pngHeight = 0;
    const bool png = PngSize(file.image, file.imageBytes, pngWidth, pngHeight);
    if (file.imageBytes && file.imageBytes <= INT32_MAX &&
        stbi_info_from_memory(file.image, static_cast<int>(file.imageBytes), &w, &h, &channels)) {
        width = static_cast<uint32_t>(w);
        height = static_cast<uint32_t>(h);
        // The loader takes a PNG's size from its header: it must be the size a decoder finds.
        Check(!png || (pngWidth == width && pngHeight == height));
        return;
    }
    const uint8_t* tail = size >= 4 ? data + size - 4 : data;
    width = size >= 4 ? 1u + (tail[0] | tail[1] << 8) : 1;
    height = size >= 4 ? 1u + (tail[2] | tail[3] << 8) : 1;
}

void CheckDecisions(const PackedFile& file, const uint8_t* data, size_t size) {
    uint32_t imageWidth, imageHeight;
    ImageSize(file, data, size, imageWidth, imageHeight);
    for (uint32_t deviceMax : {0u, 2048u, 16384u}) {
        const uint32_t width = LoaderSide(file.width, imageWidth, deviceMax);
        const uint32_t height = LoaderSide(file.height, imageHeight, deviceMax);
        Check(width >= 1 && width <= PowerOfTwoAtLeast(imageWidth) && (!deviceMax || width <= deviceMax));
        Check(height >= 1 && height <= PowerOfTwoAtLeast(imageHeight) && (!deviceMax || height <= deviceMax));
        // Split chunks read from the image as loaded: at most the image, at most the texture asked for.
        const uint32_t loadedWidth = std::min(imageWidth, width), loadedHeight = std::min(imageHeight, height);
        const uint64_t largest = PowerOfTwoAtLeast(std::max(loadedWidth, loadedHeight));
        for (const PackedRecord& record : file.records) {
            const SplitChunk chunk = PlanSplitChunk(record.pixel, loadedWidth, loadedHeight, deviceMax);
            if (!chunk.side)
                continue;
            const int64_t w = int64_t{chunk.source[2]} - chunk.source[0];
            const int64_t h = int64_t{chunk.source[3]} - chunk.source[1];
            Check(chunk.source[0] >= 0 && chunk.source[1] >= 0 && chunk.source[2] <= int64_t{loadedWidth} &&
                  chunk.source[3] <= int64_t{loadedHeight} && w > 0 && h > 0);
            Check(chunk.side > std::max(w, h) || chunk.side >= 4096);
            Check(chunk.side <= 2 * largest && (!deviceMax || chunk.side <= deviceMax));
            Check(chunk.levels >= 1 && chunk.levels <= 14);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    PackedFile file;
    if (ParseOm(data, size, file) == ParseResult::Ok) {
        if (file.records.size() * kOmRecordSizeV2 > size)
            std::abort(); // a record made from bytes the file does not have
        CheckDecisions(file, data, size);
        const std::vector<uint8_t> image(file.image, file.image + file.imageBytes);
        const std::vector<uint8_t> written = WriteOm(file, image);
        PackedFile again;
        if (ParseOm(written.data(), written.size(), again) != ParseResult::Ok ||
            again.records.size() != file.records.size() || again.imageBytes != image.size())
            std::abort();
    }
    if (ParseTe(data, size, file) == ParseResult::Ok) {
        if (file.records.size() * kTeRecordSizeNarrow > size)
            std::abort();
        CheckDecisions(file, data, size);
        const std::vector<uint8_t> image(file.image, file.image + file.imageBytes);
        const std::vector<uint8_t> written = WriteTe(file, image);
        PackedFile again;
        if (ParseTe(written.data(), written.size(), again) != ParseResult::Ok ||
            again.records.size() != file.records.size())
            std::abort();
    }
    for (unsigned long value = 0; value < 4; ++value)
        PackedLog2(size * 4 + value);
    return 0;
}
