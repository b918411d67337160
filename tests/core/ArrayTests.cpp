#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <vector>

using ZQ::ZQArray;
using ZQ::ZQVector;

// Growth doubles from 16 places, or takes exactly what was asked when that is more; a failed growth or a
// bad index leaves the array as it was.
TEST(ZQArray, GrowthIndexChecksRemovalAndCopies) {
    ZQArray<unsigned int> a;
    for (unsigned int v : {10u, 20u, 30u, 20u})
        a.Add(v);
    EXPECT_EQ(a.GetMaxSize(), 16);
    EXPECT_EQ(a.SetSize(17), S_OK);
    EXPECT_EQ(a.GetMaxSize(), 32);
    EXPECT_EQ(a.SetSize(65), S_OK);
    EXPECT_EQ(a.GetMaxSize(), 65) << "more than double";
    EXPECT_EQ(a.SetSize(-1), E_INVALIDARG);
    EXPECT_EQ(a.SetAt(4, 1), E_INVALIDARG);
    EXPECT_EQ(a.SetAt(3, 40), S_OK);
    EXPECT_EQ(a.IndexOf(30, 2, 0), -1) << "count 0 finds nothing even at start";
    EXPECT_EQ(a.IndexOf(30, 2, 1), 2);
    EXPECT_EQ(a.IndexOf(40, 1, 4), -1) << "a range past the end";
    EXPECT_EQ(a.Remove(4), E_INVALIDARG);
    EXPECT_EQ(a.Remove(0), S_OK);
    EXPECT_EQ(std::vector<unsigned int>(a.GetData(), a.GetData() + a.GetSize()),
              (std::vector<unsigned int>{20, 30, 40}));

    ZQArray<unsigned int> copy(a), assigned;
    assigned.Add(1);
    assigned = a;
    assigned = assigned;
    EXPECT_NE(copy.GetData(), a.GetData());
    EXPECT_EQ(copy.IndexOf(40), 2);
    EXPECT_EQ(assigned.IndexOf(40), 2);
    EXPECT_EQ(a.SetSize(0), S_OK);
    EXPECT_EQ(a.GetSize() + a.GetMaxSize(), 0);

    struct Megabyte {
        char bytes[1 << 20];
    };
    ZQArray<Megabyte> huge;
    EXPECT_EQ(huge.SetSize(1), S_OK);
    EXPECT_EQ(huge.SetSize(0x7FFFFFFF), E_OUTOFMEMORY) << "two petabytes";
    EXPECT_EQ(huge.GetMaxSize(), 16);
}

namespace {
std::vector<void*> Live(const ZQVector& v) {
    std::vector<void*> live;
    for (ZQVector::iterator it = v.begin(); it != v.end(); ++it)
        if (*it)
            live.push_back(*it);
    return live;
}
int items[64];
} // namespace

TEST(ZQVector, GrowsByOnePlaceWhenFullUpToTheCeiling) {
    ZQVector v;
    EXPECT_EQ(v.capacity(), 32u);
    for (int i = 0; i < 32; ++i)
        v.push_back(&items[i]);
    EXPECT_EQ(v.capacity(), 33u);
    v.push_back(&items[32]);
    EXPECT_EQ(v.capacity(), 34u);
    for (int i = 0; i < 33; ++i)
        ASSERT_EQ(v[i], &items[i]);
    ZQVector copy(v), assigned;
    assigned.push_back(&items[63]);
    assigned = v;
    EXPECT_EQ(Live(copy), Live(v));
    EXPECT_EQ(Live(assigned), Live(v));

    ZQVector big;
    big.reserve(10000);
    for (int i = 0; i < 12000; ++i)
        big.push_back(&items[i % 64]);
    EXPECT_EQ(big.size(), 10240u) << "pushes past the ceiling are ignored";
    EXPECT_EQ(big[10239], &items[10239 % 64]);
}

TEST(ZQVector, EraseNullsSwapSqueezesReserveEmpties) {
    ZQVector v;
    for (int i = 0; i < 5; ++i)
        v.push_back(&items[i]);
    v.erase(&items[1]);
    v.erase(&items[40]);
    ZQVector::iterator it = v.begin();
    ++it, ++it, ++it;
    v.erase(it);
    ZQVector::iterator past = v.end();
    v.erase(past);
    EXPECT_EQ(v.size(), 5u);
    EXPECT_EQ(Live(v), (std::vector<void*>{&items[0], &items[2], &items[4]}));
    v.swap();
    v.push_back(&items[5]);
    EXPECT_EQ(v.size(), 4u);
    EXPECT_EQ(Live(v), (std::vector<void*>{&items[0], &items[2], &items[4], &items[5]}))
        << "pushing continues behind the survivors";
    ZQVector empty;
    empty.swap();
    EXPECT_TRUE(empty.empty());

    v.reserve(64);
    EXPECT_TRUE(v.empty());
    EXPECT_EQ(v.capacity(), 64u);
    char bytes[4];
    v.insert(bytes, 3);
    EXPECT_EQ(v.capacity(), 3u);
    EXPECT_EQ(v[2], bytes + 2);
    v.push_back(&items[0]);
    EXPECT_EQ(v.size(), 4u) << "a vector left full by insert grows before pushing";
    EXPECT_EQ(v[3], &items[0]);
    v.clear();
    EXPECT_TRUE(v.empty());
    EXPECT_EQ(v[0], nullptr);
}
