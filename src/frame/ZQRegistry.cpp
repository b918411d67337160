#include "ZQ/frame/ZQRegistry.h"

#include <cstring>
#include <cwchar>
#include <new>

namespace ZQ {

namespace {

wchar_t* Copy(const wchar_t* text) {
    const size_t length = text ? std::wcslen(text) : 0;
    wchar_t* copy = new (std::nothrow) wchar_t[length + 1];
    if (copy) {
        if (text)
            std::wmemcpy(copy, text, length);
        copy[length] = 0;
    }
    return copy;
}

HRESULT Result(LONG error) {
    if (error == ERROR_SUCCESS)
        return S_OK;
    return HRESULT_FROM_WIN32(error);
}

// The key, opened for reading or created for writing; closed on every path.
class OpenKey {
public:
    OpenKey(HKEY hive, const wchar_t* path, bool write) {
        m_error = path ? (write ? RegCreateKeyExW(hive, path, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &m_key, nullptr)
                                : RegOpenKeyExW(hive, path, 0, KEY_QUERY_VALUE, &m_key))
                       : ERROR_OUTOFMEMORY;
    }
    ~OpenKey() {
        if (m_error == ERROR_SUCCESS)
            RegCloseKey(m_key);
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;

    HKEY key() const { return m_key; }
    LONG error() const { return m_error; }

private:
    HKEY m_key = nullptr;
    LONG m_error;
};

} // namespace

ZQRegistry::ZQRegistry(const wchar_t* key, bool machine)
    : m_key(Copy(key)), m_hive(machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER) {}

ZQRegistry::ZQRegistry(const ZQRegistry& other) : m_key(Copy(other.m_key)), m_hive(other.m_hive) {}

ZQRegistry& ZQRegistry::operator=(const ZQRegistry& other) {
    if (this != &other) {
        delete[] m_key;
        m_key = Copy(other.m_key);
        m_hive = other.m_hive;
    }
    return *this;
}

ZQRegistry::~ZQRegistry() {
    delete[] m_key;
}

HRESULT ZQRegistry::Read(const wchar_t* name, DWORD* type, void* data, DWORD* size) {
    if (!name)
        return E_INVALIDARG;
    OpenKey key(m_hive, m_key, false);
    // An absent key is an absent value.
    if (key.error() == ERROR_FILE_NOT_FOUND)
        return S_FALSE;
    if (key.error() != ERROR_SUCCESS)
        return Result(key.error());
    const LONG error = RegQueryValueExW(key.key(), name, nullptr, type, static_cast<BYTE*>(data), size);
    return error == ERROR_FILE_NOT_FOUND ? S_FALSE : Result(error);
}

HRESULT ZQRegistry::Write(const wchar_t* name, DWORD type, const void* data, DWORD size) {
    if (!name)
        return E_INVALIDARG;
    OpenKey key(m_hive, m_key, true);
    if (key.error() != ERROR_SUCCESS)
        return Result(key.error());
    return Result(RegSetValueExW(key.key(), name, 0, type, static_cast<const BYTE*>(data), size));
}

HRESULT ZQRegistry::GetNumber(const wchar_t* name, DWORD* value, DWORD fallback) {
    if (!value)
        return E_INVALIDARG;
    DWORD type = 0, number = 0, size = sizeof number;
    HRESULT hr = Read(name, &type, &number, &size);
    // A value longer than a number is not one.
    if (hr == HRESULT_FROM_WIN32(ERROR_MORE_DATA) || (hr == S_OK && (type != REG_DWORD || size != sizeof number)))
        hr = HRESULT_FROM_WIN32(ERROR_DATATYPE_MISMATCH);
    *value = hr == S_OK ? number : fallback;
    return hr;
}

HRESULT ZQRegistry::SetNumber(const wchar_t* name, DWORD value) {
    return Write(name, REG_DWORD, &value, sizeof value);
}

HRESULT ZQRegistry::GetText(const wchar_t* name, wchar_t* text, DWORD capacity, const wchar_t* fallback) {
    if (!text || capacity == 0)
        return E_INVALIDARG;
    DWORD type = 0, size = 0;
    HRESULT hr = Read(name, &type, nullptr, &size);
    if (hr == S_OK && type != REG_SZ && type != REG_EXPAND_SZ)
        hr = HRESULT_FROM_WIN32(ERROR_DATATYPE_MISMATCH);
    if (hr == S_OK && size > capacity * sizeof(wchar_t))
        hr = HRESULT_FROM_WIN32(ERROR_MORE_DATA);
    if (hr == S_OK) {
        size = capacity * sizeof(wchar_t);
        hr = Read(name, &type, text, &size);
        // A stored text need not end with its terminator.
        const DWORD units = size / sizeof(wchar_t);
        text[units < capacity ? units : capacity - 1] = 0;
    }
    if (hr != S_OK) {
        const wchar_t* from = fallback ? fallback : L"";
        std::wcsncpy(text, from, capacity - 1);
        text[capacity - 1] = 0;
    }
    return hr;
}

HRESULT ZQRegistry::SetText(const wchar_t* name, const wchar_t* text) {
    if (!text)
        return E_INVALIDARG;
    return Write(name, REG_SZ, text, static_cast<DWORD>((std::wcslen(text) + 1) * sizeof(wchar_t)));
}

HRESULT ZQRegistry::GetBytes(const wchar_t* name, void* data, DWORD* size) {
    if (!size || (!data && *size))
        return E_INVALIDARG;
    DWORD type = 0;
    const HRESULT hr = Read(name, &type, data, size);
    if (hr == S_FALSE)
        *size = 0;
    return hr == S_OK && type != REG_BINARY ? HRESULT_FROM_WIN32(ERROR_DATATYPE_MISMATCH) : hr;
}

HRESULT ZQRegistry::SetBytes(const wchar_t* name, const void* data, DWORD size) {
    if (!data && size)
        return E_INVALIDARG;
    return Write(name, REG_BINARY, data, size);
}

HRESULT ZQRegistry::Remove(const wchar_t* name) {
    if (!name)
        return E_INVALIDARG;
    OpenKey key(m_hive, m_key, true);
    if (key.error() != ERROR_SUCCESS)
        return Result(key.error());
    const LONG error = RegDeleteValueW(key.key(), name);
    return error == ERROR_FILE_NOT_FOUND ? S_FALSE : Result(error);
}

} // namespace ZQ
