// Run with the Japanese ANSI code page (932), where one character can take two bytes.
#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using ZQ::ZQString;

namespace {
const char kHiraganaAI[] = "\x82\xa0\x82\xa2"; // two characters, four bytes
const wchar_t kHiraganaAIWide[] = L"\x3042\x3044";
} // namespace

// Narrow text is counted in bytes when assigned but in characters when formatted; the narrow copy is
// rebuilt by copies and appends.
TEST(ZQStringDbcs, NarrowTextRoundTrips) {
    ASSERT_EQ(GetACP(), 932u) << "the code page is double-byte";
    ZQString assigned;
    assigned = kHiraganaAI;
    EXPECT_EQ(assigned.size(), 4u) << "length is the byte count";
    EXPECT_STREQ(static_cast<wchar_t*>(assigned), kHiraganaAIWide);
    ZQString formatted("%s", kHiraganaAI);
    EXPECT_EQ(formatted.size(), 2u);

    ZQString wide(L"%ls", kHiraganaAIWide), copy(wide);
    assigned = wide;
    assigned += L"x";
    EXPECT_STREQ(static_cast<char*>(copy), kHiraganaAI);
    EXPECT_STREQ(static_cast<char*>(assigned), "\x82\xa0\x82\xa2x");

    // A narrow copy longer than the capacity is cut at a whole character.
    ZQString s;
    s = std::wstring(200, L'\x3042').c_str();
    EXPECT_EQ(s.size(), 200u);
    EXPECT_EQ(s.max(), 256u);
    const std::string narrow = static_cast<char*>(s);
    EXPECT_EQ(narrow.size(), 254u);
    EXPECT_EQ(narrow.substr(0, 2), "\x82\xa0");
    EXPECT_EQ(narrow.substr(252, 2), "\x82\xa0");
}
