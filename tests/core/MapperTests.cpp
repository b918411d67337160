#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using ZQ::ZQMapper;
using ZQ::ZQString;

namespace {

std::vector<void*> Values(const ZQMapper& map) {
    std::vector<void*> values;
    for (ZQMapper::iterator it = map.begin(); it != map.end(); ++it)
        values.push_back(it->value);
    return values;
}

int a, b, c, d;

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
}

TEST(ZQMapper, EqualKeysChainInInsertionOrder) {
    ZQMapper map;
    ZQString ab(L"AB"), ba(L"BA"), first(L"A"), second(L"a");
    ASSERT_EQ(ab.key(), ba.key());
    map.insert(ab, &a);
    map.insert(ba, &b);
    map.insert(first, &c);
    map.insert(second, &d);

    EXPECT_EQ(map.find(L"ab"), &a);
    EXPECT_EQ(map.find(L"ba"), &b);
    EXPECT_EQ(map.find(L"a"), &c) << "the first of two equal names wins";
    EXPECT_EQ(map.size(), 4u);
    EXPECT_EQ(Values(map), (std::vector<void*>{&a, &b, &c, &d}));
}

TEST(ZQMapper, NumericKeys) {
    ZQMapper map;
    map.insert(9u, &a);
    map.insert(1u, &b);
    EXPECT_EQ(map.find_key(9), &a) << "place 1 of the level under root node 1";
    EXPECT_EQ(map.find_key(1), &b) << "place 1 of the root";
    EXPECT_EQ(map.find_itr(9u)->value, &a);
    EXPECT_EQ(map.find_key(0), nullptr);
    EXPECT_EQ(map.find_itr(2u), map.end());

    // A missing level keeps the lookup on the level it reached, so 9 lands on the place of 1.
    ZQMapper sparse;
    sparse.insert(1u, &c);
    EXPECT_EQ(sparse.find_key(9), &c);

    // Keys far past the octal depth of eight levels still get places of their own.
    ZQMapper wide;
    wide.insert(0xFFFFFFFFu, &a);
    wide.insert(0x7FFFFFFFu, &b);
    wide.insert(1u << 27, &c);
    wide.insert(7u, &d);
    EXPECT_EQ(wide.find_key(0xFFFFFFFFu), &a);
    EXPECT_EQ(wide.find_key(0x7FFFFFFFu), &b);
    EXPECT_EQ(wide.find_key(1u << 27), &c);
    EXPECT_EQ(wide.find_key(7), &d);
}

TEST(ZQMapper, EmptyMapsAndTheEmptyName) {
    ZQMapper map;
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.find(L"anything"), nullptr);
    EXPECT_EQ(map.find_key(3), nullptr);
    EXPECT_EQ(map.begin(), map.end());
    map.clear();
    EXPECT_TRUE(map.empty());

    ZQString none;
    map.insert(none, &a);
    EXPECT_EQ(map.find(L""), &a) << "the empty name is key 0, place 0 of the root";
    EXPECT_EQ(map.find_key(0), &a);

    // Null is ignored rather than stored as an invisible entry.
    ZQString ghost(L"Ghost");
    map.insert(ghost, nullptr);
    EXPECT_EQ(map.size(), 1u);
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

TEST(ZQMapper, ThousandsOfEntriesClearAndRefill) {
    ZQMapper map;
    std::vector<int> values(5000);
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 5000; ++i) {
            ZQString name(L"chunk_%d", i);
            map.insert(name, &values[i]);
        }
        ASSERT_EQ(map.size(), 5000u);
        for (int i = 0; i < 5000; i += 7) {
            ZQString name(L"CHUNK_%d", i);
            ASSERT_EQ(map.find(name), &values[i]) << i;
        }
        int index = 0;
        for (ZQMapper::iterator it = map.begin(); it != map.end(); ++it, ++index)
            ASSERT_EQ(it->value, &values[index]);
        EXPECT_EQ(index, 5000);
        map.clear();
        EXPECT_TRUE(map.empty());
        EXPECT_EQ(map.find(L"chunk_1"), nullptr);
    }
}
