// The passive and timed controls: text drawn through the controls' own textures, bars and gauges reporting,
// numbers drawn.
#include "dialog/DialogTestSupport.h"

#include <algorithm>

using namespace dialogtest;

namespace {

// The bounding box of the lit pixels inside r.
RECT LitBox(const RECT& r) {
    RECT box = {r.right, r.bottom, r.left, r.top};
    for (int y = r.top; y < r.bottom; ++y)
        for (int x = r.left; x < r.right; ++x)
            if ((BackBufferPixel(x, y) & 0xFFFFFF) != 0) {
                box.left = std::min<LONG>(box.left, x);
                box.top = std::min<LONG>(box.top, y);
                box.right = std::max<LONG>(box.right, x + 1);
                box.bottom = std::max<LONG>(box.bottom, y + 1);
            }
    return box;
}

// Pixels inside r that are mostly red.
int Reds(const RECT& r) {
    int count = 0;
    for (int y = r.top; y < r.bottom; ++y)
        for (int x = r.left; x < r.right; ++x)
            count += (BackBufferPixel(x, y) >> 16 & 0xFF) > 120 && (BackBufferPixel(x, y) >> 8 & 0xFF) < 60;
    return count;
}

class ControlTest : public DialogFixture {
protected:
    void Frame(ZQDialog& dialog) {
        dialog.OnFrameMove(Device(), 0.0, 0.0f, nullptr);
        BeginFrame();
        dialog.OnFrameRender(Device(), 0.0, 0.0f, nullptr);
        EndFrame();
    }
};

} // namespace

TEST_F(ControlTest, AStaticShowsItsTextAsBrightAsTheFontDrawsItAndItsShadowByTheSignOfItsOffset) {
    // A thin font: most of its pixels are partly covered, so coverage counted twice would show.
    ID3DXFont* thin = nullptr;
    ASSERT_EQ(D3DXCreateFontW(Device(), 14, 0, FW_NORMAL, 1, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                              ANTIALIASED_QUALITY, DEFAULT_PITCH, L"Arial", &thin),
              S_OK);
    RECT area = {60, 60, 260, 120}, direct = area, boxes[2];
    ZQRect label(60.0f, 60.0f, 260.0f, 120.0f);
    D3DXCOLOR red(1.0f, 0.0f, 0.0f, 1.0f);
    const DWORD format = DT_CENTER | DT_VCENTER | DT_SINGLELINE;
    auto brightness = [&area] {
        long sum = 0;
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x)
                sum += BackBufferPixel(x, y) >> 8 & 0xFF;
        return sum;
    };
    BeginFrame();
    thin->DrawTextW(nullptr, L"Score and time", -1, &direct, format, 0xFFFFFFFF);
    EndFrame();
    const long expected = brightness();
    for (int offset : {0, -2, 2}) {
        ZQDialog dialog(sprite, nullptr, &recorder);
        dialog.AddStatic(1, thin, L"Score and time", label, white, format);
        dialog.GetStatic(1)->SetShadow(offset, red);
        Frame(dialog);
        if (offset)
            boxes[offset > 0] = LitBox(area);
        else
            EXPECT_NEAR(brightness(), expected, expected / 5);
    }
    OffsetRect(&boxes[1], -2, -2);
    EXPECT_TRUE(EqualRect(&boxes[0], &boxes[1])) << "-2 puts the shadow to the left and up";
    thin->Release();
}

TEST_F(ControlTest, AListBoxTrimsInLargeStepsAndShowsTheNewestLineLast) {
    ZQDialog dialog(sprite, nullptr, &recorder);
    ZQRect log(10.0f, 10.0f, 210.0f, 70.0f), flat(10.0f, 100.0f, 210.0f, 110.0f);
    dialog.AddListBox(1, font, log);
    dialog.AddListBox(2, font, flat);
    ZQ::ZQDialogListBox* box = dialog.GetListBox(1);
    D3DXCOLOR green(0.0f, 1.0f, 0.0f, 1.0f), red(1.0f, 0.0f, 0.0f, 1.0f);
    for (int i = 0; i < 4000; ++i)
        box->SetText(std::to_wstring(i).c_str(), green);
    EXPECT_STREQ(box->GetText(3999), L"3999") << "4,000 lines are kept";
    box->SetText(L"WWWW", red);
    EXPECT_STREQ(box->GetText(0), L"3800") << "the newest 200 of the old lines";
    EXPECT_STREQ(box->GetText(199), L"3999");
    EXPECT_STREQ(box->GetText(200), L"WWWW");
    EXPECT_EQ(box->GetText(201), nullptr);

    dialog.GetListBox(2)->SetText(L"WWWW", red);
    Frame(dialog);
    EXPECT_GT(Reds(RECT{10, 50, 210, 70}), 50) << "the newest (red) line in the last of three bands";
    EXPECT_EQ(Reds(RECT{10, 10, 210, 50}), 0);
    EXPECT_GT(LitPixels(RECT{10, 10, 210, 30}), 20) << "older lines above it";
    EXPECT_EQ(LitPixels(RECT{10, 100, 210, 110}), 0) << "a box lower than a line shows none";

    box->Clear();
    EXPECT_EQ(box->GetText(0), nullptr);
    Frame(dialog);
    EXPECT_EQ(LitPixels(RECT{10, 10, 210, 70}), 0) << "Clear empties the picture too";
}

TEST_F(ControlTest, TimedControlsReportOnceOnTheFrameTheirTimeIsUp) {
    ZQDialog dialog(sprite, nullptr, &recorder);
    D3DXVECTOR3 barAt(20.0f, 20.0f, 0.0f);
    ZQRect path(20.0f, 100.0f, 220.0f, 140.0f);
    dialog.AddTimeBar(1, L"normal", barAt, 10.0f, 1);
    dialog.AddTimeGauge(2, L"marker", path, 3.0f);
    // 64 frames a second: every sum of frame times is exact, so the durations are reached on frames
    // 3 x 64 and 10 x 64, neither earlier nor later.
    const float step = 1.0f / 64.0f;
    std::vector<std::pair<unsigned int, int>> reports;
    int frame = 0;
    recorder.onEvent = [&](unsigned int id) { reports.push_back({id, frame}); };
    for (frame = 1; frame <= 700; ++frame)
        dialog.OnFrameMove(Device(), 0.0, step, nullptr);
    ASSERT_EQ(reports.size(), 2u) << "each reports once";
    EXPECT_EQ(reports[0], std::make_pair(2u, 192));
    EXPECT_EQ(reports[1], std::make_pair(1u, 640));
    EXPECT_EQ(dialog.GetTimeBar(1)->GetfElapsedTime(), 10.0f);
    EXPECT_EQ(dialog.GetTimeGauge(2)->Delta(), D3DXVECTOR3(220.0f, 140.0f, 0.0f));

    ZQ::ZQDialogTimeBar* bar = dialog.GetTimeBar(1);
    bar->Reset();
    bar->SetfElapsedTime(2.0f);
    bar->SetStep(-5.0f);
    EXPECT_EQ(bar->GetfElapsedTime(), 0.0f);
    bar->SetVisible(false);
    bar->SetfElapsedTime(9.99f);
    dialog.OnFrameMove(Device(), 0.0, 0.02f, nullptr);
    EXPECT_EQ(reports.size(), 3u) << "a hidden time bar runs on";
}

TEST_F(ControlTest, AGaugeReportsOnceUntilReset) {
    ZQDialog dialog(sprite, nullptr, &recorder);
    ZQRect path(20.0f, 100.0f, 220.0f, 100.0f);
    dialog.AddGauge(1, L"marker", path, 4.0f);
    dialog.AddGauge(2, L"marker", path, 0.0f);
    ZQ::ZQDialogGauge* gauge = dialog.GetGauge(1);
    ZQ::ZQDialogGauge* empty = dialog.GetGauge(2);
    auto frame = [&] { dialog.OnFrameMove(Device(), 0.0, 0.1f, nullptr); };
    frame();
    EXPECT_TRUE(recorder.events.empty()) << "a range of 0 reports nothing at 0";
    gauge->SetPos(4.0f);
    frame();
    frame();
    EXPECT_EQ(recorder.events.size(), 1u);
    gauge->SetPos(0.0f);
    frame();
    gauge->SetPos(4.0f);
    frame();
    EXPECT_EQ(recorder.events.size(), 1u) << "only Reset re-arms";
    gauge->Reset();
    gauge->SetDisable(true);
    gauge->SetPos(5.0f);
    frame();
    EXPECT_EQ(recorder.events.size(), 1u) << "a disabled gauge is frozen";
    gauge->SetDisable(false);
    gauge->SetVisible(false);
    frame();
    ASSERT_EQ(recorder.events.size(), 2u) << "a hidden one is not";
    EXPECT_EQ(gauge->GetPos(), 4.0f) << "clamped at the range";
    EXPECT_EQ(gauge->Delta().x, 220.0f);
    empty->SetPos(1.0f);
    frame();
    ASSERT_EQ(recorder.events.size(), 3u);
    EXPECT_EQ(recorder.events[2].id, 2u) << "a range of 0 reports any positive value at once";
    EXPECT_EQ(empty->GetPos(), 0.0f);
}

TEST_F(ControlTest, BarTipsFollowTheDirectionTable) {
    // A 32 x 32 bar at (100, 50), a quarter full.
    struct Case {
        unsigned long direction;
        float x, y;
    } cases[] = {{1, 108, 66}, {2, 124, 66}, {4, 116, 74}, {8, 116, 58}, {3, 108, 58}, {0, 108, 58}};
    for (const Case& c : cases) {
        ZQDialog dialog(sprite, nullptr, &recorder);
        D3DXVECTOR3 at(100.0f, 50.0f, 0.0f);
        dialog.AddProgress(1, L"normal", at, 4.0f, c.direction);
        dialog.GetProgress(1)->SetPos(1.0f);
        dialog.OnFrameMove(Device(), 0.0, 0.0f, nullptr);
        EXPECT_EQ(dialog.GetProgress(1)->Delta(), D3DXVECTOR3(c.x, c.y, 0.0f)) << "direction " << c.direction;
    }
}

TEST_F(ControlTest, AnAnimationDialogMovesAnAnimatedMarker) {
    ZQ::ZQSprite art(Device());
    art.Entry(Data(L"sprites.te").c_str());
    ZQ::ZQAnimate animate(&art);
    animate.Entry(Data(L"anim\\narrow.am").c_str());
    ZQRect path(20.0f, 100.0f, 220.0f, 100.0f);
    for (bool animated : {true, false}) {
        ZQDialog dialog = animated ? ZQDialog(&animate, nullptr, &recorder) : ZQDialog(&art, nullptr, &recorder);
        dialog.AddGauge(1, L"tinted", path, 2.0f);
        dialog.GetGauge(1)->SetPos(1.0f);
        Frame(dialog);
        EXPECT_EQ(dialog.GetGauge(1)->Delta().x, 120.0f);
        EXPECT_EQ(LitPixels(RECT{100, 80, 160, 140}) > 0, animated)
            << "the animation plays at the marker; a sprite gauge finds no chunk of that name";
    }
}

TEST_F(ControlTest, NumbersDrawEveryDigitWhereTheirAlignmentPutsThem) {
    // Digits are 8 pixels wide, without spacing.
    struct Case {
        unsigned long alignment;
        float x;
        int firstLeft; // -1: nothing drawn
    } cases[] = {{DT_LEFT, 10.0f, 10}, {DT_RIGHT, 170.0f, 10}, {DT_CENTER, 88.0f, 10}, {3, 10.0f, -1}};
    const char* const twenty = "18446744073709551615";
    for (const Case& c : cases) {
        ZQDialog dialog(sprite, nullptr, &recorder);
        D3DXVECTOR3 at(c.x, 100.0f, 0.0f);
        dialog.AddNumber(1, L"d", at, 0.0f, c.alignment);
        dialog.GetNumber(1)->Minus(1); // from 0: the largest number
        Frame(dialog);
        if (c.firstLeft < 0) {
            EXPECT_EQ(LitPixels(RECT{0, 100, 320, 108}), 0) << "alignment 3 draws nothing";
            continue;
        }
        // Centred on 88: half the first digit and the others' widths, halved: 78 to the left.
        for (int i = 0; i < 20; ++i)
            EXPECT_TRUE(Near(BackBufferPixel(c.firstLeft + 8 * i + 4, 104), kDigitColours[twenty[i] - '0'], 3))
                << "alignment " << c.alignment << ", digit " << i;
        EXPECT_EQ(LitPixels(RECT{c.firstLeft + 160, 100, 320, 108}), 0) << "twenty digits, no more";
    }
}
