#include "ToolText.h"

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
