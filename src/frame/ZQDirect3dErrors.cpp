// The error report: exit code and message box for each framework error.
#include "ZQ/frame/ZQDirect3d.h"

#include <cwchar>

namespace ZQ {

void ZQDirect3d::DisplayErrorMessage(HRESULT code) {
    struct Error {
        HRESULT code;
        int exitCode;
        const wchar_t* text;
    };
    static const Error kErrors[] = {
        {ZQ_E_NO_DIRECT3D, 2,
         L"Could not initialize Direct3D. You may want to check that the latest version of DirectX is correctly "
         L"installed on your system.  Also make sure that this program was compiled with header files that match "
         L"the installed DirectX DLLs."},
        {ZQ_E_NO_COMPATIBLE_DEVICES, 3, L"Could not find any compatible Direct3D devices."},
        {ZQ_E_MEDIA_NOT_FOUND, 4, L"Could not find required media. Ensure that the DirectX SDK is correctly installed."},
        {ZQ_E_NONZERO_REFCOUNT, 5,
         L"The D3D device has a non-zero reference count, meaning some objects were not released."},
        {ZQ_E_CREATING_DEVICE, 6, L"Failed creating the Direct3D device."},
        {ZQ_E_RESETTING_DEVICE, 7, L"Failed resetting the Direct3D device."},
        {ZQ_E_CREATING_DEVICE_OBJECTS, 8, L"Failed creating Direct3D device objects."},
        {ZQ_E_RESETTING_DEVICE_OBJECTS, 9, L"Failed resetting Direct3D device objects."},
        {ZQ_E_INCORRECT_VERSION, 10, L"Incorrect version of Direct3D and/or D3DX."},
    };
    const Error* error = nullptr;
    for (const Error& candidate : kErrors)
        if (candidate.code == code)
            error = &candidate;
    if (!error) {
        SetExitCode(1);
        return;
    }
    SetExitCode(error->exitCode);
    if (!GetShowMsgBoxOnError())
        return;
    wchar_t text[512];
    const wchar_t* source = error->text;
    if (code == ZQ_E_NO_COMPATIBLE_DEVICES && GetSystemMetrics(SM_REMOTESESSION))
        source = L"Direct3D does not work over a remote session.";
    wcsncpy(text, source, 511);
    text[511] = 0;
    const wchar_t* title = GetWindowTitle();
    MessageBoxW(GethWnd(), text, title && *title ? title : L"DirectX Application", MB_ICONERROR | MB_OK);
}

} // namespace ZQ
