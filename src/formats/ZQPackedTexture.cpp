#include "ZQPackedTexture.h"

#include "ZQLittleEndian.h"

#include <algorithm>
#include <cstring>

namespace ZQ {
namespace formats {

namespace {

using namespace le;

// The header as far as the file holds it; missing bytes read as zero.
template <size_t Size> void CopyHeader(const uint8_t* data, size_t size, uint8_t (&header)[Size]) {
    std::memset(header, 0, Size);
    std::memcpy(header, data, std::min(size, Size));
}

// Records (RecordsPresent) and image stop where the bytes stop: nothing is made from bytes the file lacks.
void SetImage(const uint8_t* data, size_t size, size_t offset, PackedFile& file) {
    if (offset >= size)
        return;
    file.image = data + offset;
    file.imageBytes = std::min<size_t>(file.imageSize, size - offset);
}

} // namespace

ParseResult ParseOm(const uint8_t* data, size_t size, PackedFile& file) {
    file = PackedFile();
    uint8_t header[kOmHeaderSize];
    CopyHeader(data, size, header);
    if (std::memcmp(header, kOmMagic, sizeof kOmMagic) != 0)
        return ParseResult::FormatError;
    file.versionTwo = header[6] == 'v' && header[7] == '2';
    file.imageSize = U32(header + 12);
    file.width = U32(header + 16);
    file.height = U32(header + 20);
    file.declaredCount = I32(header + 24);

    const size_t recordSize = file.versionTwo ? kOmRecordSizeV2 : kOmRecordSizeV1;
    const size_t nameBytes = file.versionTwo ? kOmNameBytesV2 : kOmNameBytesV1;
    const size_t count = RecordsPresent(file.declaredCount, size, kOmHeaderSize, recordSize);
    file.records.resize(count);
    for (size_t i = 0; i < count; ++i) {
        const uint8_t* p = data + kOmHeaderSize + i * recordSize;
        PackedRecord& record = file.records[i];
        record.wideName = !file.versionTwo;
        if (record.wideName)
            record.wideNameText = WideText(p, nameBytes);
        else
            record.narrowName = NarrowText(p, nameBytes);
        const uint8_t* fields = p + nameBytes;
        for (int k = 0; k < 4; ++k) {
            record.pixel[k] = I32(fields + 4 * k);
            record.texcoord[k] = F32(fields + 16 + 4 * k);
        }
        record.origin[0] = I32(fields + 32);
        record.origin[1] = I32(fields + 36);
    }
    // The image follows the declared records, wherever the file ends.
    if (file.declaredCount > 0) {
        const uint64_t offset = kOmHeaderSize + static_cast<uint64_t>(file.declaredCount) * recordSize;
        if (offset < size)
            SetImage(data, size, static_cast<size_t>(offset), file);
    } else {
        SetImage(data, size, kOmHeaderSize, file);
    }
    return ParseResult::Ok;
}

ParseResult ParseTe(const uint8_t* data, size_t size, PackedFile& file) {
    file = PackedFile();
    uint8_t header[kTeHeaderSize];
    CopyHeader(data, size, header);
    file.teTag = U16(header);
    if (file.teTag != kTeTagNarrow && file.teTag != kTeTagWide)
        return ParseResult::FormatError;
    file.declaredCount = U16(header + 2);
    file.width = I32(header + 4);
    file.height = I32(header + 8);
    file.imageSize = U32(header + 12);

    const bool wide = file.teTag == kTeTagWide;
    const size_t recordSize = wide ? kTeRecordSizeWide : kTeRecordSizeNarrow;
    const size_t nameBytes = wide ? kTeNameBytesWide : kTeNameBytesNarrow;
    const size_t count = RecordsPresent(file.declaredCount, size, kTeHeaderSize, recordSize);
    file.records.resize(count);
    const float atlasWidth = static_cast<float>(file.width);
    const float atlasHeight = static_cast<float>(file.height);
    for (size_t i = 0; i < count; ++i) {
        const uint8_t* p = data + kTeHeaderSize + i * recordSize;
        PackedRecord& record = file.records[i];
        record.wideName = wide;
        if (wide)
            record.wideNameText = WideText(p + 16, nameBytes);
        else
            record.narrowName = NarrowText(p + 16, nameBytes);
        const uint8_t* fields = p + 16 + nameBytes;
        const int32_t x = I32(p), y = I32(p + 4);
        const int32_t w = I32(fields + 16), h = I32(fields + 20);
        // In 64 bits: x + w of a hostile file must not overflow.
        const int64_t right = static_cast<int64_t>(x) + w, bottom = static_cast<int64_t>(y) + h;
        record.pixel[0] = x;
        record.pixel[1] = y;
        record.pixel[2] = static_cast<int32_t>(std::clamp<int64_t>(right, INT32_MIN, INT32_MAX));
        record.pixel[3] = static_cast<int32_t>(std::clamp<int64_t>(bottom, INT32_MIN, INT32_MAX));
        record.texcoord[0] = static_cast<float>(x) / atlasWidth;
        record.texcoord[1] = static_cast<float>(y) / atlasHeight;
        record.texcoord[2] = static_cast<float>(right) / atlasWidth;
        record.texcoord[3] = static_cast<float>(bottom) / atlasHeight;
        record.origin[0] = I32(fields);
        record.origin[1] = I32(fields + 4);
        for (int k = 0; k < 4; ++k)
            record.trim[k] = I32(fields + 24 + 4 * k);
    }
    const uint64_t offset = kTeHeaderSize + static_cast<uint64_t>(file.declaredCount) * recordSize;
    if (offset < size)
        SetImage(data, size, static_cast<size_t>(offset), file);
    return ParseResult::Ok;
}

std::vector<uint8_t> WriteOm(const PackedFile& file, const std::vector<uint8_t>& image) {
    const size_t recordSize = file.versionTwo ? kOmRecordSizeV2 : kOmRecordSizeV1;
    const size_t nameBytes = file.versionTwo ? kOmNameBytesV2 : kOmNameBytesV1;
    std::vector<uint8_t> bytes(kOmHeaderSize + file.records.size() * recordSize + image.size());
    uint8_t* header = bytes.data();
    std::memcpy(header, kOmMagic, sizeof kOmMagic);
    header[6] = 'v';
    header[7] = file.versionTwo ? '2' : '1';
    PutU32(header + 12, static_cast<uint32_t>(image.size()));
    PutU32(header + 16, static_cast<uint32_t>(file.width));
    PutU32(header + 20, static_cast<uint32_t>(file.height));
    PutU32(header + 24, static_cast<uint32_t>(file.records.size()));
    for (size_t i = 0; i < file.records.size(); ++i) {
        const PackedRecord& record = file.records[i];
        uint8_t* p = bytes.data() + kOmHeaderSize + i * recordSize;
        if (file.versionTwo)
            PutNarrowText(p, nameBytes, record.narrowName);
        else
            PutWideText(p, nameBytes, record.wideNameText);
        uint8_t* fields = p + nameBytes;
        for (int k = 0; k < 4; ++k) {
            PutU32(fields + 4 * k, static_cast<uint32_t>(record.pixel[k]));
            PutF32(fields + 16 + 4 * k, record.texcoord[k]);
        }
        PutU32(fields + 32, static_cast<uint32_t>(record.origin[0]));
        PutU32(fields + 36, static_cast<uint32_t>(record.origin[1]));
    }
    std::copy(image.begin(), image.end(), bytes.end() - static_cast<std::ptrdiff_t>(image.size()));
    return bytes;
}

std::vector<uint8_t> WriteTe(const PackedFile& file, const std::vector<uint8_t>& image) {
    const bool wide = file.teTag == kTeTagWide;
    const size_t recordSize = wide ? kTeRecordSizeWide : kTeRecordSizeNarrow;
    const size_t nameBytes = wide ? kTeNameBytesWide : kTeNameBytesNarrow;
    std::vector<uint8_t> bytes(kTeHeaderSize + file.records.size() * recordSize + image.size());
    uint8_t* header = bytes.data();
    PutU16(header, file.teTag);
    PutU16(header + 2, static_cast<uint16_t>(file.records.size()));
    PutU32(header + 4, static_cast<uint32_t>(file.width));
    PutU32(header + 8, static_cast<uint32_t>(file.height));
    PutU32(header + 12, static_cast<uint32_t>(image.size()));
    for (size_t i = 0; i < file.records.size(); ++i) {
        const PackedRecord& record = file.records[i];
        uint8_t* p = bytes.data() + kTeHeaderSize + i * recordSize;
        PutU32(p, static_cast<uint32_t>(record.pixel[0]));
        PutU32(p + 4, static_cast<uint32_t>(record.pixel[1]));
        if (wide)
            PutWideText(p + 16, nameBytes, record.wideNameText);
        else
            PutNarrowText(p + 16, nameBytes, record.narrowName);
        uint8_t* fields = p + 16 + nameBytes;
        PutU32(fields, static_cast<uint32_t>(record.origin[0]));
        PutU32(fields + 4, static_cast<uint32_t>(record.origin[1]));
        PutU32(fields + 16, static_cast<uint32_t>(record.pixel[2] - record.pixel[0]));
        PutU32(fields + 20, static_cast<uint32_t>(record.pixel[3] - record.pixel[1]));
        for (int k = 0; k < 4; ++k)
            PutU32(fields + 24 + 4 * k, static_cast<uint32_t>(record.trim[k]));
    }
    std::copy(image.begin(), image.end(), bytes.end() - static_cast<std::ptrdiff_t>(image.size()));
    return bytes;
}

long PackedLog2(unsigned long value) {
    for (long k = 0; k <= 11; ++k)
        if ((1ul << (k + 1)) > value)
            return k + 1;
    switch (value) {
    case 4096: return 12;
    case 8192: return 13;
    case 16384: return 14;
    default: return -1;
    }
}

uint32_t PackedMipLevels(uint32_t width, uint32_t height) {
    const long levels = std::min(PackedLog2(width), PackedLog2(height)) - 1;
    return levels > 0 ? static_cast<uint32_t>(levels) : 1;
}

uint32_t LoaderSide(int64_t declared, uint32_t imageSide, uint32_t deviceMax) {
    uint64_t bound = 1;
    while (bound < imageSide)
        bound <<= 1;
    if (deviceMax > 0)
        bound = std::min<uint64_t>(bound, deviceMax);
    if (declared <= 0 || static_cast<uint64_t>(declared) > bound)
        return static_cast<uint32_t>(bound);
    return static_cast<uint32_t>(declared);
}

SplitChunk PlanSplitChunk(const int32_t pixel[4], uint32_t imageWidth, uint32_t imageHeight, uint32_t deviceMax) {
    SplitChunk chunk;
    const int64_t limits[4] = {imageWidth, imageHeight, imageWidth, imageHeight};
    for (int k = 0; k < 4; ++k)
        chunk.source[k] = static_cast<int32_t>(std::clamp<int64_t>(pixel[k], 0, limits[k]));
    const int64_t width = int64_t{chunk.source[2]} - chunk.source[0];
    const int64_t height = int64_t{chunk.source[3]} - chunk.source[1];
    if (width <= 0 || height <= 0)
        return chunk;
    const long exponent = PackedLog2(static_cast<unsigned long>(std::max(width, height)));
    if (exponent < 0 || (deviceMax > 0 && (uint64_t{1} << exponent) > deviceMax))
        return chunk;
    chunk.side = 1u << exponent;
    chunk.levels = PackedMipLevels(static_cast<uint32_t>(width), static_cast<uint32_t>(height));
    return chunk;
}

bool PngSize(const uint8_t* data, size_t size, uint32_t& width, uint32_t& height) {
    static const uint8_t signature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    static const uint8_t header[8] = {0, 0, 0, 13, 'I', 'H', 'D', 'R'};
    if (size < 24 || std::memcmp(data, signature, 8) != 0 || std::memcmp(data + 8, header, 8) != 0)
        return false;
    const auto bigEndian = [](const uint8_t* at) {
        return static_cast<uint32_t>(at[0]) << 24 | static_cast<uint32_t>(at[1]) << 16 |
               static_cast<uint32_t>(at[2]) << 8 | at[3];
    };
    width = bigEndian(data + 16);
    height = bigEndian(data + 20);
    // Sides of 0 or past 2^31 - 1 make no valid image.
    return width > 0 && height > 0 && width <= INT32_MAX && height <= INT32_MAX;
}

bool ImageRefused(const uint8_t* data, size_t size) {
    if (size < 2 || data[0] != 'B' || data[1] != 'M')
        return false;
    if (size < 26)
        return true;
    const uint32_t headerSize = U32(data + 14);
    int64_t width, height;
    if (headerSize == 12) { // the old core header: 16-bit sides
        width = static_cast<int16_t>(U16(data + 18));
        height = static_cast<int16_t>(U16(data + 20));
    } else {
        width = I32(data + 18);
        height = I32(data + 22);
    }
    return width <= 0 || width > 65535 || height == 0 || height > 65535 || height < -65535;
}

const char* DescribeImage(const uint8_t* data, size_t size) {
    uint32_t width, height;
    if (PngSize(data, size, width, height)) {
        // Bit depth, then colour type: the depths Wine's decoder refuses are the ones hosts meet.
        if (size > 24 && data[24] == 16)
            return "a 16-bit PNG";
        return "a PNG";
    }
    if (size >= 3 && data[0] == 0xFF && data[1] == 0xD8 && data[2] == 0xFF)
        return "a JPEG";
    if (size >= 2 && data[0] == 'B' && data[1] == 'M')
        return ImageRefused(data, size) ? "a BMP whose header gives impossible sides" : "a BMP";
    if (size >= 4 && std::memcmp(data, "DDS ", 4) == 0)
        return "a DDS";
    if (size >= 3 && std::memcmp(data, "GIF", 3) == 0)
        return "a GIF";
    if (size == 0)
        return "empty";
    return "not an image of a known kind";
}

} // namespace formats
} // namespace ZQ
