// Text conversions the authoring tools share: names are UTF-8 in manifests and on the terminal,
// UTF-16 in the files.
#pragma once
#include <string>

/// Malformed sequences are read as far as they go, not rejected.
std::u16string Utf16(const std::string& utf8);
/// Surrogate pairs become one four-byte sequence.
std::string Utf8(const std::u16string& text);
