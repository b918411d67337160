// Entry point of a program, compiled once per kind of main (ZQ_ENTRY names which): arguments from the
// universal C runtime, this module's initializers, and exit() so that every atexit list runs.
#include "crt_internal.h"

static void __cdecl finalize_module(void) { zq_crt_finalize(); }

static void start(int console, int wide) {
    __security_init_cookie();
    _set_app_type(console ? _crt_console_app : _crt_gui_app);
    if (wide) {
        _configure_wide_argv(_crt_argv_unexpanded_arguments);
        _initialize_wide_environment();
    } else {
        _configure_narrow_argv(_crt_argv_unexpanded_arguments);
        _initialize_narrow_environment();
    }
    if (!zq_crt_initialize())
        exit(255);
    _crt_atexit(finalize_module);
}

#if ZQ_ENTRY >= 3
// How a WinMain is asked to show its window: as the starting process said, else the default.
static int show_command(void) {
    STARTUPINFOW info;
    GetStartupInfoW(&info);
    return (info.dwFlags & STARTF_USESHOWWINDOW) ? info.wShowWindow : SW_SHOWDEFAULT;
}
#endif

#if ZQ_ENTRY == 1
int main(int argc, char** argv, char** envp);
int mainCRTStartup(void) {
    start(1, 0);
    exit(main(*__p___argc(), *__p___argv(), _get_initial_narrow_environment()));
}
#elif ZQ_ENTRY == 2
int wmain(int argc, wchar_t** argv, wchar_t** envp);
int wmainCRTStartup(void) {
    start(1, 1);
    exit(wmain(*__p___argc(), *__p___wargv(), _get_initial_wide_environment()));
}
#elif ZQ_ENTRY == 3
int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int show);
int WinMainCRTStartup(void) {
    start(0, 0);
    exit(WinMain(GetModuleHandleW(NULL), NULL, _get_narrow_winmain_command_line(), show_command()));
}
#elif ZQ_ENTRY == 4
int WINAPI wWinMain(HINSTANCE instance, HINSTANCE previous, LPWSTR commandLine, int show);
int wWinMainCRTStartup(void) {
    start(0, 1);
    exit(wWinMain(GetModuleHandleW(NULL), NULL, _get_wide_winmain_command_line(), show_command()));
}
#endif
