#include "ZQ/sound/WMAStream.h"

#include <cstring>

namespace ZQ {

WMAStream::WMAStream() : m_references(1), m_file(INVALID_HANDLE_VALUE) {}

WMAStream::~WMAStream() {
    if (m_file != INVALID_HANDLE_VALUE)
        CloseHandle(m_file);
}

HRESULT WMAStream::Open(const wchar_t* path) {
    if (m_file != INVALID_HANDLE_VALUE)
        CloseHandle(m_file);
    m_file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (m_file == INVALID_HANDLE_VALUE)
        return HRESULT_FROM_WIN32(GetLastError());
    if (GetFileType(m_file) != FILE_TYPE_DISK) {
        CloseHandle(m_file);
        m_file = INVALID_HANDLE_VALUE;
        return E_FAIL;
    }
    return S_OK;
}

HRESULT WMAStream::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(ISequentialStream) || iid == __uuidof(IStream)) {
        *object = static_cast<IStream*>(this);
        AddRef();
        return S_OK;
    }
    *object = nullptr;
    return E_NOTIMPL;
}

ULONG WMAStream::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&m_references)); }

ULONG WMAStream::Release() {
    LONG left = InterlockedDecrement(&m_references);
    if (left == 0)
        delete this;
    return static_cast<ULONG>(left);
}

HRESULT WMAStream::Read(void* dest, ULONG count, ULONG* got) {
    if (m_file == INVALID_HANDLE_VALUE)
        return E_UNEXPECTED;
    DWORD read = 0;
    BOOL ok = ReadFile(m_file, dest, count, &read, nullptr);
    if (got)
        *got = read;
    return ok ? S_OK : HRESULT_FROM_WIN32(GetLastError());
}

HRESULT WMAStream::Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) {
    if (m_file == INVALID_HANDLE_VALUE)
        return E_UNEXPECTED;
    static const DWORD methods[] = {FILE_BEGIN, FILE_CURRENT, FILE_END};
    if (origin > 2)
        return E_INVALIDARG;
    DWORD low = SetFilePointer(m_file, static_cast<LONG>(move.LowPart), nullptr, methods[origin]);
    if (low == INVALID_SET_FILE_POINTER && GetLastError() != NO_ERROR)
        return HRESULT_FROM_WIN32(GetLastError());
    if (position)
        position->QuadPart = low;
    return S_OK;
}

HRESULT WMAStream::Stat(STATSTG* stat, DWORD flags) {
    if (flags != STATFLAG_NONAME || !stat)
        return E_INVALIDARG;
    if (m_file == INVALID_HANDLE_VALUE)
        return E_UNEXPECTED;
    // A size the platform could not tell would read as 4 GB: a failure is told apart from a size whose
    // low part happens to be all ones by the last error.
    DWORD high = 0;
    SetLastError(NO_ERROR);
    const DWORD low = GetFileSize(m_file, &high);
    if (low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR)
        return HRESULT_FROM_WIN32(GetLastError());
    memset(stat, 0, sizeof *stat);
    stat->cbSize.QuadPart = static_cast<ULONGLONG>(high) << 32 | low;
    stat->type = STGTY_STREAM;
    return S_OK;
}

HRESULT WMAStream::Write(const void*, ULONG, ULONG*) { return E_NOTIMPL; }
HRESULT WMAStream::SetSize(ULARGE_INTEGER) { return E_NOTIMPL; }
HRESULT WMAStream::CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) { return E_NOTIMPL; }
HRESULT WMAStream::Commit(DWORD) { return E_NOTIMPL; }
HRESULT WMAStream::Revert() { return E_NOTIMPL; }
HRESULT WMAStream::LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) { return E_NOTIMPL; }
HRESULT WMAStream::UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) { return E_NOTIMPL; }
HRESULT WMAStream::Clone(IStream**) { return E_NOTIMPL; }

} // namespace ZQ
