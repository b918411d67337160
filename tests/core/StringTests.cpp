#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using ZQ::ZQString;

namespace {

std::string Narrow(const ZQString& s) {
    return static_cast<char*>(s);
}

std::wstring Wide(const ZQString& s) {
    return static_cast<wchar_t*>(s);
}

} // namespace

TEST(ZQString, FormattingFillsBothCopiesAndCutsAt2047Characters) {
    ZQString narrow("%s-%03d", "coin", 7);
    EXPECT_EQ(Wide(narrow), L"coin-007");
    EXPECT_EQ(Narrow(narrow), "coin-007");
    EXPECT_EQ(narrow.size(), 8u);
    EXPECT_EQ(narrow.max(), 256u);
    ZQString wide(L"%ls=%.1f", L"ratio", 0.5);
    EXPECT_EQ(Narrow(wide), "ratio=0.5");
    EXPECT_EQ(Wide(ZQString("100%%")), L"100%") << "plain text goes through the formatter too";

    ZQString longNarrow("%s", std::string(3000, 'n').c_str());
    EXPECT_EQ(longNarrow.max(), 2048u);
    EXPECT_EQ(Wide(longNarrow), std::wstring(2047, L'n'));
    ZQString longWide(L"%ls", std::wstring(3000, L'w').c_str());
    EXPECT_EQ(longWide.size(), 2047u);
    EXPECT_EQ(Narrow(longWide), std::string(2047, 'w'));
    // A formatted text of 256 or more characters gets (n | 3) + 1 places.
    EXPECT_EQ(ZQString("%s", std::string(300, 'x').c_str()).max(), 304u);
}

TEST(ZQString, CapacityGrowsOnlyWhenTheTextReachesItAndNeverPastTheCeiling) {
    ZQString s;
    s = std::wstring(255, L'a').c_str();
    EXPECT_EQ(s.max(), 256u);
    s = std::wstring(256, L'b').c_str();
    EXPECT_EQ(s.max(), 260u);
    EXPECT_EQ(Narrow(s), std::string(256, 'b'));
    s.clear();
    EXPECT_EQ(s.max(), 260u);

    ZQString appended(L"head");
    appended += std::wstring(300, L'z').c_str();
    EXPECT_EQ(appended.max(), 308u);
    EXPECT_EQ(Narrow(appended), "head" + std::string(300, 'z'));
    ZQString bigCopy(appended);
    EXPECT_EQ(bigCopy.max(), 308u);
    EXPECT_EQ(Wide(bigCopy), L"head" + std::wstring(300, L'z'));

    // Growth past the ceiling leaves the string as it was.
    ZQString kept(L"keep");
    kept += std::wstring(2044, L'x').c_str();
    EXPECT_EQ(Wide(kept), L"keep");
    kept = std::string(5000, 'y').c_str();
    EXPECT_EQ(Wide(kept), L"keep");
    kept += std::wstring(2043, L'x').c_str();
    EXPECT_EQ(kept.size(), 2047u);
}

TEST(ZQString, AssignmentAndCopyQuirks) {
    ZQString target(L"Title");
    target = ZQString();
    EXPECT_EQ(Wide(target), L"Title") << "assigning an empty string leaves the target";
    target = static_cast<const wchar_t*>(nullptr);
    target = static_cast<const char*>(nullptr);
    EXPECT_EQ(Wide(target), L"Title");
    target = L"";
    EXPECT_TRUE(target.empty()) << "an empty C string does empty it";
    target = "narrow";
    EXPECT_EQ(Wide(target), L"narrow");

    ZQString source(L"%d", 12345);
    target = source;
    target = target;
    ZQString copy(source);
    copy += L"6";
    EXPECT_EQ(Narrow(target), "12345");
    EXPECT_EQ(Wide(source), L"12345") << "copies are deep";
    EXPECT_EQ(Wide(copy), L"123456");

    // Text taken from the string's own buffers survives the clearing that assignment does.
    target = static_cast<wchar_t*>(target) + 1;
    EXPECT_EQ(Wide(target), L"2345");
    target = static_cast<char*>(target) + 1;
    EXPECT_EQ(Wide(target), L"345");
    target += static_cast<wchar_t*>(target);
    EXPECT_EQ(Wide(target), L"345345");
}

TEST(ZQString, InsertAppendAndBackspace) {
    ZQString s(L"ace");
    s.insert(1, L"b");
    s.insert(3, L"d");
    EXPECT_EQ(Wide(s), L"abcde");
    s.insert(s.size(), L"f");
    EXPECT_EQ(Wide(s), L"abcdef") << "inserting at the length appends";
    s.insert(s.size() + 1, L"g");
    s.insert(0, nullptr);
    s.insert(0, L">");
    EXPECT_EQ(Narrow(s), ">abcdef") << "the narrow copy is rebuilt";
    s += ZQString(L"!");
    s += ZQString();
    s += static_cast<const wchar_t*>(nullptr);
    EXPECT_EQ(Wide(s), L">abcdef!");

    // Backspace leaves the narrow copy stale until the next rebuild.
    ZQString back;
    back.backspace();
    EXPECT_TRUE(back.empty());
    back = L"abc";
    back.backspace();
    EXPECT_EQ(Wide(back), L"ab");
    EXPECT_EQ(back.size(), 2u);
    EXPECT_EQ(back.key(), 97u + 98u);
    EXPECT_EQ(Narrow(back), "abc");
    back += L"";
    EXPECT_EQ(Narrow(back), "ab");
}

TEST(ZQString, ComparisonCaseMaskAndKey) {
    ZQString s(L"Coin"), empty;
    EXPECT_TRUE(s == ZQString(L"Coin"));
    EXPECT_TRUE(s != ZQString(L"coin")) << "comparison is case-sensitive";
    EXPECT_TRUE(s != empty);
    EXPECT_TRUE(empty == ZQString());
    EXPECT_FALSE(s == L"Coins");
    EXPECT_TRUE(empty == static_cast<const wchar_t*>(nullptr)) << "null equals only an empty string";
    EXPECT_FALSE(s == static_cast<const wchar_t*>(nullptr));

    ZQString mixed(L"MiXeD 9");
    mixed.upper();
    EXPECT_EQ(Narrow(mixed), "MIXED 9");
    mixed.lower();
    EXPECT_EQ(Wide(mixed), L"mixed 9");
    mixed.password();
    EXPECT_EQ(Narrow(mixed), "*******");
    mixed.clear();
    EXPECT_EQ(Narrow(mixed), "");

    // The key is the sum of code units.
    EXPECT_EQ(ZQString().key(), 0u);
    EXPECT_EQ(ZQString(L"\xFFFF\xFFFF").key(), 2u * 0xFFFF);
}
