// Expectations on rectangles, shared by the test programs.
#pragma once
#include <ZQVelisto.h>

#include <gtest/gtest.h>

inline void ExpectRect(const ZQ::ZQRect& r, float left, float top, float right, float bottom) {
    EXPECT_FLOAT_EQ(r.left, left);
    EXPECT_FLOAT_EQ(r.top, top);
    EXPECT_FLOAT_EQ(r.right, right);
    EXPECT_FLOAT_EQ(r.bottom, bottom);
}

inline void ExpectInts(const RECT& r, LONG left, LONG top, LONG right, LONG bottom) {
    EXPECT_EQ(r.left, left);
    EXPECT_EQ(r.top, top);
    EXPECT_EQ(r.right, right);
    EXPECT_EQ(r.bottom, bottom);
}
