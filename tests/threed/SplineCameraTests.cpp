#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using ZQ::_3D::_ZQ3DTcbSpline_tag;
using ZQ::_3D::ZQ3DCamera;
using ZQ::_3D::ZQ3DSpline;

namespace {

const D3DXVECTOR3 kPoints[] = {{0, 0, 0}, {1, 2, 0}, {3, 3, 1}, {4, 1, 2}, {6, 0, 0}};
const float kSpacing = 0.5f;

// The five points half a second apart, with Catmull-Rom's tension (0) or the default one.
ZQ3DSpline Path(bool catmullRom) {
    ZQ3DSpline spline;
    for (int i = 0; i < 5; ++i) {
        const float time = kSpacing * static_cast<float>(i);
        spline.push_back(catmullRom ? _ZQ3DTcbSpline_tag(kPoints[i], time, 0.0f)
                                    : _ZQ3DTcbSpline_tag(kPoints[i], time));
    }
    return spline;
}

// The cubic Hermite curve from p1 to p2 with tangents m1, m2, in doubles.
D3DXVECTOR3 Hermite(const D3DXVECTOR3& p1, const D3DXVECTOR3& m1, const D3DXVECTOR3& p2, const D3DXVECTOR3& m2,
                    double u) {
    const double h00 = 2 * u * u * u - 3 * u * u + 1, h10 = u * u * u - 2 * u * u + u;
    const double h01 = -2 * u * u * u + 3 * u * u, h11 = u * u * u - u * u;
    auto mix = [&](float a, float b, float c, float d) {
        return static_cast<float>(h00 * a + h10 * b + h01 * c + h11 * d);
    };
    return D3DXVECTOR3(mix(p1.x, m1.x, p2.x, m2.x), mix(p1.y, m1.y, p2.y, m2.y), mix(p1.z, m1.z, p2.z, m2.z));
}

void ExpectNear(const D3DXVECTOR3& a, const D3DXVECTOR3& b, float tolerance = 1e-5f) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

} // namespace

TEST(ZQ3DSpline, ReadyFromFourKeys) {
    ZQ3DSpline spline;
    for (int i = 1; i < 4; ++i)
        spline.push_back(_ZQ3DTcbSpline_tag(kPoints[i], static_cast<float>(i - 1)));
    EXPECT_FALSE(spline.isReady());
    ExpectNear(spline.GetPosition(0.5f), D3DXVECTOR3(0, 0, 0));
    spline.push_back(_ZQ3DTcbSpline_tag(kPoints[4], 3.0f));
    EXPECT_TRUE(spline.isReady());
    ExpectNear(spline.GetPosition(0.0f), kPoints[1]);
    // The bound is inclusive on purpose: the count itself passes; one past it does not.
    EXPECT_TRUE(spline.GetTable(-1) == nullptr && spline.GetTable(5) == nullptr && spline.GetTable(3) != nullptr);
    spline.clear();
    EXPECT_FALSE(spline.isReady());
}

TEST(ZQ3DSpline, CatmullRomTangentsOrTwiceThemByDefaultKeysHitAndEndsHeld) {
    for (bool catmullRom : {true, false}) {
        SCOPED_TRACE(catmullRom ? "Catmull-Rom" : "default tension");
        const ZQ3DSpline spline = Path(catmullRom);
        const float scale = catmullRom ? 0.5f : 1.0f;
        // Interior segment 1 (key 1 to key 2) and the last segment (its far neighbour is the end key).
        const D3DXVECTOR3 m1 = (kPoints[2] - kPoints[0]) * scale, m2 = (kPoints[3] - kPoints[1]) * scale;
        const D3DXVECTOR3 m3 = (kPoints[4] - kPoints[2]) * scale, m4 = (kPoints[4] - kPoints[3]) * 2.0f * scale;
        for (double u : {0.25, 0.5, 0.8}) {
            ExpectNear(spline.GetPosition(static_cast<float>((1 + u) * kSpacing)),
                       Hermite(kPoints[1], m1, kPoints[2], m2, u));
            ExpectNear(spline.GetPosition(static_cast<float>((3 + u) * kSpacing)),
                       Hermite(kPoints[3], m3, kPoints[4], m4, u));
        }
        for (int i = 0; i < 5; ++i)
            ExpectNear(spline.GetPosition(kSpacing * static_cast<float>(i)), kPoints[i]);
        ExpectNear(spline.GetPosition(-3.0f), kPoints[0]);
        ExpectNear(spline.GetPosition(100.0f), kPoints[4]);
        ZQ3DSpline copy(spline), assigned;
        assigned = spline;
        ExpectNear(copy.GetPosition(0.6f), spline.GetPosition(0.6f));
        ExpectNear(assigned.GetPosition(1.3f), spline.GetPosition(1.3f));
    }
}

// A long, irregular path built key by key answers as the TCB formulas say for every segment, at every
// length on the way: appending must leave each earlier segment as a whole recomputation would.
TEST(ZQ3DSpline, LongPathAppendedKeyByKeyMatchesTheFormulas) {
    std::vector<_ZQ3DTcbSpline_tag> keys;
    float time = 0.0f;
    for (int i = 0; i < 40; ++i) {
        time += 0.25f + 0.125f * static_cast<float>(i % 3);
        const D3DXVECTOR3 point(std::sin(0.7f * i) * 5.0f, std::cos(1.3f * i) * 3.0f, static_cast<float>(i % 4));
        keys.push_back(_ZQ3DTcbSpline_tag(point, time, 0.1f * static_cast<float>(i % 5) - 0.2f,
                                          0.15f * static_cast<float>(i % 3) - 0.15f, 0.1f * static_cast<float>(i % 2)));
    }
    // Tangents of segment i in doubles, from the key's neighbours (an end key stands in for its missing one).
    auto expected = [&](int count, int i, double u) {
        const _ZQ3DTcbSpline_tag &k0 = keys[i > 0 ? i - 1 : 0], &k1 = keys[i], &k2 = keys[i + 1];
        const _ZQ3DTcbSpline_tag& k3 = keys[i + 2 < count ? i + 2 : count - 1];
        const double s1 = (k2.time - k1.time) / static_cast<double>(k2.time - k0.time) * (1 - k1.tension);
        const double s2 = (k2.time - k1.time) / static_cast<double>(k3.time - k1.time) * (1 - k2.tension);
        const D3DXVECTOR3 d = k2.position - k1.position;
        const D3DXVECTOR3 ts =
            (k1.position - k0.position) * static_cast<float>(s1 * (1 + k1.continuity) * (1 + k1.bias)) +
            d * static_cast<float>(s1 * (1 - k1.continuity) * (1 - k1.bias));
        const D3DXVECTOR3 td =
            d * static_cast<float>(s2 * (1 - k2.continuity) * (1 + k2.bias)) +
            (k3.position - k2.position) * static_cast<float>(s2 * (1 + k2.continuity) * (1 - k2.bias));
        return Hermite(k1.position, ts, k2.position, td, u);
    };
    ZQ3DSpline spline;
    for (int count = 1; count <= static_cast<int>(keys.size()); ++count) {
        spline.push_back(keys[count - 1]);
        if (count < 4)
            continue;
        for (int i = 0; i + 1 < count; ++i) {
            const double u = 0.375;
            const float at = keys[i].time + static_cast<float>(u) * (keys[i + 1].time - keys[i].time);
            SCOPED_TRACE(testing::Message() << count << " keys, segment " << i);
            ExpectNear(spline.GetPosition(at), expected(count, i, u), 1e-4f);
        }
    }
}

// The library's lists hold 10,240 places: a longer path keeps its first 10,240 keys, and is still a path.
TEST(ZQ3DSpline, PathIsCutAtTheListCeiling) {
    ZQ3DSpline spline;
    for (int i = 0; i < 12000; ++i)
        spline.push_back(_ZQ3DTcbSpline_tag(D3DXVECTOR3(static_cast<float>(i), 0.0f, 0.0f), static_cast<float>(i)));
    EXPECT_EQ(spline.GetKeyCount(), 10240);
    ExpectNear(spline.GetPosition(5000.0f), D3DXVECTOR3(5000.0f, 0.0f, 0.0f));
    ExpectNear(spline.GetPosition(20000.0f), D3DXVECTOR3(10239.0f, 0.0f, 0.0f));
}

TEST(ZQ3DCamera, TurnsAreRelativeAndWrap) {
    const float twoPi = 6.2831854820251465f;
    ZQ3DCamera camera(nullptr);
    camera.SetYaw(1.0f);
    camera.SetYaw(1.0f);
    EXPECT_FLOAT_EQ(camera.GetYaw(), 2.0f);
    camera.SetYaw(-5.0f);
    EXPECT_NEAR(camera.GetYaw(), twoPi - 3.0f, 1e-6);
    camera.SetPitch(twoPi);
    EXPECT_EQ(camera.GetPitch(), 0.0f) << "2 pi becomes 0";
    camera.SetRoll(2.0f * twoPi);
    EXPECT_EQ(camera.GetRoll(), twoPi) << "4 pi stops at 2 pi";
    camera.SetYawPitchRoll(7.0f, 0.0f, 0.0f);
    EXPECT_FLOAT_EQ(camera.GetYaw(), 7.0f) << "set as given, not wrapped";
}

TEST(ZQ3DCamera, ViewMatrixAndMoves) {
    ZQ3DCamera camera(nullptr, D3DXVECTOR3(1.0f, 2.0f, 3.0f));
    D3DXMATRIX view, translation;
    camera.CalculateViewMatrix(&view);
    D3DXMatrixTranslation(&translation, -1.0f, -2.0f, -3.0f);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(view[i], translation[i], 1e-6f) << i;
    camera.SetMoveForward(2.0f);
    ExpectNear(camera.GetPosition(), D3DXVECTOR3(1.0f, 2.0f, 5.0f));

    camera.SetYawPitchRoll(D3DX_PI / 2, 0.0f, 0.0f);
    camera.CalculateViewMatrix(&view);
    camera.SetMoveForward(1.0f);
    ExpectNear(camera.GetPosition(), D3DXVECTOR3(2.0f, 2.0f, 5.0f)); // a quarter yaw looks along +x
    camera.SetMoveRight(1.0f);
    ExpectNear(camera.GetPosition(), D3DXVECTOR3(2.0f, 2.0f, 4.0f));
    camera.SetMoveUp(0.5f);
    ExpectNear(camera.GetPosition(), D3DXVECTOR3(2.0f, 2.5f, 4.0f));
}

TEST(ZQ3DCamera, BeginSceneFollowsAPathOfFourKeys) {
    ZQ3DCamera camera(nullptr, D3DXVECTOR3(9.0f, 9.0f, 9.0f));
    camera.push_back(_ZQ3DTcbSpline_tag(kPoints[0], 0.0f));
    camera.push_back(_ZQ3DTcbSpline_tag(kPoints[1], 1.0f));
    camera.push_back(_ZQ3DTcbSpline_tag(kPoints[2], 2.0f));
    camera.BeginScene(0.5f);
    ExpectNear(camera.GetPosition(), D3DXVECTOR3(9.0f, 9.0f, 9.0f)); // three keys: no path
    EXPECT_EQ(camera.GetTime(), 0.0f);

    camera.push_back(_ZQ3DTcbSpline_tag(kPoints[3], 3.0f));
    camera.BeginScene(1.5f);
    EXPECT_FLOAT_EQ(camera.GetTime(), 1.5f);
    ExpectNear(camera.GetPosition(), camera.ZQ3DSpline::GetPosition(1.5f));
    camera.SetAction(false);
    camera.BeginScene(1.0f);
    EXPECT_FLOAT_EQ(camera.GetTime(), 1.5f);
}
