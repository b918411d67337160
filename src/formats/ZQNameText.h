// A record's name in the library's files and registrations is the text a printf-style constructor
// would make of it with no arguments. Reading arguments that were never passed would crash, so the
// one safe reading is used everywhere: "%%" becomes "%", and any other conversion is kept as written.
#pragma once

#include <cstddef>
#include <string>

namespace ZQ {
namespace formats {

/// The name a record's stored text stands for: each "%%" becomes "%"; everything else is kept.
template <typename Char> std::basic_string<Char> NameFromFormatText(const Char* text, size_t length) {
    std::basic_string<Char> name;
    name.reserve(length);
    for (size_t i = 0; i < length; ++i) {
        name += text[i];
        if (text[i] == Char('%') && i + 1 < length && text[i + 1] == Char('%'))
            ++i;
    }
    return name;
}

template <typename Char> std::basic_string<Char> NameFromFormatText(const std::basic_string<Char>& text) {
    return NameFromFormatText(text.data(), text.size());
}

template <typename Char> std::basic_string<Char> NameFromFormatText(const Char* text) {
    return text ? NameFromFormatText(text, std::char_traits<Char>::length(text)) : std::basic_string<Char>();
}

} // namespace formats
} // namespace ZQ
