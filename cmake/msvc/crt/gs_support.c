// Stack cookies for code compiled with /GS: the cookie, its start-up value made unpredictable before
// any protected function returns, and the check. A mismatch ends the process at once, as the
// platform's own runtime does: no handler runs on a stack known to be overwritten.
#include "crt_internal.h"

#include <intrin.h>

// The value the platform's tools use, so that a cookie never initialised is recognisable.
#define DEFAULT_COOKIE 0x00002B992DDFA232ull

uintptr_t __security_cookie = DEFAULT_COOKIE;
uintptr_t __security_cookie_complement = ~DEFAULT_COOKIE;

void __cdecl __security_init_cookie(void) {
    if (__security_cookie != DEFAULT_COOKIE)
        return;
    FILETIME time;
    LARGE_INTEGER counter;
    GetSystemTimeAsFileTime(&time);
    QueryPerformanceCounter(&counter);
    uintptr_t cookie = ((uintptr_t)time.dwHighDateTime << 32 | time.dwLowDateTime) ^ GetCurrentThreadId() ^
                       ((uintptr_t)GetCurrentProcessId() << 32) ^ ((uintptr_t)counter.QuadPart << 32) ^
                       (uintptr_t)counter.QuadPart ^ (uintptr_t)&cookie;
    // The top 16 bits stay clear, as the platform's cookie keeps them.
    cookie &= 0x0000FFFFFFFFFFFFull;
    if (cookie == DEFAULT_COOKIE)
        ++cookie;
    __security_cookie = cookie;
    __security_cookie_complement = ~cookie;
}

__declspec(noreturn) void __cdecl __report_gsfailure(uintptr_t cookie) {
    (void)cookie;
    __fastfail(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE);
}

void __cdecl __security_check_cookie(uintptr_t cookie) {
    if (cookie != __security_cookie)
        __report_gsfailure(cookie);
}
