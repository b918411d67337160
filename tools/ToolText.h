// Text the authoring tools share: names are UTF-8 in manifests and on the terminal, UTF-16 in the
// files; what the library makes of a name; whole numbers from the command line.
#pragma once
#include "ZQListCeiling.h"

#include <string>

/// Malformed sequences are read as far as they go, not rejected.
std::u16string Utf16(const std::string& utf8);
/// Surrogate pairs become one four-byte sequence.
std::string Utf8(const std::u16string& text);

namespace zqtools {

/// The entries the library keeps of a scene's frames or a path's keys: its lists stop growing there.
const long long kLibraryListCeiling = ZQ::formats::kListCeiling;

/// Upper case as the library's name lookups compare (after setlocale(LC_CTYPE, "C.UTF-8")).
std::u16string FoldedName(const std::string& utf8);
/// The name the library registers for a record's stored name (UTF-8).
std::string RegisteredName(const std::string& stored);
/// Empty when the stored name's '%' signs are safe; else what the library makes of them, to warn with.
std::string PercentWarning(const std::string& stored);
/// How a later name that the library registers as an earlier one relates to it, for a warning:
/// "is given twice", "differs only in case from "FIRST"" or "is registered as the same name as "FIRST"".
std::string SameNameHow(const std::string& first, const std::string& later);
/// True when any byte is outside ASCII.
bool IsAscii(const std::string& text);
/// The text upper-cased in ASCII only, as the library's extension tests do.
std::string UpperAscii(std::string text);

/// A whole number in decimal (or hexadecimal after "0x" when hex) from low to high; nothing else.
bool ParseWhole(const std::string& text, long long low, long long high, long long& value, bool hex = false);
/// An option's value as ParseWhole reads it; else "TOOL: OPTION takes ..." on standard error, exit 1.
long long WholeOption(const char* tool, const std::string& option, const std::string& text, long long low,
                      long long high, bool hex = false);
/// The argument after the option at argv[i] (i moves on to it); else "TOOL: OPTION needs a value"
/// on standard error, exit 1.
std::string OptionValue(const char* tool, int argc, char** argv, int& i);

} // namespace zqtools
