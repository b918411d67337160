// Direct3D 9 formats by their numbers, without the platform's headers: names, sizes, and the format a
// DDS file's pixel format names. Shared by the DLL's format helpers and the native tools.
#pragma once
#include <cstddef>
#include <cstdint>

namespace ZQ {
namespace formats {

struct D3DFormatInfo {
    uint32_t format;    ///< the D3DFORMAT value
    const wchar_t* name; ///< without "D3DFMT_"
    unsigned bits;      ///< a pixel's (4 for DXT1, 8 for the other block formats; 0 without pixels)
    unsigned alphaBits;
};

/// The format's entry, or null for a value that names none.
const D3DFormatInfo* FindD3DFormat(uint32_t format);

/// The D3DFORMAT a DDS file's header gives (its FourCC, or the format its masks describe); 0 when the
/// bytes are no DDS header or name no format of the table.
uint32_t DdsFormat(const uint8_t* data, size_t size);

} // namespace formats
} // namespace ZQ
