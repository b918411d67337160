#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// A Direct3D 9 format's name without its "D3DFMT_" prefix ("X8R8G8B8"); "Unknown format" for a
/// value that names none.
ZQ_API const wchar_t* ZQD3DFormatName(D3DFORMAT format);
/// Bits a pixel (or index, or depth-stencil sample) of the format takes: 4 for DXT1, 8 for the other
/// block-compressed formats; 0 for an unknown format or one without pixels (vertex data, buffers).
ZQ_API UINT ZQD3DFormatBits(D3DFORMAT format);
/// Bits of alpha a pixel of the format carries; 0 when it has none.
ZQ_API UINT ZQD3DFormatAlphaBits(D3DFORMAT format);

/// A result code's name as the platform's headers spell it ("D3DERR_DEVICELOST", "E_OUTOFMEMORY",
/// "ZQ_E_NO_COMPATIBLE_DEVICES"; Win32 errors as "HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)"), for the
/// common codes of Direct3D, D3DX, DirectSound, COM and the library; "Unknown error code" (or success
/// code) for the others.
ZQ_API const wchar_t* ZQResultName(HRESULT code);
/// One sentence saying what the code means, for a message or a log; a fixed sentence for unknown codes.
ZQ_API const wchar_t* ZQResultDescription(HRESULT code);

} // namespace ZQ
