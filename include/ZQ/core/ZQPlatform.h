#pragma once
// The one way into the Windows and Direct3D headers for the library and its hosts.
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef UNICODE
#define UNICODE
#endif
#ifndef _UNICODE
#define _UNICODE
#endif
#include <windows.h>
#include <d3d9.h>

// These platform macros would rename the library's own members (app.CreateWindow, font.DrawText)
// and parameters; the library calls the wide functions by their full names.
#undef CreateWindow
#undef DrawText
#undef near
#undef far
