#include "src/core/ZQFileBytes.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/frame/ZQMediaSearch.h"
#include "src/core/ZQOutOfMemory.h"

#include <algorithm>

namespace ZQ {

namespace {

const LONGLONG kMaxFileBytes = 1LL << 30;

// Reads the first limit bytes (all of them when limit is 0, up to 1 GiB).
bool ReadBytes(const wchar_t* path, std::vector<uint8_t>& bytes, LONGLONG limit, HANDLE* open) {
    HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                              nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    LARGE_INTEGER size;
    bool ok = GetFileSizeEx(file, &size) && (limit > 0 || size.QuadPart <= kMaxFileBytes);
    if (ok) {
        ok = ZQSurvivesOutOfMemory([&] {
            bytes.resize(static_cast<size_t>(limit > 0 ? std::min(size.QuadPart, limit) : size.QuadPart));
        });
    }
    DWORD read = 0;
    if (ok && !bytes.empty())
        ok = ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) && read == bytes.size();
    if (ok && open)
        *open = file;
    else
        CloseHandle(file);
    return ok;
}

} // namespace

bool ZQReadFileBytes(const wchar_t* path, std::vector<uint8_t>& bytes) {
    return ReadBytes(path, bytes, 0, nullptr);
}

bool ZQReadMediaFileBytes(const wchar_t* file, std::vector<uint8_t>& bytes) {
    wchar_t path[MAX_PATH];
    ZQFindDXSDKMediaFileCch(path, MAX_PATH, file);
    return ReadBytes(path, bytes, 0, nullptr);
}

bool ZQReadMediaFileBytes(const wchar_t* file, std::vector<uint8_t>& bytes, const wchar_t* loader) {
    wchar_t path[MAX_PATH];
    ZQFindDXSDKMediaFileCch(path, MAX_PATH, file);
    if (ReadBytes(path, bytes, 0, nullptr))
        return true;
    ZQReportUnreadFile(loader, file, path);
    return false;
}

void ZQReportUnreadFile(const wchar_t* loader, const wchar_t* file, const wchar_t* path) {
    const bool found = path && GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
    ZQMessage(L"%ls: %ls: %ls", loader, file ? file : L"(null)", found ? L"cannot be read" : L"not found");
}

bool ZQReadFileBytes(const wchar_t* path, std::vector<uint8_t>& bytes, HANDLE* open) {
    return ReadBytes(path, bytes, 0, open);
}

bool ZQReadFileHead(const wchar_t* path, std::vector<uint8_t>& bytes, size_t limit) {
    return limit > 0 && ReadBytes(path, bytes, static_cast<LONGLONG>(limit), nullptr);
}

} // namespace ZQ
