// What a module built with the MSVC ABI expects of its C runtime's static part: the initializer
// tables, a per-module atexit list, thread-safe local statics and the floating-point marker. The
// dynamic part is the universal C runtime (ucrtbase.dll).
#include "crt_internal.h"

#include <limits.h>

int _fltused = 0x9875;

#pragma section(".CRT$XIA", long, read)
#pragma section(".CRT$XIZ", long, read)
#pragma section(".CRT$XCA", long, read)
#pragma section(".CRT$XCZ", long, read)
__declspec(allocate(".CRT$XIA")) _PIFV __xi_a[] = {0};
__declspec(allocate(".CRT$XIZ")) _PIFV __xi_z[] = {0};
__declspec(allocate(".CRT$XCA")) _PVFV __xc_a[] = {0};
__declspec(allocate(".CRT$XCZ")) _PVFV __xc_z[] = {0};

// Static destructors of this module run when it ends: at unload for a DLL, at exit for a program.
static _onexit_table_t module_exit_table;

int __cdecl atexit(_PVFV function) {
    return _register_onexit_function(&module_exit_table, (_onexit_t)function);
}
// Code compiled with Wine's headers calls atexit through an import pointer.
int(__cdecl* __imp_atexit)(_PVFV) = atexit;

int zq_crt_initialize(void) {
    _initialize_onexit_table(&module_exit_table);
    if (_initterm_e(__xi_a, __xi_z) != 0)
        return 0;
    _initterm(__xc_a, __xc_z);
    return 1;
}

void zq_crt_finalize(void) {
    _execute_onexit_table(&module_exit_table);
}

// Implicit thread-local storage: the loader allocates this module's block for every thread.
#pragma section(".tls", long, read, write)
#pragma section(".tls$ZZZ", long, read, write)
#pragma section(".CRT$XLA", long, read)
#pragma section(".CRT$XLZ", long, read)
ULONG _tls_index = 0;
__declspec(allocate(".tls")) char _tls_start = 0;
__declspec(allocate(".tls$ZZZ")) char _tls_end = 0;
__declspec(allocate(".CRT$XLA")) PIMAGE_TLS_CALLBACK __xl_a = 0;
__declspec(allocate(".CRT$XLZ")) PIMAGE_TLS_CALLBACK __xl_z = 0;
const IMAGE_TLS_DIRECTORY64 _tls_used = {
    (ULONGLONG)&_tls_start, (ULONGLONG)&_tls_end, (ULONGLONG)&_tls_index, (ULONGLONG)(&__xl_a + 1), 0, 0};

// Thread-safe local statics as the compiler emits them: a guard is 0 (not started), -1 (running) or
// the epoch at which it completed; a thread whose own epoch has seen that value skips the lock.
#define UNINITIALIZED 0
#define BEING_INITIALIZED (-1)
#define EPOCH_START INT_MIN

int _Init_global_epoch = EPOCH_START;
__declspec(thread) int _Init_thread_epoch = EPOCH_START;
static SRWLOCK init_lock = SRWLOCK_INIT;
static CONDITION_VARIABLE init_done = CONDITION_VARIABLE_INIT;

void __cdecl _Init_thread_header(int* guard) {
    AcquireSRWLockExclusive(&init_lock);
    while (*guard == BEING_INITIALIZED)
        SleepConditionVariableSRW(&init_done, &init_lock, INFINITE, 0);
    if (*guard == UNINITIALIZED)
        *guard = BEING_INITIALIZED;
    else
        _Init_thread_epoch = _Init_global_epoch;
    ReleaseSRWLockExclusive(&init_lock);
}

void __cdecl _Init_thread_footer(int* guard) {
    AcquireSRWLockExclusive(&init_lock);
    *guard = ++_Init_global_epoch;
    _Init_thread_epoch = _Init_global_epoch;
    ReleaseSRWLockExclusive(&init_lock);
    WakeAllConditionVariable(&init_done);
}

void __cdecl _Init_thread_abort(int* guard) {
    AcquireSRWLockExclusive(&init_lock);
    *guard = UNINITIALIZED;
    ReleaseSRWLockExclusive(&init_lock);
    WakeAllConditionVariable(&init_done);
}
