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

TEST(ZQString, FormattingConstructorsFillBothCopies) {
    ZQString narrow("%s-%03d", "coin", 7);
    EXPECT_EQ(Wide(narrow), L"coin-007");
    EXPECT_EQ(Narrow(narrow), "coin-007");
    EXPECT_EQ(narrow.size(), 8u);
    EXPECT_EQ(narrow.max(), 256u);

    ZQString wide(L"%ls=%.1f", L"ratio", 0.5);
    EXPECT_EQ(Wide(wide), L"ratio=0.5");
    EXPECT_EQ(Narrow(wide), "ratio=0.5");

    // Plain text goes through the formatter too.
    EXPECT_EQ(Wide(ZQString("100%%")), L"100%");
    EXPECT_TRUE(ZQString().empty());
    EXPECT_EQ(ZQString().max(), 256u);
}

TEST(ZQString, FormattingCutsAt2047Characters) {
    std::string longNarrow(3000, 'n');
    ZQString narrow("%s", longNarrow.c_str());
    EXPECT_EQ(narrow.size(), 2047u);
    EXPECT_EQ(narrow.max(), 2048u);
    EXPECT_EQ(Narrow(narrow), std::string(2047, 'n'));
    EXPECT_EQ(Wide(narrow), std::wstring(2047, L'n'));

    std::wstring longWide(3000, L'w');
    ZQString wide(L"%ls", longWide.c_str());
    EXPECT_EQ(wide.size(), 2047u);
    EXPECT_EQ(Wide(wide), std::wstring(2047, L'w'));
    EXPECT_EQ(Narrow(wide), std::string(2047, 'w'));

    // A formatted text of 256 or more characters gets (n | 3) + 1 places.
    EXPECT_EQ(ZQString("%s", std::string(300, 'x').c_str()).max(), 304u);
}

TEST(ZQString, CapacityGrowsOnlyWhenTheTextReachesIt) {
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
    EXPECT_EQ(appended.size(), 304u);
    EXPECT_EQ(appended.max(), 308u);
    EXPECT_EQ(Wide(appended), L"head" + std::wstring(300, L'z'));
    EXPECT_EQ(Narrow(appended), "head" + std::string(300, 'z'));
}

TEST(ZQString, GrowthPastTheCeilingLeavesTheStringAsItWas) {
    ZQString s(L"keep");
    s += std::wstring(2044, L'x').c_str();
    EXPECT_EQ(Wide(s), L"keep");
    s = std::string(5000, 'y').c_str();
    EXPECT_EQ(Wide(s), L"keep");
    s += std::wstring(2043, L'x').c_str();
    EXPECT_EQ(s.size(), 2047u);
}

TEST(ZQString, AssignmentQuirks) {
    ZQString target(L"Title");
    ZQString empty;
    target = empty;
    EXPECT_EQ(Wide(target), L"Title") << "assigning an empty string leaves the target";
    target = static_cast<const wchar_t*>(nullptr);
    target = static_cast<const char*>(nullptr);
    EXPECT_EQ(Wide(target), L"Title");
    target = L"";
    EXPECT_TRUE(target.empty()) << "an empty C string does empty it";

    target = "narrow";
    EXPECT_EQ(Wide(target), L"narrow");
    EXPECT_EQ(target.size(), 6u);

    ZQString source(L"copied");
    target = source;
    EXPECT_EQ(Wide(target), L"copied");
    EXPECT_EQ(Narrow(target), "copied");
    target = target;
    EXPECT_EQ(Wide(target), L"copied");

    // Text taken from the string's own buffers survives the clearing that assignment does.
    target = static_cast<wchar_t*>(target) + 2;
    EXPECT_EQ(Wide(target), L"pied");
    target = static_cast<char*>(target) + 1;
    EXPECT_EQ(Wide(target), L"ied");
    target += static_cast<wchar_t*>(target);
    EXPECT_EQ(Wide(target), L"iedied");
}

TEST(ZQString, CopiesAreDeep) {
    ZQString source(L"%d", 12345);
    ZQString copy(source);
    copy += L"6";
    EXPECT_EQ(Wide(source), L"12345");
    EXPECT_EQ(Wide(copy), L"123456");
    EXPECT_NE(static_cast<wchar_t*>(source), static_cast<wchar_t*>(copy));

    ZQString big(std::wstring(400, L'q').c_str());
    ZQString bigCopy(big);
    EXPECT_EQ(bigCopy.max(), big.max());
    EXPECT_EQ(Wide(bigCopy), Wide(big));
}

TEST(ZQString, InsertAndAppend) {
    ZQString s(L"ace");
    s.insert(1, L"b");
    EXPECT_EQ(Wide(s), L"abce");
    s.insert(3, L"d");
    EXPECT_EQ(Wide(s), L"abcde");
    s.insert(s.size(), L"f");
    EXPECT_EQ(Wide(s), L"abcdef") << "inserting at the length appends";
    s.insert(s.size() + 1, L"g");
    s.insert(0, nullptr);
    EXPECT_EQ(Wide(s), L"abcdef");
    s.insert(0, L">");
    EXPECT_EQ(Narrow(s), ">abcdef") << "the narrow copy is rebuilt";

    ZQString tail(L"!");
    s += tail;
    s += ZQString();
    s += static_cast<const wchar_t*>(nullptr);
    EXPECT_EQ(Wide(s), L">abcdef!");
}

TEST(ZQString, BackspaceLeavesTheNarrowCopyStale) {
    ZQString s;
    s.backspace();
    EXPECT_TRUE(s.empty());

    s = L"abc";
    s.backspace();
    EXPECT_EQ(Wide(s), L"ab");
    EXPECT_EQ(s.size(), 2u);
    EXPECT_EQ(Narrow(s), "abc");
    s += L"";
    EXPECT_EQ(Narrow(s), "ab") << "the next rebuild drops it";
}

TEST(ZQString, ComparisonCaseAndEmptiness) {
    ZQString s(L"Coin");
    ZQString empty;
    EXPECT_TRUE(s == ZQString(L"Coin"));
    EXPECT_TRUE(s != ZQString(L"coin")) << "comparison is case-sensitive";
    EXPECT_TRUE(s != empty);
    EXPECT_TRUE(empty == ZQString());
    EXPECT_FALSE(s == L"Coins");
    EXPECT_TRUE(empty == static_cast<const wchar_t*>(nullptr)) << "null equals only an empty string";
    EXPECT_FALSE(s == static_cast<const wchar_t*>(nullptr));
}

TEST(ZQString, CaseMaskAndClear) {
    ZQString s(L"MiXeD 9");
    s.upper();
    EXPECT_EQ(Narrow(s), "MIXED 9");
    s.lower();
    EXPECT_EQ(Wide(s), L"mixed 9");
    s.password();
    EXPECT_EQ(Narrow(s), "*******");
    s.clear();
    EXPECT_EQ(Narrow(s), "");
    EXPECT_EQ(s.max(), 256u);
}

TEST(ZQString, KeyIsTheSumOfCodeUnits) {
    EXPECT_EQ(ZQString(L"ab").key(), ZQString(L"ba").key());
    EXPECT_EQ(ZQString(L"ab").key(), 97u + 98u);
    EXPECT_EQ(ZQString().key(), 0u);
    EXPECT_EQ(ZQString(L"\xFFFF\xFFFF").key(), 2u * 0xFFFF);

    ZQString s(L"abc");
    s.backspace();
    EXPECT_EQ(s.key(), 97u + 98u);
}
