#pragma once
#include "ZQ/core/ZQConfig.h"

namespace ZQ {

/// The library's string: UTF-16 text with an ANSI (CP_ACP) copy kept beside it.
/// Capacity starts at 256 places and grows in steps of four; it never shrinks.
/// Growth stops at 2048 places (what the formatting constructors can produce): an
/// operation that would need more leaves the string as it was.
/// Copying is deep. Nothing here reports failure or throws.
class ZQ_API ZQString {
public:
    /// Empty string with 256 places.
    ZQString();
    /// printf-style; at most 2047 characters survive. Plain text is copied as is, but a '%' in it is interpreted.
    ZQString(const char* format, ...);
    /// printf-style on wide text; at most 2047 characters survive.
    ZQString(const wchar_t* format, ...);
    ZQString(const ZQString& other);
    ~ZQString();

    /// Null is ignored. Length becomes the byte count of the text, even where a double-byte
    /// code page makes fewer wide characters of it.
    ZQString& operator=(const char* text);
    /// Null is ignored.
    ZQString& operator=(const wchar_t* text);
    /// Assigning an empty string leaves this one unchanged; use clear() to empty it.
    ZQString& operator=(const ZQString& other);
    /// Appends; null or an empty source is ignored. The narrow copy is rebuilt from the wide text.
    ZQString& operator+=(const wchar_t* text);
    ZQString& operator+=(const ZQString& other);
    /// Inserts text before place pos; pos == size() appends; a larger pos or null text does nothing.
    ZQString& insert(unsigned int pos, const wchar_t* text);
    /// Drops the last wide character. The narrow copy keeps it until the next rebuild.
    ZQString& backspace();

    /// Case-sensitive, by UTF-16 code units. An empty right side equals only an empty string.
    bool operator==(const ZQString& other) const;
    bool operator!=(const ZQString& other) const;
    /// Null equals only an empty string.
    bool operator==(const wchar_t* text) const;
    bool operator!=(const wchar_t* text) const;

    /// Lower- or upper-cases both copies in place (C runtime rules).
    ZQString& lower();
    ZQString& upper();
    /// Empties the text; capacity is kept.
    ZQString& clear();
    /// Overwrites every character of both copies with '*'.
    ZQString& password();

    bool empty() const { return m_length == 0; }
    /// Number of characters (see operator=(const char*) for the one exception).
    unsigned int size() const { return m_length; }
    /// Number of character places in each buffer.
    unsigned int max() const { return m_capacity; }
    /// Wide character i; no bounds check.
    wchar_t operator[](int i) const { return m_wide[i]; }
    /// The owned wide buffer; valid until the next growth.
    operator wchar_t*() const { return m_wide; }
    /// The owned narrow buffer; valid until the next growth.
    operator char*() const { return m_narrow; }
    /// Hash key: the 32-bit wrap-around sum of the UTF-16 code units ("ab" and "ba" share it).
    unsigned int key() const;

protected:
    bool Compare(const wchar_t* text) const;
    bool Compare(const ZQString& other) const;
    /// Moves the text into buffers of newCapacity places; false (nothing changed) past the ceiling.
    bool Resize(unsigned int newCapacity);

private:
    /// (n | 3) + 1: the smallest multiple of four above n.
    static unsigned int Square(unsigned int n) { return (n | 3) + 1; }
    bool Reserve(unsigned int needed);
    bool Overlaps(const void* text) const;
    template <typename Char> const Char* Rebased(const Char* text, const ZQString& copy) const;
    void ClearBuffers();
    void RebuildNarrow();

    unsigned int m_length = 0;
    unsigned int m_capacity = 0;
    char* m_narrow = nullptr;
    wchar_t* m_wide = nullptr;
};

} // namespace ZQ
