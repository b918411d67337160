#include "ZQD3DFormats.h"

#include <cstring>

namespace ZQ {
namespace formats {

namespace {

// clang-format off
const D3DFormatInfo kFormats[] = {
    {0, L"UNKNOWN", 0, 0},
    {20, L"R8G8B8", 24, 0},
    {21, L"A8R8G8B8", 32, 8},
    {22, L"X8R8G8B8", 32, 0},
    {23, L"R5G6B5", 16, 0},
    {24, L"X1R5G5B5", 16, 0},
    {25, L"A1R5G5B5", 16, 1},
    {26, L"A4R4G4B4", 16, 4},
    {27, L"R3G3B2", 8, 0},
    {28, L"A8", 8, 8},
    {29, L"A8R3G3B2", 16, 8},
    {30, L"X4R4G4B4", 16, 0},
    {31, L"A2B10G10R10", 32, 2},
    {32, L"A8B8G8R8", 32, 8},
    {33, L"X8B8G8R8", 32, 0},
    {34, L"G16R16", 32, 0},
    {35, L"A2R10G10B10", 32, 2},
    {36, L"A16B16G16R16", 64, 16},
    {40, L"A8P8", 16, 8},
    {41, L"P8", 8, 0},
    {50, L"L8", 8, 0},
    {51, L"A8L8", 16, 8},
    {52, L"A4L4", 8, 4},
    {60, L"V8U8", 16, 0},
    {61, L"L6V5U5", 16, 0},
    {62, L"X8L8V8U8", 32, 0},
    {63, L"Q8W8V8U8", 32, 8},
    {64, L"V16U16", 32, 0},
    {67, L"A2W10V10U10", 32, 2},
    {0x59565955, L"UYVY", 16, 0},
    {0x32595559, L"YUY2", 16, 0},
    {0x31545844, L"DXT1", 4, 1},
    {0x32545844, L"DXT2", 8, 4},
    {0x33545844, L"DXT3", 8, 4},
    {0x34545844, L"DXT4", 8, 8},
    {0x35545844, L"DXT5", 8, 8},
    {0x3154454D, L"MULTI2_ARGB8", 0, 0},
    {0x42475247, L"G8R8_G8B8", 16, 0},
    {0x47424752, L"R8G8_B8G8", 16, 0},
    {70, L"D16_LOCKABLE", 16, 0},
    {71, L"D32", 32, 0},
    {73, L"D15S1", 16, 0},
    {75, L"D24S8", 32, 0},
    {77, L"D24X8", 32, 0},
    {79, L"D24X4S4", 32, 0},
    {80, L"D16", 16, 0},
    {81, L"L16", 16, 0},
    {82, L"D32F_LOCKABLE", 32, 0},
    {83, L"D24FS8", 32, 0},
    {84, L"D32_LOCKABLE", 32, 0},
    {85, L"S8_LOCKABLE", 8, 0},
    {100, L"VERTEXDATA", 0, 0},
    {101, L"INDEX16", 16, 0},
    {102, L"INDEX32", 32, 0},
    {110, L"Q16W16V16U16", 64, 16},
    {111, L"R16F", 16, 0},
    {112, L"G16R16F", 32, 0},
    {113, L"A16B16G16R16F", 64, 16},
    {114, L"R32F", 32, 0},
    {115, L"G32R32F", 64, 0},
    {116, L"A32B32G32R32F", 128, 32},
    {117, L"CxV8U8", 16, 0},
    {118, L"A1", 1, 1},
    {119, L"A2B10G10R10_XR_BIAS", 32, 2},
    {199, L"BINARYBUFFER", 0, 0},
};
// clang-format on

uint32_t Le32(const uint8_t* p) {
    return p[0] | p[1] << 8 | p[2] << 16 | static_cast<uint32_t>(p[3]) << 24;
}

struct MaskFormat {
    uint32_t bits, red, green, blue, alpha, format;
};
// Uncompressed DDS pixel formats by bit count and channel masks.
const MaskFormat kMaskFormats[] = {
    {32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000, 21}, {32, 0xFF0000, 0xFF00, 0xFF, 0, 22},
    {32, 0xFF, 0xFF00, 0xFF0000, 0xFF000000, 32}, {32, 0xFF, 0xFF00, 0xFF0000, 0, 33},
    {24, 0xFF0000, 0xFF00, 0xFF, 0, 20},          {16, 0xF800, 0x7E0, 0x1F, 0, 23},
    {16, 0x7C00, 0x3E0, 0x1F, 0x8000, 25},        {16, 0x7C00, 0x3E0, 0x1F, 0, 24},
    {16, 0xF00, 0xF0, 0xF, 0xF000, 26},           {8, 0xFF, 0, 0, 0, 50},
    {8, 0, 0, 0, 0xFF, 28},                       {16, 0xFF, 0, 0, 0xFF00, 51},
};

} // namespace

const D3DFormatInfo* FindD3DFormat(uint32_t format) {
    for (const D3DFormatInfo& entry : kFormats)
        if (entry.format == format)
            return &entry;
    return nullptr;
}

uint32_t DdsFormat(const uint8_t* data, size_t size) {
    // "DDS ", then the 124-byte header whose pixel format starts 76 bytes in.
    if (size < 128 || std::memcmp(data, "DDS ", 4) != 0)
        return 0;
    const uint8_t* pixelFormat = data + 76;
    const uint32_t flags = Le32(pixelFormat + 4);
    if (flags & 0x4) { // a FourCC, which for the other formats is the D3DFORMAT number itself
        const uint32_t fourCC = Le32(pixelFormat + 8);
        return FindD3DFormat(fourCC) ? fourCC : 0;
    }
    const uint32_t alpha = (flags & 0x3) ? Le32(pixelFormat + 28) : 0; // alpha pixels, or alpha only
    for (const MaskFormat& m : kMaskFormats)
        if (m.bits == Le32(pixelFormat + 12) && m.red == Le32(pixelFormat + 16) && m.green == Le32(pixelFormat + 20) &&
            m.blue == Le32(pixelFormat + 24) && m.alpha == alpha)
            return m.format;
    return 0;
}

} // namespace formats
} // namespace ZQ
