// A record's name in the library's files and registrations is the text a printf-style constructor
// would make of it with no arguments. Reading arguments that were never passed would crash, so the
// one safe reading is used everywhere: "%%" becomes "%", and any other conversion is kept as written.
#pragma once

#include <cstddef>
#include <string>

namespace ZQ {
namespace formats {

/// Applies the rule in place to the first length characters; returns the new length.
template <typename Char> size_t CollapseFormatText(Char* text, size_t length) {
    size_t kept = 0;
    for (size_t i = 0; i < length; ++i) {
        text[kept++] = text[i];
        if (text[i] == Char('%') && i + 1 < length && text[i + 1] == Char('%'))
            ++i;
    }
    return kept;
}

/// The name a record's stored text stands for: each "%%" becomes "%"; everything else is kept.
template <typename Char> std::basic_string<Char> NameFromFormatText(std::basic_string<Char> text) {
    text.resize(CollapseFormatText(&text[0], text.size()));
    return text;
}

template <typename Char> std::basic_string<Char> NameFromFormatText(const Char* text, size_t length) {
    return NameFromFormatText(std::basic_string<Char>(text, length));
}

template <typename Char> std::basic_string<Char> NameFromFormatText(const Char* text) {
    return text ? NameFromFormatText(std::basic_string<Char>(text)) : std::basic_string<Char>();
}

} // namespace formats
} // namespace ZQ
