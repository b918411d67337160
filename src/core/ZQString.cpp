#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQString.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>

namespace ZQ {

namespace {

const unsigned int kDefaultCapacity = 256;
// One bounded growth for every string instead of a private 8 KB heap per string: a single
// allocation is cheaper, and the ceiling still covers the longest formatted text.
const unsigned int kMaxCapacity = 2048;
const int kFormatBuffer = 2048;
const int kFormatCount = 2047;
// Wide text and narrow text share one block: three bytes a place. Every map entry holds a string of
// 256 places, so each byte here is paid once per name, and on fresh pages a page fault per 4 KB.
const size_t kBytesPerPlace = 3;

// Converts count wide characters into at most capacity - 1 bytes so that a zero always follows;
// text whose ANSI form is longer is cut at a whole character.
void NarrowInto(const wchar_t* wide, int count, char* narrow, unsigned int capacity) {
    const int room = static_cast<int>(capacity) - 1;
    while (count > 0 && room > 0) {
        const int written = WideCharToMultiByte(CP_ACP, 0, wide, count, narrow, room, nullptr, nullptr);
        if (written > 0)
            return;
        std::memset(narrow, 0, capacity);
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER)
            return;
        const int needed = WideCharToMultiByte(CP_ACP, 0, wide, count, nullptr, 0, nullptr, nullptr);
        if (needed <= room)
            return;
        const long long scaled = static_cast<long long>(count) * room / needed;
        count = scaled < count ? static_cast<int>(scaled) : count - 1;
    }
}

} // namespace

ZQString::ZQString() {
    Resize(kDefaultCapacity);
}

ZQString::ZQString(const char* format, ...) {
    char text[kFormatBuffer] = {};
    if (format) {
        va_list args;
        va_start(args, format);
        _vsnprintf_s(text, kFormatBuffer, kFormatCount, format, args);
        va_end(args);
    }
    const unsigned int bytes = static_cast<unsigned int>(std::strlen(text));
    if (!Resize(bytes >= kDefaultCapacity ? Square(bytes) : kDefaultCapacity))
        return;
    std::memcpy(m_narrow, text, bytes);
    MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, text, static_cast<int>(bytes), m_wide, static_cast<int>(m_capacity));
    m_length = static_cast<unsigned int>(std::wcslen(m_wide));
}

ZQString::ZQString(const wchar_t* format, ...) {
    wchar_t text[kFormatBuffer] = {};
    if (format) {
        va_list args;
        va_start(args, format);
        _vsnwprintf_s(text, kFormatBuffer, kFormatCount, format, args);
        va_end(args);
    }
    const unsigned int count = static_cast<unsigned int>(std::wcslen(text));
    if (!Resize(count >= kDefaultCapacity ? Square(count) : kDefaultCapacity))
        return;
    std::wmemcpy(m_wide, text, count);
    m_length = count;
    NarrowInto(m_wide, static_cast<int>(count), m_narrow, m_capacity);
}

ZQString::ZQString(const ZQString& other) {
    if (!Resize(other.m_capacity ? other.m_capacity : kDefaultCapacity) || !other.m_wide)
        return;
    // The whole block: in a double-byte code page the narrow copy is longer than length.
    std::memcpy(m_wide, other.m_wide, m_capacity * kBytesPerPlace);
    m_length = other.m_length;
}

ZQString::~ZQString() {
    std::free(m_wide);
}

bool ZQString::Resize(unsigned int newCapacity) {
    if (newCapacity == 0 || newCapacity > kMaxCapacity)
        return false;
    void* block = std::calloc(newCapacity, kBytesPerPlace);
    if (!block)
        return false;
    wchar_t* wide = static_cast<wchar_t*>(block);
    char* narrow = reinterpret_cast<char*>(wide + newCapacity);
    if (m_length > 0) {
        std::wmemcpy(wide, m_wide, m_length);
        NarrowInto(wide, static_cast<int>(m_length), narrow, newCapacity);
    }
    std::free(m_wide);
    m_wide = wide;
    m_narrow = narrow;
    m_capacity = newCapacity;
    return true;
}

bool ZQString::Reserve(unsigned int needed) {
    return m_capacity > needed || Resize(Square(needed));
}

bool ZQString::Overlaps(const void* text) const {
    const char* begin = reinterpret_cast<const char*>(m_wide);
    const char* at = reinterpret_cast<const char*>(text);
    return m_wide && at >= begin && at < begin + m_capacity * kBytesPerPlace;
}

void ZQString::ClearBuffers() {
    std::wmemset(m_wide, 0, m_capacity);
    std::memset(m_narrow, 0, m_capacity);
}

void ZQString::RebuildNarrow() {
    std::memset(m_narrow, 0, m_capacity);
    NarrowInto(m_wide, static_cast<int>(m_length), m_narrow, m_capacity);
}

// Text that lives in this string's own block would be cleared or moved under the operation:
// the operation runs again on a copy of the string at the same offset.
template <typename Char> const Char* ZQString::Rebased(const Char* text, const ZQString& copy) const {
    const size_t offset = reinterpret_cast<const char*>(text) - reinterpret_cast<const char*>(m_wide);
    return reinterpret_cast<const Char*>(reinterpret_cast<const char*>(copy.m_wide) + offset);
}

ZQString& ZQString::operator=(const char* text) {
    if (!text)
        return *this;
    if (Overlaps(text)) {
        const ZQString copy(*this);
        return *this = Rebased(text, copy);
    }
    const unsigned int bytes = static_cast<unsigned int>(strnlen(text, kMaxCapacity));
    if (!Reserve(bytes))
        return *this;
    ClearBuffers();
    std::memcpy(m_narrow, text, bytes);
    MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, text, static_cast<int>(bytes), m_wide, static_cast<int>(m_capacity));
    m_length = bytes;
    return *this;
}

ZQString& ZQString::operator=(const wchar_t* text) {
    if (!text)
        return *this;
    if (Overlaps(text)) {
        const ZQString copy(*this);
        return *this = Rebased(text, copy);
    }
    const unsigned int count = static_cast<unsigned int>(wcsnlen(text, kMaxCapacity));
    if (!Reserve(count))
        return *this;
    ClearBuffers();
    std::wmemcpy(m_wide, text, count);
    m_length = count;
    NarrowInto(m_wide, static_cast<int>(count), m_narrow, m_capacity);
    return *this;
}

ZQString& ZQString::operator=(const ZQString& other) {
    if (this == &other || other.m_length == 0)
        return *this;
    if (m_capacity <= other.m_length && !Resize(other.m_capacity))
        return *this;
    ClearBuffers();
    std::wmemcpy(m_wide, other.m_wide, other.m_length);
    // The whole narrow copy, which a double-byte code page makes longer than length.
    std::memcpy(m_narrow, other.m_narrow, strnlen(other.m_narrow, m_capacity - 1));
    m_length = other.m_length;
    return *this;
}

ZQString& ZQString::operator+=(const wchar_t* text) {
    return insert(m_length, text);
}

ZQString& ZQString::operator+=(const ZQString& other) {
    if (other.m_length == 0)
        return *this;
    return insert(m_length, other.m_wide);
}

ZQString& ZQString::insert(unsigned int pos, const wchar_t* text) {
    if (!text || pos > m_length)
        return *this;
    if (Overlaps(text)) {
        const ZQString copy(*this);
        return insert(pos, Rebased(text, copy));
    }
    const unsigned int count = static_cast<unsigned int>(wcsnlen(text, kMaxCapacity));
    if (!Reserve(m_length + count))
        return *this;
    std::wmemmove(m_wide + pos + count, m_wide + pos, m_length - pos);
    std::wmemcpy(m_wide + pos, text, count);
    m_length += count;
    RebuildNarrow();
    return *this;
}

ZQString& ZQString::backspace() {
    if (m_length > 0)
        m_wide[--m_length] = 0;
    return *this;
}

bool ZQString::Compare(const wchar_t* text) const {
    if (!text)
        return m_length == 0;
    if (!m_wide)
        return false;
    return std::wcslen(text) == m_length && std::wcsncmp(m_wide, text, m_length) == 0;
}

bool ZQString::Compare(const ZQString& other) const {
    if (other.m_length == 0)
        return m_length == 0;
    if (!m_wide)
        return false;
    return other.m_length == m_length && std::wcsncmp(m_wide, other.m_wide, m_length) == 0;
}

bool ZQString::operator==(const ZQString& other) const {
    return m_wide && Compare(other);
}

bool ZQString::operator!=(const ZQString& other) const {
    return !(*this == other);
}

bool ZQString::operator==(const wchar_t* text) const {
    return m_wide && Compare(text);
}

bool ZQString::operator!=(const wchar_t* text) const {
    return !(*this == text);
}

ZQString& ZQString::lower() {
    if (m_length > 0) {
        _wcslwr(m_wide);
        _strlwr(m_narrow);
    }
    return *this;
}

ZQString& ZQString::upper() {
    if (m_length > 0) {
        _wcsupr(m_wide);
        _strupr(m_narrow);
    }
    return *this;
}

ZQString& ZQString::clear() {
    if (m_length > 0) {
        ClearBuffers();
        m_length = 0;
    }
    return *this;
}

ZQString& ZQString::password() {
    if (m_length > 0) {
        std::wmemset(m_wide, L'*', m_length);
        std::memset(m_narrow, '*', m_length < m_capacity ? m_length : m_capacity - 1);
    }
    return *this;
}

unsigned int ZQString::key() const {
    if (!m_wide)
        return 0;
    const unsigned int places = Square(m_length) < m_capacity ? Square(m_length) : m_capacity;
    unsigned int sum = 0;
    for (unsigned int i = 0; i < places; ++i)
        sum += static_cast<unsigned short>(m_wide[i]);
    return sum;
}

} // namespace ZQ
