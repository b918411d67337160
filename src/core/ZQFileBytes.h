// Reading a whole file into memory, for the loaders of the library's file formats.
#pragma once
#include "ZQ/core/ZQPlatform.h"

#include <cstdint>
#include <vector>

namespace ZQ {

/// Reads the whole file; false when it cannot be opened or read, or is larger than 1 GiB.
bool ZQReadFileBytes(const wchar_t* path, std::vector<uint8_t>& bytes);
/// As ZQReadFileBytes, for a file named as the loaders take it: found by the media search first.
bool ZQReadMediaFileBytes(const wchar_t* file, std::vector<uint8_t>& bytes);
/// As above; a file that cannot be read is reported to the message channel as loader's.
bool ZQReadMediaFileBytes(const wchar_t* file, std::vector<uint8_t>& bytes, const wchar_t* loader);
/// Sends "<loader>: <file>: not found" or "...: cannot be read" for a file (at path) that was not read.
void ZQReportUnreadFile(const wchar_t* loader, const wchar_t* file, const wchar_t* path);

/// Reads at most limit bytes from the start of the file; false when it cannot be opened.
bool ZQReadFileHead(const wchar_t* path, std::vector<uint8_t>& bytes, size_t limit);
/// As above; on success the file stays open and its handle goes to *open, for the caller to close.
bool ZQReadFileBytes(const wchar_t* path, std::vector<uint8_t>& bytes, HANDLE* open);

} // namespace ZQ
