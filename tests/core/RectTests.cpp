#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include "support/RectExpect.h"

using ZQ::ZQRect;

TEST(ZQRect, IntegerCopyTruncatesTowardZero) {
    ZQRect r(10.9f, -2.7f, 20.5f, 30.0f);
    ExpectInts(r.rect, 10, -2, 20, 30);

    const float edges[4] = {-0.5f, 1.5f, 2.99f, -3.99f};
    ExpectInts(ZQRect(edges).rect, 0, 1, 2, -3);

    D3DXFLOAT16 halves[4];
    const float source[4] = {1.5f, 2.0f, 100.25f, -8.0f};
    D3DXFloat32To16Array(halves, source, 4);
    ZQRect fromHalves(halves);
    ExpectRect(fromHalves, 1.5f, 2.0f, 100.25f, -8.0f);
    ExpectInts(fromHalves.rect, 1, 2, 100, -8);

    ZQRect fromInts(1, 2, 3, 4);
    ExpectRect(fromInts, 1, 2, 3, 4);
    RECT platform = {5, 6, 7, 8};
    fromInts = platform;
    ExpectRect(fromInts, 5, 6, 7, 8);
    ExpectInts(fromInts.rect, 5, 6, 7, 8);
}

TEST(ZQRect, CompoundArithmeticRefreshesTheCopy) {
    ZQRect r(0.0f, 0.0f, 10.0f, 20.0f);
    r += 0.5f;
    r -= 1.0f;
    ExpectInts(r.rect, 0, 0, 9, 19); // -0.5 truncates to 0
    r *= 2.0f;
    ExpectRect(r, -1.0f, -1.0f, 19.0f, 39.0f);

    ZQRect third(1.0f, 1.0f, 1.0f, 1.0f);
    third /= 3.0f;
    EXPECT_EQ(third.left, 1.0f * static_cast<float>(1.0 / 3.0)) << "a multiplication by the reciprocal";

    // x goes with left and right, y with top and bottom.
    ZQRect q(1.0f, 2.0f, 3.0f, 4.0f);
    const D3DXVECTOR2 v(2.0f, 3.0f);
    q *= v;
    ExpectRect(q, 2.0f, 6.0f, 6.0f, 12.0f);
    q += ZQRect(1.0f, 2.0f, 3.0f, 4.0f);
    ExpectInts(q.rect, 3, 8, 9, 16);
}

TEST(ZQRect, BinaryArithmeticAndEqualityLeaveTheCopyAlone) {
    ZQRect a(1.0f, 2.0f, 3.0f, 4.0f);
    ZQRect sum = a + D3DXVECTOR2(10.0f, 20.0f);
    ExpectRect(sum, 11.0f, 22.0f, 13.0f, 24.0f);
    ExpectInts(sum.rect, 0, 0, 0, 0);
    ExpectInts(*static_cast<RECT*>(sum), 11, 22, 13, 24);
    ExpectRect(a / D3DXVECTOR2(2.0f, 4.0f), 0.5f, 0.5f, 1.5f, 1.0f);
    ExpectRect(a * a, 1.0f, 4.0f, 9.0f, 16.0f);
    EXPECT_TRUE((a - a).isZero());

    ZQRect other = a;
    other.rect.left = 999;
    EXPECT_TRUE(other == a) << "the integer copy is not compared";
    const ZQRect& constant = other;
    EXPECT_EQ(static_cast<const RECT*>(constant)->left, 999) << "the const conversion returns the copy as stored";
    EXPECT_TRUE(ZQRect::lerp(a, ZQRect(0.0f, 0.0f, 1.0f, 1.0f), 0.5f) == a);
}

// Points on the edges are inside; rectangles overlap when a corner of one lies in the other.
TEST(ZQRect, OverlapIncludesTheEdgesAndGoesByCorners) {
    ZQRect r(0.0f, 0.0f, 100.0f, 50.0f);
    EXPECT_TRUE(r.isOverlap(100, 50));
    EXPECT_TRUE(r.isOverlap(0, 0));
    EXPECT_FALSE(r.isOverlap(101, 50));
    EXPECT_FALSE(r.isOverlap(100.01f, 25.0f));
    EXPECT_TRUE(r.isOverlap(D3DXVECTOR2(99.5f, 49.5f)));
    EXPECT_FALSE(r.isOverlap(D3DXVECTOR2(-0.5f, 10.0f)));

    const ZQRect horizontal(0.0f, 40.0f, 100.0f, 60.0f);
    const ZQRect vertical(40.0f, 0.0f, 60.0f, 100.0f);
    EXPECT_FALSE(horizontal.isOverlap(vertical)) << "a cross has no corner inside the other";
    EXPECT_FALSE(ZQRect::isOverlap(vertical, horizontal));

    const ZQRect a(0.0f, 0.0f, 10.0f, 10.0f);
    EXPECT_TRUE(a.isOverlap(ZQRect(10.0f, 10.0f, 20.0f, 20.0f))) << "touching corners overlap";
    EXPECT_FALSE(a.isOverlap(ZQRect(10.5f, 10.0f, 20.0f, 20.0f)));
    EXPECT_TRUE(a.isOverlap(ZQRect(2.0f, 2.0f, 4.0f, 4.0f))) << "b inside a";
    EXPECT_TRUE(ZQRect(2.0f, 2.0f, 4.0f, 4.0f).isOverlap(a)) << "a inside b";
    EXPECT_TRUE(a.isOverlap(ZQRect(-5.0f, 5.0f, 5.0f, 15.0f))) << "one corner of b in a";
    EXPECT_TRUE(a.isOverlap(ZQRect(5.0f, -5.0f, 15.0f, 5.0f)));
}
