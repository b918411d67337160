#include "ZQ/core/ZQDiagnostics.h"

#include <cstdarg>
#include <cwchar>

namespace ZQ {

namespace {

// Statically initialised: messages may come before any object of the library exists.
SRWLOCK g_lock = SRWLOCK_INIT;
ZQCallbackMessage g_function = nullptr;
void* g_context = nullptr;

} // namespace

void ZQSetMessageFunc(ZQCallbackMessage function, void* context) {
    AcquireSRWLockExclusive(&g_lock);
    g_function = function;
    g_context = context;
    ReleaseSRWLockExclusive(&g_lock);
}

void ZQMessage(const wchar_t* format, ...) {
    if (!format)
        return;
    wchar_t message[1024];
    va_list arguments;
    va_start(arguments, format);
    _vsnwprintf(message, 1023, format, arguments);
    va_end(arguments);
    message[1023] = 0;
    AcquireSRWLockShared(&g_lock);
    const ZQCallbackMessage function = g_function;
    void* const context = g_context;
    ReleaseSRWLockShared(&g_lock);
    // A debugger shows each message on a line of its own.
    wchar_t line[1026];
    _snwprintf(line, 1025, L"%ls\n", message);
    line[1025] = 0;
    OutputDebugStringW(line);
    if (function)
        function(message, context);
}

} // namespace ZQ
