#include "src/core/ZQFileBytes.h"

#include <new>

namespace ZQ {

namespace {
const LONGLONG kMaxFileBytes = 1LL << 30;
} // namespace

bool ZQReadFileBytes(const wchar_t* path, std::vector<uint8_t>& bytes) {
    return ZQReadFileBytes(path, bytes, nullptr);
}

bool ZQReadFileBytes(const wchar_t* path, std::vector<uint8_t>& bytes, HANDLE* open) {
    HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                              nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    LARGE_INTEGER size;
    bool ok = GetFileSizeEx(file, &size) && size.QuadPart <= kMaxFileBytes;
    if (ok) {
        try {
            bytes.resize(static_cast<size_t>(size.QuadPart));
        } catch (const std::bad_alloc&) {
            ok = false;
        }
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

} // namespace ZQ
