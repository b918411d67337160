// Dialogs driven with the frame's mouse reports: events, pictures drawn and sounds played.
#include "dialog/DialogTestSupport.h"

#include <memory>
#include <type_traits>

using namespace dialogtest;

namespace {

// The six clickable controls. Added to an animation dialog with id 1 and 32 pixels square at a corner, the
// sprite forms show the test pictures (the check mark for the second), the animated forms play the
// animations of narrow.am, which draw "quad". Pixel-exact ones take "holed" (or another chunk) as their
// normal picture or mask. A radio button is the first of its group, so it starts selected.
enum class Kind { Button, CheckBox, Radio, AniButton, AniCheckBox, AniRadio };
const Kind kKinds[] = {Kind::Button, Kind::CheckBox, Kind::Radio, Kind::AniButton, Kind::AniCheckBox, Kind::AniRadio};
const char* const kNames[] = {"button", "check box", "radio button", "ani-button", "ani-check-box", "ani-radio"};

bool Animated(Kind kind) {
    return kind >= Kind::AniButton;
}
// Radio buttons have no sound, name or visibility setters.
template <typename Control>
constexpr bool kHasLooks =
    !std::is_same_v<Control, ZQ::ZQDialogRadioButton*> && !std::is_same_v<Control, ZQ::ZQDialogAniRadioButton*>;

// Without a mask normal names the sprite forms' normal picture; size 0 gives the animated forms no area.
void Add(ZQDialog& dialog, Kind kind, const D3DXVECTOR3& corner, const wchar_t* mask = nullptr,
         const wchar_t* normal = L"normal", float size = 32.0f, unsigned int id = 1) {
    D3DXVECTOR3 at = corner;
    ZQ::ZQRect rect(at.x, at.y, at.x + size, at.y + size);
    normal = mask ? mask : normal;
    switch (kind) {
    case Kind::Button:
        return dialog.AddButton(id, normal, L"pressed", L"over", L"disabled", at, mask != nullptr);
    case Kind::CheckBox:
        return dialog.AddCheckBox(id, normal, L"mark", L"over", L"disabled", at, mask != nullptr);
    case Kind::Radio:
        return dialog.AddRadioButton(id, 1, normal, L"pressed", L"over", L"disabled", at, false, mask != nullptr);
    case Kind::AniButton:
        return dialog.AddAniButton(id, L"blink", L"move", L"tinted", L"blink", rect, mask);
    case Kind::AniCheckBox:
        return dialog.AddAniCheckBox(id, L"blink", L"move", L"tinted", L"blink", rect, mask);
    case Kind::AniRadio:
        return dialog.AddAniRadioButton(id, 1, L"blink", L"move", L"tinted", L"blink", rect, false, mask);
    }
}

// Calls visit with the control of id 1 of that kind.
template <typename Visit> auto On(ZQDialog& dialog, Kind kind, Visit visit) {
    switch (kind) {
    case Kind::Button:
        return visit(dialog.GetButton(1));
    case Kind::CheckBox:
        return visit(dialog.GetCheckBox(1));
    case Kind::Radio:
        return visit(dialog.GetRadioButton(1));
    case Kind::AniButton:
        return visit(dialog.GetAniButton(1));
    case Kind::AniCheckBox:
        return visit(dialog.GetAniCheckBox(1));
    default:
        return visit(dialog.GetAniRadioButton(1));
    }
}

class DialogTest : public DialogFixture {
protected:
    // One mouse report: 'd' left down, 'u' left up, 'm' plain move, 'r' right down.
    void Report(ZQDialog& dialog, char kind, int x, int y) {
        dialog.OnMouse(kind == 'd' || kind == 'r', kind == 'd' || kind == 'u', kind == 'r', false, false, false, 0, x,
                       y, nullptr);
    }
    void Click(ZQDialog& dialog, int x, int y) {
        Report(dialog, 'd', x, y);
        Report(dialog, 'u', x, y);
    }
    // The colour the dialog shows at (x, y).
    D3DCOLOR Shown(ZQDialog& dialog, int x, int y, float elapsed = 0.0f) {
        BeginFrame();
        dialog.OnFrameRender(Device(), 0.0, elapsed, nullptr);
        EndFrame();
        return BackBufferPixel(x, y);
    }
    template <typename Control> void Draw(Control& control) {
        BeginFrame();
        control.OnFrameRender(Device(), 0.0, 0.05f, nullptr);
        EndFrame();
    }

    D3DXVECTOR3 at = D3DXVECTOR3(100.0f, 60.0f, 0.0f);
};

} // namespace

TEST_F(DialogTest, AClickableControlReportsAReleaseOverItWhereverThePressWas) {
    // What the sprite button, check box and radio button show at (116, 76) afterwards: the check box's
    // mark (opaque there) toggles at a press over it; the radio button, selected as the first of its
    // group, stays pressed and rests on its selected picture.
    struct Case {
        const char* name;
        std::vector<std::pair<char, POINT>> reports;
        size_t events;
        D3DCOLOR pictures[3];
    } cases[] = {
        {"press inside, move out, release outside",
         {{'d', {110, 70}}, {'m', {300, 200}}, {'u', {300, 200}}},
         0,
         {kRed, kYellow, kGreen}},
        {"press outside, move in, release inside",
         {{'d', {10, 10}}, {'m', {120, 80}}, {'u', {120, 80}}},
         1,
         {kBlue, kBlue, kGreen}},
        {"move over", {{'m', {131, 91}}}, 0, {kBlue, kBlue, kGreen}},
        {"press over", {{'m', {110, 70}}, {'d', {110, 70}}}, 0, {kGreen, kYellow, kGreen}},
        {"right button down", {{'m', {10, 10}}, {'r', {110, 70}}}, 0, {kRed, kRed, kGreen}},
    };
    for (Kind kind : kKinds)
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << kNames[int(kind)] << ": " << c.name);
            ZQDialog dialog(animate, sound, &recorder);
            Add(dialog, kind, at);
            recorder.events.clear();
            for (const auto& r : c.reports)
                Report(dialog, r.first, r.second.x, r.second.y);
            ASSERT_EQ(recorder.events.size(), c.events);
            if (c.events) {
                EXPECT_EQ(recorder.events[0].id, 1u);
                EXPECT_EQ(recorder.events[0].a, c.reports.back().second.x);
                EXPECT_EQ(recorder.events[0].b, c.reports.back().second.y);
            }
            EXPECT_TRUE(Animated(kind) || Near(Shown(dialog, 116, 76), c.pictures[int(kind)], 3));
            const bool marked = c.pictures[1] == kYellow; // toggled at the press
            EXPECT_TRUE(kind != Kind::AniCheckBox || dialog.GetAniCheckBox(1)->GetChecked() == marked);
        }
}

TEST_F(DialogTest, SoundsPlayOnEnteringEvenATransparentPixelAndOnPressingAnOpaqueOne) {
    // "holed" as the mask: transparent at (105, 70), opaque at (120, 70).
    for (Kind kind : kKinds) {
        if (kind == Kind::Radio || kind == Kind::AniRadio)
            continue;
        SCOPED_TRACE(kNames[int(kind)]);
        ZQDialog dialog(animate, sound, &recorder);
        Add(dialog, kind, at, L"holed");
        auto setSound = [&](const wchar_t* click, const wchar_t* over) {
            On(dialog, kind, [&](auto* control) {
                if constexpr (kHasLooks<decltype(control)>)
                    control->SetSound(click, over);
            });
        };
        sound->Stop();
        setSound(L"click", nullptr);
        Report(dialog, 'm', 120, 70);
        EXPECT_FALSE(sound->isPlay(L"hover")) << "no over sound set";
        Report(dialog, 'm', 0, 0);
        setSound(nullptr, L"hover");
        Report(dialog, 'm', 105, 70);
        EXPECT_TRUE(sound->isPlay(L"hover"));
        EXPECT_TRUE(Animated(kind) || Near(Shown(dialog, 120, 70), kRed, 3)) << "the picture stays normal";
        Report(dialog, 'd', 105, 70);
        EXPECT_FALSE(sound->isPlay(L"click"));
        Report(dialog, 'd', 120, 70);
        EXPECT_TRUE(sound->isPlay(L"click")) << "a null name keeps the sound set before";
        // Leaving and coming back while pressed plays no over sound; after the release the next entry does.
        Report(dialog, 'm', 300, 200);
        sound->Stop();
        Report(dialog, 'm', 120, 70);
        EXPECT_FALSE(sound->isPlay(L"hover"));
        Report(dialog, 'u', 300, 200);
        Report(dialog, 'm', 120, 70);
        EXPECT_TRUE(sound->isPlay(L"hover"));
    }
}

TEST_F(DialogTest, AHandlerMayDisableTheControlFromAnotherThreadAndADisabledOneIsSilentAndHalfAlpha) {
    // At (104, 76) enabled again, the sprite button and check box show normal (the mark is clear there),
    // the selected radio button selected.
    const D3DCOLOR enabled[3] = {kRed, kRed, kGreen};
    for (Kind kind : kKinds) {
        SCOPED_TRACE(kNames[int(kind)]);
        ZQDialog dialog(animate, sound, &recorder);
        Add(dialog, kind, at);
        // Found before the click: a lookup would wait for the dialog's lock, which the click holds.
        std::function<void()> disable = On(dialog, kind, [](auto* control) {
            return std::function<void()>([control] { control->SetDisable(true); });
        });
        DWORD waited = WAIT_FAILED;
        recorder.onEvent = [&](unsigned int) {
            HANDLE thread = CreateThread(
                nullptr, 0,
                [](void* f) -> DWORD {
                    (*static_cast<std::function<void()>*>(f))();
                    return 0;
                },
                &disable, 0, nullptr);
            waited = WaitForSingleObject(thread, 5000);
            CloseHandle(thread);
        };
        Click(dialog, 110, 70);
        EXPECT_EQ(waited, WAIT_OBJECT_0) << "the control's lock is released around OnEvent";
        recorder.onEvent = nullptr;
        const wchar_t* const second = kind == Kind::CheckBox ? L"mark" : L"pressed";
        On(dialog, kind, [&](auto* control) {
            if constexpr (kHasLooks<decltype(control)>)
                if (!Animated(kind))
                    control->SetSprite(L"normal", second, L"over", L"pressed");
            control->SetDisable(true);
        });
        recorder.events.clear();
        Click(dialog, 116, 76);
        EXPECT_TRUE(recorder.events.empty());
        if (Animated(kind))
            continue;
        EXPECT_TRUE(Near(Shown(dialog, 104, 76), kGrey, 4)) << "the second call changed nothing";
        dialog.SetDisable(false);
        EXPECT_TRUE(Near(Shown(dialog, 104, 76), enabled[int(kind)], 3));
    }
}

TEST_F(DialogTest, ACopyHasItsOwnLockMaskAndPlayerAndOutlivesItsOriginal) {
    for (Kind kind : kKinds) {
        SCOPED_TRACE(kNames[int(kind)]);
        auto dialog = std::make_unique<ZQDialog>(animate, sound, &recorder);
        auto silent = std::make_unique<ZQDialog>(animate, sound, &recorder);
        Add(*dialog, kind, at, L"holed");
        Add(*silent, kind, D3DXVECTOR3(200.0f, 100.0f, 0.0f));
        On(*dialog, kind, [&](auto* original) {
            using Control = std::remove_pointer_t<decltype(original)>;
            if constexpr (kHasLooks<Control*>)
                original->SetSound(L"click", nullptr);
            std::unique_ptr<Control> copy(new Control(*original));
            dialog.reset(); // the original, its mask and its player go
            *copy = *copy;
            Draw(*copy);
            EXPECT_GT(LitPixels(RECT{116, 60, 132, 92}), 0) << "the copy draws";
            recorder.events.clear();
            sound->Stop();
            for (int x : {105, 120}) { // a transparent pixel of the mask, then an opaque one
                copy->OnMouse(true, true, false, false, false, false, 0, x, 70, nullptr);
                copy->OnMouse(false, true, false, false, false, false, 0, x, 70, nullptr);
            }
            ASSERT_EQ(recorder.events.size(), 1u) << "the copy clicks through its own mask";
            EXPECT_EQ(recorder.events[0].a, 120);
            EXPECT_EQ(sound->isPlay(L"click"), kHasLooks<Control*>);

            // Assigned a control without sounds, it has none either: empty names are copied too.
            On(*silent, kind, [&](auto* other) {
                if constexpr (std::is_same_v<decltype(other), Control*>)
                    *copy = *other;
            });
            silent.reset();
            sound->Stop();
            copy->OnMouse(true, true, false, false, false, false, 0, 210, 110, nullptr);
            EXPECT_FALSE(sound->isPlay(L"click"));
            Draw(*copy);
            EXPECT_GT(LitPixels(RECT{200, 100, 232, 132}), 0) << "drawn where assigned";
        });
    }
}

TEST_F(DialogTest, RadioGroupsKeepOneSelection) {
    ZQDialog dialog(sprite, sound, &recorder);
    auto add = [&](unsigned int id, unsigned int group, float x, bool select = false) {
        D3DXVECTOR3 at(x, 10, 0);
        dialog.AddRadioButton(id, group, L"normal", L"pressed", L"over", L"disabled", at, select, false);
    };
    auto selected = [&] {
        std::string s;
        for (unsigned int id = 1; id <= 3; ++id)
            s += dialog.GetRadioButton(id)->GetSelect() ? '1' : '0';
        return s;
    };
    add(1, 5, 10);
    add(2, 5, 50);
    add(3, 5, 90);
    EXPECT_EQ(selected(), "100") << "a new group starts with its first member selected";
    add(4, 6, 130);
    Click(dialog, 60, 20);
    EXPECT_EQ(selected(), "010");
    EXPECT_TRUE(dialog.GetRadioButton(4)->GetSelect()) << "other groups are untouched";
    EXPECT_TRUE(Near(Shown(dialog, 66, 26), kGreen, 3));
    EXPECT_TRUE(Near(Shown(dialog, 26, 26), kRed, 3));

    // A disabled member is not selected by a click.
    dialog.GetRadioButton(1)->SetDisable(true);
    Click(dialog, 20, 20);
    EXPECT_EQ(selected(), "010");

    // SetSelect touches one member only; a later member added with select true becomes the only one.
    dialog.GetRadioButton(3)->SetSelect(true);
    EXPECT_EQ(selected(), "011");
    add(9, 5, 200, true);
    EXPECT_EQ(selected(), "000");
    EXPECT_TRUE(dialog.GetRadioButton(9)->GetSelect());
}

TEST_F(DialogTest, ContainerRules) {
    ZQDialog dialog(sprite, sound, &recorder);
    D3DXVECTOR3 p(10, 10, 0), q(60, 10, 0), r(110, 10, 0);
    dialog.AddCheckBox(2, L"pressed", L"mark", L"over", L"disabled", r, false);
    dialog.AddButton(1, L"normal", L"pressed", L"over", L"disabled", p, false);
    dialog.AddButton(1, L"over", L"pressed", L"over", L"disabled", q, false);
    dialog.AddButton(3, L"over", L"pressed", L"over", L"disabled", r, false);
    EXPECT_TRUE(Near(Shown(dialog, 120, 20), kGreen, 3)) << "check boxes are drawn after buttons";
    dialog.GetButton(1)->SetShow(false);
    EXPECT_TRUE(Near(Shown(dialog, 20, 20), kBlack, 3)) << "the first of two with one id";
    EXPECT_TRUE(Near(Shown(dialog, 70, 20), kBlue, 3));
    EXPECT_EQ(dialog.GetButton(99), nullptr);

    // Background pictures: index equal to the count changes nothing; disabling halves them for the draw.
    ZQDialog background(sprite, nullptr, nullptr);
    D3DXVECTOR3 corner(200, 150, 0);
    background.SetSprite(L"normal", corner, white);
    background.SetSprite(1u, L"over", corner, white);
    EXPECT_TRUE(Near(Shown(background, 210, 160), kRed, 3));
    background.SetSprite(0u, L"disabled", corner, white);
    background.SetDisable(true);
    EXPECT_TRUE(Near(Shown(background, 210, 160), kGrey, 4));
    background.SetDisable(false);
    EXPECT_TRUE(Near(Shown(background, 210, 160), kWhite, 3));
    background.SetVisible(false);
    EXPECT_TRUE(Near(Shown(background, 210, 160), kBlack, 3));
}

// Tab and Return through a host's window, wrapping and clicks are in the host tests.
TEST_F(DialogTest, EditBoxFocusMovesWithKeysEvenWhileInvisible) {
    ZQDialog dialog(sprite, sound, &recorder);
    for (unsigned int i = 0; i < 3; ++i) {
        ZQRect rect(0.0f, 30.0f * i, 50.0f, 30.0f * i + 20.0f);
        dialog.AddEditBox(i, nullptr, rect, white, 0);
    }
    auto focus = [&] {
        std::string s;
        for (unsigned int i = 0; i < 3; ++i)
            s += dialog.GetEditBox(i)->GetAcquire() ? '1' : '0';
        return s;
    };
    EXPECT_EQ(focus(), "100") << "the first box is acquired at once";
    dialog.OnKeyboard(VK_TAB, true, false, nullptr);
    EXPECT_STREQ(dialog.GetEditBox(0)->GetDisplay(), L"") << "the caret goes with the focus";
    dialog.OnKeyboard(VK_RETURN, false, false, nullptr);
    dialog.SetTab(false);
    dialog.OnKeyboard(VK_TAB, true, false, nullptr);
    EXPECT_EQ(focus(), "010") << "neither a key up nor Tab switched off moves it";
    dialog.SetVisible(false);
    dialog.OnKeyboard(VK_RETURN, true, false, nullptr);
    Click(dialog, 10, 40);
    EXPECT_EQ(focus(), "001") << "keys move the focus while invisible, the mouse does not";
    dialog.SetVisible(true);
    Click(dialog, 10, 40);
    EXPECT_EQ(focus(), "010");

    // The first of two boxes under the point takes the focus, unless the transparent pixel of a pixel-exact
    // radio button there has ended the routing of the release.
    ZQRect overlap(0.0f, 60.0f, 50.0f, 80.0f);
    dialog.AddEditBox(3, nullptr, overlap, white, 0);
    D3DXVECTOR3 holed(0, 50, 0);
    dialog.AddRadioButton(5, 1, L"holed", L"pressed", L"over", L"disabled", holed, false, true);
    Click(dialog, 10, 70);
    EXPECT_EQ(focus(), "010");
    Click(dialog, 20, 70);
    EXPECT_EQ(focus(), "001");
}

TEST_F(DialogTest, AnimationDialogsHoldAnimatedControls) {
    ZQDialog dialog(animate, sound, &recorder);
    EXPECT_EQ(dialog.GetSprite(), sprite) << "sprite controls draw with the animate's sprite";
    ZQ::ZQRect r1(100.0f, 60.0f, 132.0f, 92.0f), r2(150.0f, 60.0f, 182.0f, 92.0f), r3(200.0f, 60.0f, 232.0f, 92.0f);
    dialog.AddAniButton(1, L"blink", L"move", L"tinted", L"blink", r1, nullptr);
    dialog.AddAniRadioButton(2, 3, L"blink", L"move", L"tinted", L"blink", r2, false, nullptr);
    dialog.AddAniRadioButton(3, 3, L"blink", L"move", L"tinted", L"blink", r3, false, L"quad");
    dialog.AddAniCheckBox(4, L"blink", L"move", L"tinted", L"blink", r3, nullptr);
    D3DXVECTOR3 origin(0, 0, 0);
    dialog.SetAnimate(L"blink", origin, true, -1);
    Shown(dialog, 0, 0, 0.05f);
    EXPECT_GT(LitPixels(RECT{0, 0, 40, 40}), 0) << "the background player";
    bool selectedSeen = true, checkedSeen = false;
    recorder.onEvent = [&](unsigned int id) {
        if (id == 3)
            selectedSeen = dialog.GetAniRadioButton(3)->GetSelect();
        if (id == 4)
            checkedSeen = dialog.GetAniCheckBox(4)->GetChecked();
    };
    Click(dialog, 210, 70);
    EXPECT_FALSE(selectedSeen) << "the event comes before the group changes";
    EXPECT_TRUE(checkedSeen) << "a check box toggles at the press: its handler reads the new state";
    EXPECT_TRUE(dialog.GetAniRadioButton(3)->GetSelect());
    EXPECT_FALSE(dialog.GetAniRadioButton(2)->GetSelect());
    EXPECT_TRUE(dialog.GetAniCheckBox(4)->GetChecked()) << "the check box under the same point toggled";

    // A sprite dialog makes no animated controls and has no background player.
    ZQDialog plain(sprite, sound, &recorder);
    plain.AddAniButton(1, L"blink", L"move", L"tinted", L"blink", r1, nullptr);
    plain.SetAnimate(L"blink", origin, true, -1);
    EXPECT_EQ(plain.GetAniButton(1), nullptr);
    EXPECT_EQ(plain.GetAnimate(), nullptr);
}

TEST_F(DialogTest, AControlWhosePictureIsUnknownIsNeverHit) {
    // An unknown chunk leaves an all-zero hit rectangle, pixel-exact or not; so does an animated control
    // given no area. A radio button joins a group whose first member, selected, lies elsewhere.
    for (Kind kind : kKinds)
        for (const wchar_t* mask : {static_cast<const wchar_t*>(nullptr), L"missing"}) {
            SCOPED_TRACE(kNames[int(kind)]);
            ZQDialog dialog(animate, sound, &recorder);
            if (kind == Kind::Radio || kind == Kind::AniRadio)
                Add(dialog, kind, at, nullptr, L"normal", 32.0f, 2);
            if (Animated(kind))
                Add(dialog, kind, D3DXVECTOR3(0.0f, 0.0f, 0.0f), mask, nullptr, 0.0f);
            else
                Add(dialog, kind, D3DXVECTOR3(40.0f, 40.0f, 0.0f), mask, L"missing");
            recorder.events.clear();
            Report(dialog, 'm', 0, 0);
            Click(dialog, 0, 0);
            EXPECT_TRUE(recorder.events.empty());
            EXPECT_FALSE(On(dialog, kind, [](auto* control) {
                using Control = std::remove_pointer_t<decltype(control)>;
                if constexpr (std::is_same_v<Control, ZQ::ZQDialogCheckBox> ||
                              std::is_same_v<Control, ZQ::ZQDialogAniCheckBox>)
                    return control->GetChecked() || control->GetOvered();
                else if constexpr (kHasLooks<Control*>)
                    return control->GetOvered();
                else
                    return control->GetSelect();
            }));
            EXPECT_TRUE(kind != Kind::Radio || dialog.GetRadioButton(2)->GetSelect());
            EXPECT_TRUE(kind != Kind::AniRadio || dialog.GetAniRadioButton(2)->GetSelect());
        }
}

TEST_F(DialogTest, PixelExactControlsAreHitOnOpaquePixelsOfOwnAndSharedTexturesAtAnyPosition) {
    // "holed" has a texture of its own, 32 x 32 with its left half transparent; chunk_b of the packed file,
    // 32 x 16, lies in a shared atlas with a transparent border of 2 columns left, 4 right, 3 rows at the
    // top and 1 at the bottom. A mask lies at the truncated position: each click within the hit rectangle
    // hits exactly when it is on an opaque pixel counted from there.
    struct Mask {
        const wchar_t* chunk;
        D3DXVECTOR3 corner;
        RECT opaque, size;
    } masks[] = {
        {L"holed", {100.0f, 60.0f, 0}, {16, 0, 32, 32}, {0, 0, 32, 32}},
        {L"holed", {-0.5f, 40.0f, 0}, {16, 0, 32, 32}, {0, 0, 32, 32}},
        {L"holed", {40.0f, -0.5f, 0}, {16, 0, 32, 32}, {0, 0, 32, 32}},
        {L"holed", {-3.5f, -2.5f, 0}, {16, 0, 32, 32}, {0, 0, 32, 32}},
        {L"holed", {40.5f, 40.5f, 0}, {16, 0, 32, 32}, {0, 0, 32, 32}},
        {L"chunk_b", {200.0f, 100.0f, 0}, {2, 3, 28, 15}, {0, 0, 32, 16}},
    };
    for (Kind kind : kKinds)
        for (const Mask& m : masks) {
            const D3DXVECTOR3& p = m.corner;
            SCOPED_TRACE(testing::Message() << kNames[int(kind)] << ", " << m.chunk << " at " << p.x << ", " << p.y);
            ZQDialog dialog(animate, sound, &recorder);
            Add(dialog, kind, p, m.chunk);
            const int left = static_cast<int>(p.x), top = static_cast<int>(p.y);
            int opaque = 0, opaqueHits = 0, clearHits = 0;
            for (int y = top; y < top + m.size.bottom; ++y)
                for (int x = left; x < left + m.size.right; ++x) {
                    if (x < p.x || y < p.y || x > p.x + m.size.right || y > p.y + m.size.bottom)
                        continue; // off the hit rectangle
                    recorder.events.clear();
                    Click(dialog, x, y);
                    const POINT cell = {x - left, y - top};
                    const bool onOpaque = PtInRect(&m.opaque, cell);
                    opaque += onOpaque;
                    (onOpaque ? opaqueHits : clearHits) += static_cast<int>(recorder.events.size());
                }
            EXPECT_EQ(opaqueHits, opaque);
            EXPECT_EQ(clearHits, 0);
        }
}
