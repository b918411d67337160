#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// Finds a media file (or directory) by trying, in order, the name itself, "..\", "..\..\" (twice),
/// the program's directory and the directories around it, all again with "media\" in front, and then
/// every parent of the working and program directories. Returns 0 with the path in dest; E_INVALIDARG
/// for a null or empty name, a null dest or a capacity below 10; 0x80040903 when nothing was found,
/// with dest holding a copy of name (so that a caller that ignores the result opens the bare name).
ZQ_API HRESULT ZQFindDXSDKMediaFileCch(wchar_t* dest, int destCapacity, const wchar_t* name);

/// True when the text at cursor starts with option (in any case) followed by the end or ':';
/// cursor then moves past the option name.
ZQ_API bool ZQIsNextArg(wchar_t*& cursor, const wchar_t* option);

/// After an option name: false (and value emptied) unless cursor is at ':'; otherwise copies the text
/// after the ':' into value (at most 256 characters, cut at the first space or control character),
/// moves cursor past it and returns true. value must hold 257 characters.
ZQ_API bool ZQCmdParam(wchar_t*& cursor, wchar_t* value);

} // namespace ZQ
