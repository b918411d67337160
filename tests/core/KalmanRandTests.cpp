#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <cstdlib>

using ZQ::ZQKalman;
using ZQ::ZQRand;

TEST(ZQKalman, UpdateRule) {
    ZQKalman filter(10.0, 1.0);
    EXPECT_DOUBLE_EQ(filter.Normal(20.0, 1.0), 15.0);
    EXPECT_DOUBLE_EQ(filter.GetSpread(), 2.0) << "the spread holds 1/P + 1/R";
    // The next call squares that sum: P = 4, R = 1, D = 5.
    EXPECT_DOUBLE_EQ(filter.Normal(0.0, 1.0), (4.0 * 0.0 + 1.0 * 15.0) / 5.0);
    EXPECT_DOUBLE_EQ(filter.GetSpread(), 5.0 / 4.0);

    ZQKalman zero(0.0, 0.0);
    EXPECT_EQ(zero.Normal(7.0, 0.0), 0.0) << "D = 0: the numerator itself";
    EXPECT_EQ(zero.GetSpread(), 0.0);

    ZQKalman certain(3.0, 0.0);
    EXPECT_DOUBLE_EQ(certain.Normal(9.0, 2.0), 3.0) << "no spread: the measurement has no weight";
    EXPECT_DOUBLE_EQ(certain.GetSpread(), 4.0) << "P x R = 0: D itself";
}

// Equal ends return without drawing; a span is measured from the first end, in either direction.
TEST(ZQRand, EqualEndsAndSpansFromTheFirstEnd) {
    std::srand(1);
    const int first = std::rand();
    std::srand(1);
    EXPECT_EQ(ZQRand(5, 5), 5);
    EXPECT_EQ(ZQRand(2.5f, 2.5f), 2.5f);
    EXPECT_EQ(std::rand(), first) << "rand() was not called";

    bool seenLow = false, seenHigh = false;
    for (int i = 0; i < 20000; ++i) {
        const int up = ZQRand(3, 7);
        ASSERT_GE(up, 3);
        ASSERT_LE(up, 7);
        const int reversed = ZQRand(10, 0);
        ASSERT_GE(reversed, 10);
        ASSERT_LE(reversed, 20);
        seenLow |= reversed == 10;
        seenHigh |= reversed == 20;
        const float f = ZQRand(1.0f, -1.0f);
        ASSERT_GE(f, 1.0f);
        ASSERT_LE(f, 3.0f);
    }
    EXPECT_TRUE(seenLow && seenHigh) << "both ends of an integer span are reached";
}
