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

TEST(ZQStringDbcs, NarrowAssignmentCountsBytesButFormattingCountsCharacters) {
    ASSERT_EQ(GetACP(), 932u) << "the code page is double-byte";
    ZQString assigned;
    assigned = kHiraganaAI;
    EXPECT_EQ(assigned.size(), 4u) << "length is the byte count";
    EXPECT_STREQ(static_cast<wchar_t*>(assigned), kHiraganaAIWide);
    EXPECT_STREQ(static_cast<char*>(assigned), kHiraganaAI);

    ZQString formatted("%s", kHiraganaAI);
    EXPECT_EQ(formatted.size(), 2u) << "the formatting constructor counts wide characters";
    EXPECT_STREQ(static_cast<wchar_t*>(formatted), kHiraganaAIWide);
}

TEST(ZQStringDbcs, NarrowCopiesSurviveCopyingAndRebuilds) {
    ZQString wide(L"%ls", kHiraganaAIWide);
    EXPECT_STREQ(static_cast<char*>(wide), kHiraganaAI);

    ZQString copy(wide);
    EXPECT_STREQ(static_cast<char*>(copy), kHiraganaAI);
    ZQString assigned;
    assigned = wide;
    EXPECT_STREQ(static_cast<char*>(assigned), kHiraganaAI);

    assigned += L"x";
    EXPECT_STREQ(static_cast<char*>(assigned), "\x82\xa0\x82\xa2x");
}

TEST(ZQStringDbcs, ANarrowCopyLongerThanTheCapacityIsCutAtAWholeCharacter) {
    ZQString s;
    s = std::wstring(200, L'\x3042').c_str();
    EXPECT_EQ(s.size(), 200u);
    EXPECT_EQ(s.max(), 256u);
    const std::string narrow = static_cast<char*>(s);
    EXPECT_EQ(narrow.size(), 254u);
    EXPECT_EQ(narrow.substr(0, 2), "\x82\xa0");
    EXPECT_EQ(narrow.substr(252, 2), "\x82\xa0");
}
