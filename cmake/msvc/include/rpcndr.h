// Wine's rpcndr.h written for a compiler in Microsoft mode, as the Windows SDK's is: one selectany
// definition for each EXTERN_GUID (Wine's two read as two definitions), and interfaces that carry
// their uuid, which __uuidof needs.
#ifndef EXTERN_GUID
#ifdef __cplusplus
#define EXTERN_GUID(name, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8) \
    extern "C" const GUID DECLSPEC_SELECTANY name = {l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}}
#endif
#endif
#include_next <rpcndr.h>

#undef DECLSPEC_UUID
#undef MIDL_INTERFACE
#define DECLSPEC_UUID(x) __declspec(uuid(x))
#define MIDL_INTERFACE(x) struct __declspec(uuid(x)) __declspec(novtable)
