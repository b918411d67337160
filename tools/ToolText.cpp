#include "ToolText.h"

#include "ZQNameText.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cwctype>

std::u16string Utf16(const std::string& utf8) {
    std::u16string text;
    for (size_t i = 0; i < utf8.size();) {
        const unsigned char lead = static_cast<unsigned char>(utf8[i]);
        const int extra = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        char32_t code = extra == 0 ? lead : lead & (0x3F >> extra);
        for (int k = 1; k <= extra && i + k < utf8.size(); ++k)
            code = code << 6 | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
        i += static_cast<size_t>(extra) + 1;
        if (code >= 0x10000) {
            code -= 0x10000;
            text.push_back(static_cast<char16_t>(0xD800 + (code >> 10)));
            text.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
        } else {
            text.push_back(static_cast<char16_t>(code));
        }
    }
    return text;
}

std::string Utf8(const std::u16string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        char32_t code = text[i];
        if (code >= 0xD800 && code < 0xDC00 && i + 1 < text.size())
            code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00);
        if (code < 0x80) {
            out += static_cast<char>(code);
        } else if (code < 0x800) {
            out += static_cast<char>(0xC0 | code >> 6);
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else if (code < 0x10000) {
            out += static_cast<char>(0xE0 | code >> 12);
            out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | code >> 18);
            out += static_cast<char>(0x80 | (code >> 12 & 0x3F));
            out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return out;
}

namespace zqtools {

std::u16string FoldedName(const std::string& utf8) {
    std::u16string folded = Utf16(utf8);
    for (char16_t& unit : folded)
        unit = static_cast<char16_t>(std::towupper(unit));
    return folded;
}

std::string RegisteredName(const std::string& stored) {
    return ZQ::formats::NameFromFormatText(stored);
}

std::string PercentWarning(const std::string& stored) {
    const std::string registered = RegisteredName(stored);
    bool lone = false;
    for (size_t i = 0; i < stored.size(); ++i)
        if (stored[i] == '%') {
            if (i + 1 < stored.size() && stored[i + 1] == '%')
                ++i;
            else
                lone = true;
        }
    std::string warning;
    if (registered != stored)
        warning = "is registered as \"" + registered + "\" (\"%%\" stands for one '%')";
    if (lone)
        warning += std::string(warning.empty() ? "" : "; it ") +
                   "holds a lone '%', kept as written but fragile: write \"%%\" for a percent sign";
    return warning;
}

std::string SameNameHow(const std::string& first, const std::string& later) {
    if (first == later)
        return "is given twice";
    if (FoldedName(first) == FoldedName(later))
        return "differs only in case from \"" + first + "\"";
    return "is registered as the same name as \"" + first + "\"";
}

bool IsAscii(const std::string& text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

std::string UpperAscii(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return text;
}

bool ParseWhole(const std::string& text, long long low, long long high, long long& value, bool hex) {
    if (text.empty())
        return false;
    const bool isHex = hex && text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const size_t start = isHex ? 2 : text[0] == '-' ? 1 : 0;
    // strtoll alone would take leading spaces, a '+', and "12abc" as 12.
    if (start >= text.size() ||
        !std::all_of(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(), [&](char c) {
            return isHex ? std::isxdigit(static_cast<unsigned char>(c)) != 0 : c >= '0' && c <= '9';
        }))
        return false;
    errno = 0;
    const long long parsed = std::strtoll(text.c_str(), nullptr, isHex ? 16 : 10);
    if (errno == ERANGE || parsed < low || parsed > high)
        return false;
    value = parsed;
    return true;
}

long long WholeOption(const char* tool, const std::string& option, const std::string& text, long long low,
                      long long high, bool hex) {
    long long value = 0;
    if (!ParseWhole(text, low, high, value, hex)) {
        std::fprintf(stderr, "%s: %s takes a whole number from %lld to %lld%s, not \"%s\"\n", tool, option.c_str(), low,
                     high, hex ? " (decimal or 0x hexadecimal)" : "", text.c_str());
        std::exit(1);
    }
    return value;
}

std::string OptionValue(const char* tool, int argc, char** argv, int& i) {
    if (i + 1 >= argc) {
        std::fprintf(stderr, "%s: %s needs a value\n", tool, argv[i]);
        std::exit(1);
    }
    return argv[++i];
}

} // namespace zqtools
