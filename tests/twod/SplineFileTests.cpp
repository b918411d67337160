#include "TextureTestSupport.h"

#include <gtest/gtest.h>

using namespace twodtest;
using ZQ::ZQSpline;

TEST(SplineFileTest, PathsByNameWithTheCallersWords) {
    ZQSpline paths(Data(L"anim\\paths.spl").c_str(), 7, 2);
    ZQ::_3D::ZQ3DSpline* arc = paths.GetSpline(L"ARC");
    ASSERT_NE(arc, nullptr);
    EXPECT_TRUE(arc->isReady());
    EXPECT_FLOAT_EQ(paths.GetTime(L"arc"), 4.0f);
    EXPECT_EQ(arc->GetPosition(2.0f), D3DXVECTOR3(20, 10, 0));
    const ZQ::_3D::_ZQ3DTcbSpline_tag* last = arc->GetTable(3);
    ASSERT_NE(last, nullptr);
    EXPECT_FLOAT_EQ(last->tension, 0.5f);
    EXPECT_FLOAT_EQ(last->continuity, 0.25f);
    EXPECT_FLOAT_EQ(last->bias, -0.5f);

    // Three keys: registered, but no curve until a fourth.
    ZQ::_3D::ZQ3DSpline* three = paths.GetSpline(L"three");
    ASSERT_NE(three, nullptr);
    EXPECT_FALSE(three->isReady());
    EXPECT_EQ(paths.Trans(L"three")->spline.GetKeyCount(), 3);

    for (const wchar_t* name : {L"missing", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_EQ(paths.GetSpline(name), nullptr);
        EXPECT_EQ(paths.GetTime(name), 0.0f);
        EXPECT_EQ(paths.Trans(name), nullptr);
    }
}

TEST(SplineFileTest, WhatIsIgnored) {
    struct Case {
        std::wstring file;
        WORD first, second;
        bool read;
    } cases[] = {
        {Data(L"anim\\paths.spl"), 2, 7, false}, // the words swapped
        {Data(L"anim\\swapped.spl"), 7, 2, false},
        {Data(L"anim\\swapped.spl"), 2, 7, true},
        {CopyData(L"anim\\paths.spl", L"anim\\paths.spl.old"), 7, 2, true}, // a substring test
        {CopyData(L"anim\\paths.spl", L"anim\\paths.bin"), 7, 2, false},
        {CopyData(L"anim\\paths.spl", L"anim\\none.spl", -1, 4, 0), 7, 2, false}, // count 2 -> 0
        {CopyData(L"anim\\paths.spl", L"anim\\huge.spl", 40, 7, 0x7F), 7, 2, false},
        {CopyData(L"anim\\paths.spl", L"anim\\cut.spl", 8 + 264 + 28 * 2 + 10), 7, 2, true},
        {Data(L"anim\\missing.spl"), 7, 2, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.file);
        ZQSpline paths(nullptr, 0, 0);
        paths.Entry(c.file.c_str(), c.first, c.second);
        EXPECT_EQ(paths.Trans(L"arc") != nullptr, c.read);
    }
    ZQSpline cut(Data(L"anim\\cut.spl").c_str(), 7, 2);
    EXPECT_EQ(cut.Trans(L"arc")->spline.GetKeyCount(), 2) << "the keys the bytes hold";
    EXPECT_EQ(cut.Trans(L"three"), nullptr);
}
