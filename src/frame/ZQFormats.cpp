#include "ZQ/frame/ZQFormats.h"
#include "ZQ/frame/ZQErrors.h"
#include "src/formats/ZQD3DFormats.h"

#include <dsound.h>

namespace ZQ {

namespace {

#define ZQ_WIDE(text) L##text

struct ResultEntry {
    HRESULT code;
    const wchar_t* name;
    const wchar_t* description;
};

#define ZQ_RESULT(code, description) {static_cast<HRESULT>(code), ZQ_WIDE(#code), description},
// clang-format off
const ResultEntry kResults[] = {
    ZQ_RESULT(S_OK, L"The operation succeeded.")
    ZQ_RESULT(S_FALSE, L"The operation succeeded with nothing to do (or the value was absent).")
    ZQ_RESULT(E_FAIL, L"The operation failed.")
    ZQ_RESULT(E_INVALIDARG, L"An argument is not valid.")
    ZQ_RESULT(E_OUTOFMEMORY, L"There is not enough memory.")
    ZQ_RESULT(E_NOTIMPL, L"The operation is not implemented.")
    ZQ_RESULT(E_NOINTERFACE, L"The object does not offer the interface asked for.")
    ZQ_RESULT(E_POINTER, L"A pointer is not valid.")
    ZQ_RESULT(E_ACCESSDENIED, L"Access is denied.")
    ZQ_RESULT(E_UNEXPECTED, L"An unexpected failure.")
    ZQ_RESULT(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), L"The file was not found.")
    ZQ_RESULT(HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND), L"The folder was not found.")
    ZQ_RESULT(HRESULT_FROM_WIN32(ERROR_MORE_DATA), L"The value is larger than the room given for it.")
    ZQ_RESULT(HRESULT_FROM_WIN32(ERROR_DATATYPE_MISMATCH), L"The value is of another type.")
    ZQ_RESULT(D3DERR_WRONGTEXTUREFORMAT, L"The texture format cannot be used here.")
    ZQ_RESULT(D3DERR_UNSUPPORTEDCOLOROPERATION, L"The device does not support this colour operation.")
    ZQ_RESULT(D3DERR_UNSUPPORTEDCOLORARG, L"The device does not support this colour argument.")
    ZQ_RESULT(D3DERR_UNSUPPORTEDALPHAOPERATION, L"The device does not support this alpha operation.")
    ZQ_RESULT(D3DERR_UNSUPPORTEDALPHAARG, L"The device does not support this alpha argument.")
    ZQ_RESULT(D3DERR_TOOMANYOPERATIONS, L"The device cannot do this many texture operations.")
    ZQ_RESULT(D3DERR_CONFLICTINGTEXTUREFILTER, L"The texture filters conflict.")
    ZQ_RESULT(D3DERR_UNSUPPORTEDFACTORVALUE, L"The device does not support this factor value.")
    ZQ_RESULT(D3DERR_CONFLICTINGRENDERSTATE, L"The render states conflict.")
    ZQ_RESULT(D3DERR_UNSUPPORTEDTEXTUREFILTER, L"The device does not support this texture filter.")
    ZQ_RESULT(D3DERR_CONFLICTINGTEXTUREPALETTE, L"The texture palettes conflict.")
    ZQ_RESULT(D3DERR_DRIVERINTERNALERROR, L"The display driver failed inside.")
    ZQ_RESULT(D3DERR_NOTFOUND, L"The item was not found.")
    ZQ_RESULT(D3DERR_MOREDATA, L"There is more data than the room given for it.")
    ZQ_RESULT(D3DERR_DEVICELOST, L"The device is lost and cannot be reset yet.")
    ZQ_RESULT(D3DERR_DEVICENOTRESET, L"The device is lost and can be reset now.")
    ZQ_RESULT(D3DERR_NOTAVAILABLE, L"The device does not offer this.")
    ZQ_RESULT(D3DERR_OUTOFVIDEOMEMORY, L"There is not enough display memory.")
    ZQ_RESULT(D3DERR_INVALIDDEVICE, L"The device type is not valid.")
    ZQ_RESULT(D3DERR_INVALIDCALL, L"The call is not valid (a bad argument or a bad time).")
    ZQ_RESULT(D3DERR_DRIVERINVALIDCALL, L"The display driver refused the call.")
    ZQ_RESULT(D3DERR_WASSTILLDRAWING, L"The device is still drawing with the resource.")
    ZQ_RESULT(D3DXERR_CANNOTMODIFYINDEXBUFFER, L"The index buffer cannot be changed.")
    ZQ_RESULT(D3DXERR_INVALIDMESH, L"The mesh is not valid.")
    ZQ_RESULT(D3DXERR_CANNOTATTRSORT, L"The mesh cannot be sorted by attribute.")
    ZQ_RESULT(D3DXERR_SKINNINGNOTSUPPORTED, L"Skinning is not supported.")
    ZQ_RESULT(D3DXERR_TOOMANYINFLUENCES, L"Too many bones influence one vertex.")
    ZQ_RESULT(D3DXERR_INVALIDDATA, L"The data is not valid (a file D3DX cannot read).")
    ZQ_RESULT(D3DXERR_LOADEDMESHASNODATA, L"The mesh has no data.")
    ZQ_RESULT(D3DXERR_DUPLICATENAMEDFRAGMENT, L"A fragment of that name exists already.")
    ZQ_RESULT(DSERR_ALLOCATED, L"The sound device is in use by another program.")
    ZQ_RESULT(DSERR_BADFORMAT, L"The sound format is not supported.")
    ZQ_RESULT(DSERR_BUFFERLOST, L"The sound buffer's memory was lost.")
    ZQ_RESULT(DSERR_NODRIVER, L"There is no sound device.")
    ZQ_RESULT(DSERR_PRIOLEVELNEEDED, L"The sound device needs a higher cooperative level.")
    ZQ_RESULT(ZQ_E_NO_DIRECT3D, L"Could not initialize Direct3D.")
    ZQ_RESULT(ZQ_E_NO_COMPATIBLE_DEVICES, L"Could not find any compatible Direct3D devices.")
    ZQ_RESULT(ZQ_E_MEDIA_NOT_FOUND, L"Could not find required media.")
    ZQ_RESULT(ZQ_E_NONZERO_REFCOUNT, L"The D3D device has a non-zero reference count.")
    ZQ_RESULT(ZQ_E_CREATING_DEVICE, L"Failed creating the Direct3D device.")
    ZQ_RESULT(ZQ_E_RESETTING_DEVICE, L"Failed resetting the Direct3D device.")
    ZQ_RESULT(ZQ_E_CREATING_DEVICE_OBJECTS, L"Failed creating Direct3D device objects.")
    ZQ_RESULT(ZQ_E_RESETTING_DEVICE_OBJECTS, L"Failed resetting Direct3D device objects.")
    ZQ_RESULT(ZQ_E_INCORRECT_VERSION, L"Incorrect version of Direct3D and/or D3DX.")
};
// clang-format on
#undef ZQ_RESULT
#undef ZQ_WIDE

const ResultEntry* FindResult(HRESULT code) {
    for (const ResultEntry& entry : kResults)
        if (entry.code == code)
            return &entry;
    return nullptr;
}

} // namespace

const wchar_t* ZQResultName(HRESULT code) {
    const ResultEntry* entry = FindResult(code);
    if (entry)
        return entry->name;
    return SUCCEEDED(code) ? L"Unknown success code" : L"Unknown error code";
}

const wchar_t* ZQResultDescription(HRESULT code) {
    const ResultEntry* entry = FindResult(code);
    return entry ? entry->description : L"The code names no result the library knows.";
}

const wchar_t* ZQD3DFormatName(D3DFORMAT format) {
    const formats::D3DFormatInfo* entry = formats::FindD3DFormat(format);
    return entry ? entry->name : L"Unknown format";
}

UINT ZQD3DFormatBits(D3DFORMAT format) {
    const formats::D3DFormatInfo* entry = formats::FindD3DFormat(format);
    return entry ? entry->bits : 0;
}

UINT ZQD3DFormatAlphaBits(D3DFORMAT format) {
    const formats::D3DFormatInfo* entry = formats::FindD3DFormat(format);
    return entry ? entry->alphaBits : 0;
}

} // namespace ZQ
