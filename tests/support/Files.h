// Files the tests write and read back, and where they are.
#pragma once
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

namespace testsupport {

using Bytes = std::vector<unsigned char>;

/// A name in the system's temporary folder.
inline std::wstring TempPath(const std::wstring& name) {
    wchar_t folder[MAX_PATH] = L"";
    GetTempPathW(MAX_PATH, folder);
    return folder + name;
}

/// A file in the folder an environment variable names (a Unix path is taken as drive Z:), as a Windows path.
inline std::wstring EnvFile(const wchar_t* variable, const std::wstring& name) {
    wchar_t folder[MAX_PATH] = L"";
    GetEnvironmentVariableW(variable, folder, MAX_PATH);
    std::wstring path = (folder[0] == L'/' ? L"Z:" : L"") + std::wstring(folder) + L"\\" + name;
    for (wchar_t& c : path)
        c = c == L'/' ? L'\\' : c;
    return path;
}

inline Bytes ReadAll(const std::wstring& path) {
    Bytes bytes;
    if (FILE* in = _wfopen(path.c_str(), L"rb")) {
        unsigned char buffer[65536];
        for (size_t read; (read = fread(buffer, 1, sizeof buffer, in)) > 0;)
            bytes.insert(bytes.end(), buffer, buffer + read);
        fclose(in);
    }
    return bytes;
}

inline bool WriteAll(const std::wstring& path, const Bytes& bytes) {
    FILE* out = _wfopen(path.c_str(), L"wb");
    if (!out)
        return false;
    const bool whole = fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
    return fclose(out) == 0 && whole;
}

} // namespace testsupport
