#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// Receives one message of the library: what it dropped, ignored or could not do, and where
/// ("pics.om File Error", "ZQTexture::Entry: logo.png: not found"). Called on the thread that met
/// the problem, never on the frame path; the text lives only for the call.
typedef void(CALLBACK* ZQCallbackMessage)(const wchar_t* message, void* context);

/// Installs the function that receives the library's messages (null: none) with its context. Every
/// message also goes to OutputDebugStringW, which debuggers and system tools show.
ZQ_API void ZQSetMessageFunc(ZQCallbackMessage function, void* context);
/// Formats a message (printf-style: %ls for wide strings) and sends it as the library's own are sent.
ZQ_API void ZQMessage(const wchar_t* format, ...);

} // namespace ZQ
