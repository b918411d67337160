// Entry point of a DLL: the module's initializers before DllMain sees the attach, its static
// destructors after DllMain sees the detach.
#include "crt_internal.h"

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

BOOL WINAPI _DllMainCRTStartup(HINSTANCE instance, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_ATTACH && !zq_crt_initialize())
        return FALSE;
    BOOL result = DllMain(instance, reason, reserved);
    if (reason == DLL_PROCESS_DETACH || (reason == DLL_PROCESS_ATTACH && !result))
        zq_crt_finalize();
    return result;
}
