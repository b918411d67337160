// Entry point of a DLL, as the platform documents the calls: the stack cookie first, then the module's
// initializers before DllMain sees the attach, its static destructors after DllMain sees the detach.
// A failed attach undoes itself (DllMain's detach once, the destructors once); the loader's detach
// that follows, and any call without a successful attach, does nothing. At process exit (reserved not
// null) the static destructors still run, as the platform's own runtime runs them.
#include "crt_internal.h"

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

static int attached;

BOOL WINAPI _DllMainCRTStartup(HINSTANCE instance, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_ATTACH) {
        __security_init_cookie();
        if (!zq_crt_initialize()) {
            zq_crt_finalize();
            return FALSE;
        }
        if (!DllMain(instance, reason, reserved)) {
            DllMain(instance, DLL_PROCESS_DETACH, reserved);
            zq_crt_finalize();
            return FALSE;
        }
        attached = 1;
        return TRUE;
    }
    if (!attached)
        return FALSE;
    const BOOL result = DllMain(instance, reason, reserved);
    if (reason == DLL_PROCESS_DETACH) {
        attached = 0;
        zq_crt_finalize();
    }
    return result;
}
