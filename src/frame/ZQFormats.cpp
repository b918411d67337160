#include "ZQ/frame/ZQFormats.h"

namespace ZQ {

namespace {

struct FormatEntry {
    D3DFORMAT format;
    const wchar_t* name;
    UINT bits;
    UINT alphaBits;
};

#define ZQ_WIDE(text) L##text
#define ZQ_FORMAT(name, bits, alpha) {D3DFMT_##name, ZQ_WIDE(#name), bits, alpha},
const FormatEntry kFormats[] = {
    ZQ_FORMAT(UNKNOWN, 0, 0) ZQ_FORMAT(R8G8B8, 24, 0) ZQ_FORMAT(A8R8G8B8, 32, 8) ZQ_FORMAT(X8R8G8B8, 32, 0)
        ZQ_FORMAT(R5G6B5, 16, 0) ZQ_FORMAT(X1R5G5B5, 16, 0) ZQ_FORMAT(A1R5G5B5, 16, 1) ZQ_FORMAT(A4R4G4B4, 16, 4)
            ZQ_FORMAT(R3G3B2, 8, 0) ZQ_FORMAT(A8, 8, 8) ZQ_FORMAT(A8R3G3B2, 16, 8) ZQ_FORMAT(X4R4G4B4, 16, 0) ZQ_FORMAT(
                A2B10G10R10, 32, 2) ZQ_FORMAT(A8B8G8R8, 32, 8) ZQ_FORMAT(X8B8G8R8, 32, 0) ZQ_FORMAT(G16R16, 32, 0)
                ZQ_FORMAT(A2R10G10B10, 32, 2) ZQ_FORMAT(A16B16G16R16, 64, 16) ZQ_FORMAT(A8P8, 16, 8) ZQ_FORMAT(P8, 8, 0)
                    ZQ_FORMAT(L8, 8, 0) ZQ_FORMAT(A8L8, 16, 8) ZQ_FORMAT(A4L4, 8, 4) ZQ_FORMAT(V8U8, 16, 0) ZQ_FORMAT(
                        L6V5U5, 16, 0) ZQ_FORMAT(X8L8V8U8, 32, 0) ZQ_FORMAT(Q8W8V8U8, 32, 8) ZQ_FORMAT(V16U16, 32, 0)
                        ZQ_FORMAT(A2W10V10U10, 32, 2) ZQ_FORMAT(UYVY, 16, 0) ZQ_FORMAT(YUY2, 16, 0)
                            ZQ_FORMAT(DXT1, 4, 1) ZQ_FORMAT(DXT2, 8, 4) ZQ_FORMAT(DXT3, 8, 4) ZQ_FORMAT(DXT4, 8, 8)
                                ZQ_FORMAT(DXT5, 8, 8) ZQ_FORMAT(MULTI2_ARGB8, 0, 0) ZQ_FORMAT(G8R8_G8B8, 16, 0)
                                    ZQ_FORMAT(R8G8_B8G8, 16, 0) ZQ_FORMAT(D16_LOCKABLE, 16, 0) ZQ_FORMAT(D32, 32, 0)
                                        ZQ_FORMAT(D15S1, 16, 0) ZQ_FORMAT(D24S8, 32, 0) ZQ_FORMAT(D24X8, 32, 0)
                                            ZQ_FORMAT(D24X4S4, 32, 0) ZQ_FORMAT(D16, 16, 0) ZQ_FORMAT(L16, 16, 0)
                                                ZQ_FORMAT(D32F_LOCKABLE, 32, 0) ZQ_FORMAT(D24FS8, 32, 0)
                                                    ZQ_FORMAT(D32_LOCKABLE, 32, 0) ZQ_FORMAT(S8_LOCKABLE, 8, 0)
                                                        ZQ_FORMAT(VERTEXDATA, 0, 0) ZQ_FORMAT(INDEX16, 16, 0)
                                                            ZQ_FORMAT(INDEX32, 32, 0) ZQ_FORMAT(Q16W16V16U16, 64, 16)
                                                                ZQ_FORMAT(R16F, 16, 0) ZQ_FORMAT(G16R16F, 32, 0)
                                                                    ZQ_FORMAT(A16B16G16R16F, 64, 16)
                                                                        ZQ_FORMAT(R32F, 32, 0) ZQ_FORMAT(G32R32F, 64, 0)
                                                                            ZQ_FORMAT(A32B32G32R32F, 128, 32) ZQ_FORMAT(
                                                                                CxV8U8, 16, 0) ZQ_FORMAT(A1, 1, 1)
                                                                                ZQ_FORMAT(A2B10G10R10_XR_BIAS, 32, 2)
                                                                                    ZQ_FORMAT(BINARYBUFFER, 0, 0)};
#undef ZQ_FORMAT
#undef ZQ_WIDE

const FormatEntry* Find(D3DFORMAT format) {
    for (const FormatEntry& entry : kFormats)
        if (entry.format == format)
            return &entry;
    return nullptr;
}

} // namespace

const wchar_t* ZQD3DFormatName(D3DFORMAT format) {
    const FormatEntry* entry = Find(format);
    return entry ? entry->name : L"Unknown format";
}

UINT ZQD3DFormatBits(D3DFORMAT format) {
    const FormatEntry* entry = Find(format);
    return entry ? entry->bits : 0;
}

UINT ZQD3DFormatAlphaBits(D3DFORMAT format) {
    const FormatEntry* entry = Find(format);
    return entry ? entry->alphaBits : 0;
}

} // namespace ZQ
