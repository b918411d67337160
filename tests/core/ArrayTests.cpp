#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <vector>

using ZQ::ZQArray;
using ZQ::ZQVector;

namespace {
struct Mode {
    UINT width, height, refresh;
    D3DFORMAT format;
};
} // namespace

TEST(ZQArray, GrowthDoublesFromSixteenAndKeepsTheSize) {
    ZQArray<int> a;
    EXPECT_EQ(a.GetMaxSize(), 0);
    for (int i = 1; i <= 17; ++i)
        ASSERT_EQ(a.Add(i), S_OK);
    EXPECT_EQ(a.GetMaxSize(), 32) << "16, then doubled";
    EXPECT_EQ(a.SetSize(100), S_OK);
    EXPECT_EQ(a.GetMaxSize(), 100) << "more than double: exactly what was asked";
    EXPECT_EQ(a.SetSize(50), S_OK);
    EXPECT_EQ(a.GetMaxSize(), 100);
    EXPECT_EQ(a.SetSize(-1), E_INVALIDARG);
    EXPECT_EQ(a.GetSize(), 17) << "SetSize never changes the elements in use";
    for (int i = 0; i < 17; ++i)
        EXPECT_EQ(a[i], i + 1);
    EXPECT_EQ(a.SetSize(0), S_OK);
    EXPECT_EQ(a.GetSize() + a.GetMaxSize(), 0);
    EXPECT_EQ(a.GetData(), nullptr);

    struct Megabyte {
        char bytes[1 << 20];
    };
    ZQArray<Megabyte> huge;
    EXPECT_EQ(huge.SetSize(1), S_OK);
    EXPECT_EQ(huge.SetSize(0x7FFFFFFF), E_OUTOFMEMORY) << "two petabytes";
    EXPECT_EQ(huge.GetMaxSize(), 16) << "a failed growth leaves the array as it was";
    EXPECT_NE(huge.GetData(), nullptr);
}

TEST(ZQArray, IndexChecksRemovalAndCopies) {
    ZQArray<unsigned int> a;
    for (unsigned int v : {10u, 20u, 30u, 20u})
        a.Add(v);
    EXPECT_EQ(a.SetAt(4, 1), E_INVALIDARG);
    EXPECT_EQ(a.SetAt(-1, 1), E_INVALIDARG);
    EXPECT_EQ(a.SetAt(3, 40), S_OK);
    EXPECT_EQ(a.GetAt(3), 40u);
    EXPECT_TRUE(a.Contains(10));
    EXPECT_EQ(a.IndexOf(30, 2, 0), -1) << "count 0 finds nothing even at start";
    EXPECT_EQ(a.IndexOf(30, 2, 1), 2);
    EXPECT_EQ(a.IndexOf(40, 1, 4), -1) << "a range past the end";
    EXPECT_EQ(ZQArray<unsigned int>().IndexOf(0), -1);
    EXPECT_EQ(a.Remove(4), E_INVALIDARG);
    EXPECT_EQ(a.Remove(3), S_OK) << "the last element: nothing moves";
    EXPECT_EQ(a.Remove(0), S_OK);
    EXPECT_EQ(std::vector<unsigned int>(a.GetData(), a.GetData() + a.GetSize()), (std::vector<unsigned int>{20, 30}));
    EXPECT_EQ(a.GetMaxSize(), 16) << "the allocation is kept";

    // Records are copied and compared by value.
    ZQArray<Mode> modes;
    modes.Add({640, 480, 60, D3DFMT_X8R8G8B8});
    modes.Add({1024, 768, 75, D3DFMT_R5G6B5});
    ZQArray<Mode> copy(modes), assigned;
    assigned.Add({1, 1, 1, D3DFMT_UNKNOWN});
    assigned = modes;
    assigned = assigned;
    for (ZQArray<Mode>* result : {&copy, &assigned}) {
        EXPECT_EQ(result->GetSize(), 2);
        EXPECT_NE(result->GetData(), modes.GetData());
        EXPECT_EQ(result->IndexOf({1024, 768, 75, D3DFMT_R5G6B5}), 1);
    }
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
