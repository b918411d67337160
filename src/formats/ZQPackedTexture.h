// The ".OM" and ".TE" packed texture files: layouts, and reading and writing them as bytes.
// No platform calls: the DLL, the authoring tools and the fuzzer share this code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ZQ {
namespace formats {

// ".OM": 28-byte header, then the records, then the embedded image.
const size_t kOmHeaderSize = 28;
const size_t kOmRecordSizeV1 = 104; // wide names
const size_t kOmRecordSizeV2 = 72;  // single-byte names
const size_t kOmNameBytesV1 = 64;   // 32 UTF-16 code units
const size_t kOmNameBytesV2 = 32;
const char kOmMagic[5] = {'Q', 'X', 'R', 'O', 'M'};

// ".TE": 144-byte header, then the records, then the embedded image.
const size_t kTeHeaderSize = 144;
const uint16_t kTeTagNarrow = 6536; // 456-byte records, single-byte names
const uint16_t kTeTagWide = 10632;  // 712-byte records, UTF-16 names
const size_t kTeRecordSizeNarrow = 456;
const size_t kTeRecordSizeWide = 712;
const size_t kTeNameBytesNarrow = 256;
const size_t kTeNameBytesWide = 512;

/// One named rectangle of a packed file.
struct PackedRecord {
    bool wideName = false;
    std::string narrowName;  ///< single-byte layouts
    std::u16string wideNameText; ///< UTF-16 layouts
    int32_t pixel[4] = {};   ///< left, top, right, bottom (".TE": x, y, x + w, y + h)
    float texcoord[4] = {};  ///< ".OM": as stored; ".TE": x / W, y / H, (x + w) / W, (y + h) / H
    int32_t origin[2] = {};
    int32_t trim[4] = {};    ///< ".TE" only
};

/// A packed file as read: the header, the records the file really holds, the image bytes it really holds.
struct PackedFile {
    bool versionTwo = false;   ///< ".OM": the version characters are "v2"
    uint16_t teTag = 0;        ///< ".TE": the layout tag
    uint32_t imageSize = 0;    ///< as the header declares it
    int64_t width = 0;         ///< ".OM": the header's width (u32); ".TE": the atlas width W (i32)
    int64_t height = 0;
    int64_t declaredCount = 0; ///< the header's record count
    std::vector<PackedRecord> records;
    const uint8_t* image = nullptr; ///< points into the parsed bytes
    size_t imageBytes = 0;          ///< at most imageSize: a file cut short holds less
};

enum class ParseResult { Ok, FormatError };

/// Reads an ".OM" file. FormatError when the magic is not "QXROM". A file cut short is read as far as
/// it goes: the header's missing bytes count as zero, records and image stop where the bytes stop.
ParseResult ParseOm(const uint8_t* data, size_t size, PackedFile& file);
/// Reads a ".TE" file. FormatError when the layout tag is neither 6536 nor 10632; short files as above.
ParseResult ParseTe(const uint8_t* data, size_t size, PackedFile& file);

/// Writes an ".OM" file: "v2" layout when versionTwo, else the first (wide-name) layout.
std::vector<uint8_t> WriteOm(const PackedFile& file, const std::vector<uint8_t>& image);
/// Writes a ".TE" file with the layout of file.teTag. Records give x, y, w, h through pixel.
std::vector<uint8_t> WriteTe(const PackedFile& file, const std::vector<uint8_t>& image);

/// Exponent of the smallest power of two strictly greater than value, for values below 4096;
/// 12, 13, 14 for exactly 4096, 8192, 16384; -1 otherwise.
long PackedLog2(unsigned long value);
/// min(log2(width) - 1, log2(height) - 1) mip levels, at least 1.
uint32_t PackedMipLevels(uint32_t width, uint32_t height);

/// The width (or height) to ask the image loader for: the header's value, but never more than the
/// decoded image's side rounded up to a power of two, nor the device's largest side (0: no limit).
/// A value of 0 or less, which no well-made file holds, asks for that bound.
uint32_t LoaderSide(int64_t declared, uint32_t imageSide, uint32_t deviceMax);

/// What split loading gives one record.
struct SplitChunk {
    int32_t source[4] = {}; ///< the record's rectangle clipped to the image: left, top, right, bottom
    uint32_t side = 0;      ///< of the chunk's square texture; 0: no texture
    uint32_t levels = 0;
};
/// The record's pixel rectangle is clipped to the image first; an empty result gets no texture, nor does a
/// side past the device's largest (0: no limit). The side is the smallest power of two strictly greater
/// than the clipped rectangle's larger side.
SplitChunk PlanSplitChunk(const int32_t pixel[4], uint32_t imageWidth, uint32_t imageHeight, uint32_t deviceMax);

/// The width and height a PNG image declares in its header (what the image loader reports for it);
/// false when the bytes do not begin with a PNG signature and a valid header chunk.
bool PngSize(const uint8_t* data, size_t size, uint32_t& width, uint32_t& height);

/// True for a BMP whose header declares a side of 0, a negative width or a side past 65,535: no image
/// loader accepts one, and Wine's BMP decoder crashes on some instead of refusing them.
bool ImageRefused(const uint8_t* data, size_t size);

/// What the bytes are, for a message on an image that did not decode: "a 16-bit PNG", "a PNG", "a JPEG",
/// ..., "empty" or "not an image of a known kind".
const char* DescribeImage(const uint8_t* data, size_t size);

} // namespace formats
} // namespace ZQ
