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
// Wave formats and mmio for the sound classes; it still needs the near and far macros removed below.
#include <mmsystem.h>
#include <d3d9.h>
// The library is built against D3DX 9 version 41 (d3dx9_41.dll).
#ifndef D3DX_SDK_VERSION
#define D3DX_SDK_VERSION 41
#endif
#include <d3dx9.h>

// These platform macros would rename the library's own members (app.CreateWindow, font.DrawText)
// and parameters; the library calls the wide functions by their full names.
#undef CreateWindow
#undef DrawText
#undef near
#undef far
