// Little-endian reads and writes of the file formats' fields, from buffers the caller has sized.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace ZQ {
namespace formats {
namespace le {

inline uint16_t U16(const uint8_t* p) {
    return static_cast<uint16_t>(p[0] | p[1] << 8);
}
inline uint32_t U32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16 |
           static_cast<uint32_t>(p[3]) << 24;
}
inline int32_t I32(const uint8_t* p) {
    return static_cast<int32_t>(U32(p));
}
inline float F32(const uint8_t* p) {
    const uint32_t bits = U32(p);
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}
inline void PutU16(uint8_t* p, uint16_t v) {
    p[0] = static_cast<uint8_t>(v);
    p[1] = static_cast<uint8_t>(v >> 8);
}
inline void PutU32(uint8_t* p, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        p[i] = static_cast<uint8_t>(v >> (8 * i));
}
inline void PutF32(uint8_t* p, float v) {
    uint32_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    PutU32(p, bits);
}

/// Text up to the first zero byte within the field.
inline std::string NarrowText(const uint8_t* p, size_t bytes) {
    const uint8_t* end = std::find(p, p + bytes, 0);
    return std::string(reinterpret_cast<const char*>(p), static_cast<size_t>(end - p));
}
/// UTF-16 text up to the first zero unit within the field.
inline std::u16string WideText(const uint8_t* p, size_t bytes) {
    std::u16string text;
    for (size_t i = 0; i + 1 < bytes; i += 2) {
        const char16_t unit = U16(p + i);
        if (unit == 0)
            break;
        text.push_back(unit);
    }
    return text;
}
/// Writes at most bytes - 1 bytes, so that the field stays zero-terminated.
inline void PutNarrowText(uint8_t* p, size_t bytes, const std::string& text) {
    std::memcpy(p, text.data(), std::min(text.size(), bytes - 1));
}
inline void PutWideText(uint8_t* p, size_t bytes, const std::u16string& text) {
    const size_t units = std::min(text.size(), bytes / 2 - 1);
    for (size_t i = 0; i < units; ++i)
        PutU16(p + 2 * i, text[i]);
}

/// How many whole records of recordSize the bytes from offset on hold, at most declared.
inline size_t RecordsPresent(int64_t declared, size_t size, size_t offset, size_t recordSize) {
    if (declared <= 0 || size <= offset)
        return 0;
    return static_cast<size_t>(std::min<int64_t>(declared, static_cast<int64_t>((size - offset) / recordSize)));
}

} // namespace le
} // namespace formats
} // namespace ZQ
