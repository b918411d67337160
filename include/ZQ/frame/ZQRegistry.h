#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// A kiosk's settings kept across restarts: numbers, texts and bytes under one registry key of the
/// host's choosing, in the current user's hive or the machine's. Reads give the default when a value
/// is absent. Results: S_OK; S_FALSE when the value was absent (the default was given);
/// HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED) when the key may not be read or written;
/// HRESULT_FROM_WIN32(ERROR_DATATYPE_MISMATCH) when the value has another type (the default was
/// given); HRESULT_FROM_WIN32(ERROR_MORE_DATA) when a buffer is too small; E_INVALIDARG for a null
/// name or buffer. Each call opens and closes the key: nothing is held between calls.
class ZQ_API ZQRegistry {
public:
    /// key: a path under the hive ("Software\\Vendor\\Kiosk"); machine: HKEY_LOCAL_MACHINE (which an
    /// ordinary user may read but usually not write) instead of HKEY_CURRENT_USER.
    explicit ZQRegistry(const wchar_t* key, bool machine = false);
    ZQRegistry(const ZQRegistry& other);
    ZQRegistry& operator=(const ZQRegistry& other);
    ~ZQRegistry();

    HRESULT GetNumber(const wchar_t* name, DWORD* value, DWORD fallback);
    HRESULT SetNumber(const wchar_t* name, DWORD value);
    /// Copies at most capacity characters, the terminator included.
    HRESULT GetText(const wchar_t* name, wchar_t* text, DWORD capacity, const wchar_t* fallback);
    HRESULT SetText(const wchar_t* name, const wchar_t* text);
    /// size: the buffer's bytes on entry, the value's on return (0 when absent).
    HRESULT GetBytes(const wchar_t* name, void* data, DWORD* size);
    HRESULT SetBytes(const wchar_t* name, const void* data, DWORD size);
    /// Removes the value; S_FALSE when there was none.
    HRESULT Remove(const wchar_t* name);

private:
    /// Reads the raw value; type receives its registry type.
    HRESULT Read(const wchar_t* name, DWORD* type, void* data, DWORD* size);
    HRESULT Write(const wchar_t* name, DWORD type, const void* data, DWORD size);

    wchar_t* m_key; ///< owned copy of the path
    HKEY m_hive;
};

} // namespace ZQ
