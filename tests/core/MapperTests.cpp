#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using ZQ::ZQMapper;
using ZQ::ZQString;

namespace {
int a, b, c, d;
int* const kValues[] = {&a, &b, &c, &d};
} // namespace

TEST(ZQMapper, NamesAreCaseInsensitiveAndUpperCasedInPlace) {
    ZQMapper map;
    ZQString name(L"Title");
    map.insert(name, &a);
    EXPECT_EQ(std::wstring(static_cast<wchar_t*>(name)), L"TITLE");
    EXPECT_STREQ(static_cast<char*>(name), "TITLE");
    ZQString upper(L"TITLE");
    EXPECT_EQ(map.find(upper), &a);
    EXPECT_EQ(map.find("title"), &a);
    EXPECT_EQ(map.find(L"Title"), &a);
    EXPECT_EQ(map.find(L"Titl"), nullptr);
    EXPECT_EQ(map.find(L"TITLES"), nullptr);
    ZQString lookup(L"tItLe");
    EXPECT_EQ(map.find_itr(lookup)->value, &a);
    EXPECT_EQ(std::wstring(static_cast<wchar_t*>(lookup)), L"TITLE");

    // Equal keys chain in insertion order; the first of two equal names wins.
    ZQMapper chained;
    ZQString ab(L"AB"), ba(L"BA"), first(L"A"), second(L"a");
    ASSERT_EQ(ab.key(), ba.key());
    ZQString* names[] = {&ab, &ba, &first, &second};
    for (int i = 0; i < 4; ++i)
        chained.insert(*names[i], kValues[i]);
    EXPECT_EQ(chained.find(L"ab"), &a);
    EXPECT_EQ(chained.find(L"ba"), &b);
    EXPECT_EQ(chained.find(L"a"), &c);
    std::vector<void*> values;
    for (ZQMapper::iterator it = chained.begin(); it != chained.end(); ++it)
        values.push_back(it->value);
    EXPECT_EQ(values, std::vector<void*>(kValues, kValues + 4));
}

TEST(ZQMapper, NumericKeysEmptyMapsAndTheEmptyName) {
    ZQMapper map;
    EXPECT_EQ(map.find(L"anything"), nullptr);
    EXPECT_EQ(map.find_key(3), nullptr);
    EXPECT_EQ(map.begin(), map.end());
    map.insert(9u, &a);
    map.insert(1u, &b);
    EXPECT_EQ(map.find_key(9), &a) << "place 1 of the level under root node 1";
    EXPECT_EQ(map.find_key(1), &b) << "place 1 of the root";
    EXPECT_EQ(map.find_itr(9u)->value, &a);
    EXPECT_EQ(map.find_key(0), nullptr);
    EXPECT_EQ(map.find_itr(2u), map.end());
    map.clear();
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.find_key(9), nullptr);
    map.insert(1u, &c);
    EXPECT_EQ(map.find_key(1), &c) << "refilled after clearing";

    // A missing level keeps the lookup on the level it reached, so 9 lands on the place of 1.
    ZQMapper sparse;
    sparse.insert(1u, &c);
    EXPECT_EQ(sparse.find_key(9), &c);

    // Keys far past the octal depth of eight levels still get places of their own.
    ZQMapper wide;
    const unsigned int keys[] = {0xFFFFFFFFu, 0x7FFFFFFFu, 1u << 27, 7u};
    for (int i = 0; i < 4; ++i)
        wide.insert(keys[i], kValues[i]);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(wide.find_key(keys[i]), kValues[i]) << keys[i];

    ZQMapper named;
    ZQString none, ghost(L"Ghost");
    named.insert(none, &a);
    EXPECT_EQ(named.find(L""), &a) << "the empty name is key 0, place 0 of the root";
    EXPECT_EQ(named.find_key(0), &a);
    named.insert(ghost, nullptr);
    EXPECT_EQ(named.size(), 1u) << "null is ignored rather than stored as an invisible entry";
}

TEST(ZQMapper, NullLookupRepeatsThePreviousName) {
    ZQMapper map;
    ZQString name(L"Coin");
    map.insert(name, &a);
    EXPECT_EQ(map.find("coin"), &a);
    EXPECT_EQ(map.find(static_cast<const char*>(nullptr)), &a);
    EXPECT_EQ(map.find(L"none"), nullptr);
    EXPECT_EQ(map.find(static_cast<const wchar_t*>(nullptr)), nullptr);

    // A name longer than the lookup key holds is found nowhere, not mistaken for the previous one.
    EXPECT_EQ(map.find(L"coin"), &a);
    EXPECT_EQ(map.find(std::wstring(2048, L'x').c_str()), nullptr);
    EXPECT_EQ(map.find("coin"), &a);
    EXPECT_EQ(map.find(std::string(5000, 'x').c_str()), nullptr);
    EXPECT_EQ(map.find_name(L"cOIN"), &a);
    EXPECT_EQ(map.find_name(std::wstring(2048, L'x').c_str()), nullptr);
    EXPECT_EQ(map.find_name(nullptr), nullptr);
}
