#pragma once
// The start-up calls the universal C runtime through its import library's thunks, and defines atexit
// itself, which Wine's headers would declare imported.
#define _ACRTIMP
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#include <corecrt_startup.h>
#include <stdlib.h>

void __cdecl _initterm(_PVFV* first, _PVFV* last);
int __cdecl _initterm_e(_PIFV* first, _PIFV* last);

int zq_crt_initialize(void);
void zq_crt_finalize(void);
void __cdecl __security_init_cookie(void);
