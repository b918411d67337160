#pragma once
// Export macro of the library. Only the DLL's own build defines ZQ_BUILDING_DLL.
#if defined(ZQ_BUILDING_DLL)
#define ZQ_API __declspec(dllexport)
#else
#define ZQ_API __declspec(dllimport)
#endif
