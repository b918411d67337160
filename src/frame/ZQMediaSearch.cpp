#include "ZQ/frame/ZQMediaSearch.h"
#include "ZQ/frame/ZQErrors.h"

#include <cwchar>
#include <cstdarg>
#include <cstdio>

namespace ZQ {

namespace {

const int kPathChars = MAX_PATH;
const int kMinCapacity = 10;
const size_t kMaxParamChars = 256;

bool Exists(const wchar_t* path) {
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

// Formats one candidate into dest and tells whether it exists.
bool TryCandidate(wchar_t* dest, int capacity, const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    const int written = _vsnwprintf(dest, static_cast<size_t>(capacity), format, args);
    va_end(args);
    dest[capacity - 1] = 0;
    return written >= 0 && written < capacity && Exists(dest);
}

} // namespace

bool ZQFindMediaSearchTypicalDirs(wchar_t* dest, int capacity, const wchar_t* leaf, const wchar_t* exeDir,
                                  const wchar_t* exeName) {
    // "..\..\" is tried twice in a row on purpose; nothing deeper is tried.
    return TryCandidate(dest, capacity, L"%ls", leaf) || TryCandidate(dest, capacity, L"..\\%ls", leaf) ||
           TryCandidate(dest, capacity, L"..\\..\\%ls", leaf) || TryCandidate(dest, capacity, L"..\\..\\%ls", leaf) ||
           TryCandidate(dest, capacity, L"%ls\\%ls", exeDir, leaf) ||
           TryCandidate(dest, capacity, L"%ls\\..\\%ls", exeDir, leaf) ||
           TryCandidate(dest, capacity, L"%ls\\..\\..\\%ls", exeDir, leaf) ||
           TryCandidate(dest, capacity, L"%ls\\..\\%ls\\%ls", exeDir, exeName, leaf) ||
           TryCandidate(dest, capacity, L"%ls\\..\\..\\%ls\\%ls", exeDir, exeName, leaf);
}

bool ZQFindMediaSearchParentDirs(wchar_t* dest, int capacity, const wchar_t* startDir, const wchar_t* leaf) {
    wchar_t full[kPathChars];
    wchar_t* lastComponent = nullptr;
    DWORD length = GetFullPathNameW(startDir, kPathChars, full, &lastComponent);
    if (length == 0 || length >= kPathChars || !lastComponent)
        return false;
    for (;;) {
        if (*lastComponent == 0)
            return false;
        wchar_t candidate[kPathChars];
        if (TryCandidate(candidate, kPathChars, L"%ls\\%ls", full, leaf)) {
            if (capacity > 0) {
                wcsncpy(dest, candidate, static_cast<size_t>(capacity));
                dest[capacity - 1] = 0;
            }
            return true;
        }
        wchar_t parent[kPathChars];
        if (_snwprintf(parent, kPathChars, L"%ls\\..", full) < 0)
            return false;
        parent[kPathChars - 1] = 0;
        length = GetFullPathNameW(parent, kPathChars, full, &lastComponent);
        if (length == 0 || length >= kPathChars || !lastComponent)
            return false;
    }
}

HRESULT ZQFindDXSDKMediaFileCch(wchar_t* dest, int destCapacity, const wchar_t* name) {
    if (!name || !*name || !dest || destCapacity < kMinCapacity)
        return E_INVALIDARG;

    wchar_t exePath[kPathChars] = {};
    GetModuleFileNameW(nullptr, exePath, kPathChars);
    exePath[kPathChars - 1] = 0;
    wchar_t exeDir[kPathChars] = {};
    wchar_t exeName[kPathChars] = {};
    if (wchar_t* slash = wcsrchr(exePath, L'\\')) {
        wcsncpy(exeName, slash + 1, kPathChars - 1);
        *slash = 0;
        wcsncpy(exeDir, exePath, kPathChars - 1);
        if (wchar_t* dot = wcsrchr(exeName, L'.'))
            *dot = 0;
    }

    if (ZQFindMediaSearchTypicalDirs(dest, destCapacity, name, exeDir, exeName))
        return S_OK;
    wchar_t inMedia[kPathChars];
    _snwprintf(inMedia, kPathChars, L"media\\%ls", name);
    inMedia[kPathChars - 1] = 0;
    if (ZQFindMediaSearchTypicalDirs(dest, destCapacity, inMedia, exeDir, exeName))
        return S_OK;
    if (ZQFindMediaSearchParentDirs(dest, destCapacity, L".", name) ||
        ZQFindMediaSearchParentDirs(dest, destCapacity, exeDir, name) ||
        ZQFindMediaSearchParentDirs(dest, destCapacity, L".", inMedia) ||
        ZQFindMediaSearchParentDirs(dest, destCapacity, exeDir, inMedia))
        return S_OK;

    wcsncpy(dest, name, static_cast<size_t>(destCapacity));
    dest[destCapacity - 1] = 0;
    return ZQ_E_MEDIA_NOT_FOUND;
}

bool ZQIsNextArg(wchar_t*& cursor, const wchar_t* option) {
    const size_t length = wcslen(option);
    if (_wcsnicmp(cursor, option, length) != 0 || (cursor[length] != 0 && cursor[length] != L':'))
        return false;
    cursor += length;
    return true;
}

bool ZQCmdParam(wchar_t*& cursor, wchar_t* value) {
    value[0] = 0;
    if (*cursor != L':')
        return false;
    ++cursor;
    size_t length = 0;
    while (length < kMaxParamChars && cursor[length] >= 33)
        ++length;
    wmemcpy(value, cursor, length);
    value[length] = 0;
    cursor += length;
    return true;
}

} // namespace ZQ
