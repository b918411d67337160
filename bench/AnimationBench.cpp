// Time per frame of 1,000 running ZQRenderMulti instances, against 1,000 plain ZQSprite::Render calls
// of the same chunks at the same places in the same run: the players' own overhead.
//   animation_bench ATLAS.te ANIMATIONS.am [FRAMES]
// The animations are scenes a000 to a099 of 8 frames of 0.05 s each (zqanim, see bench/run.sh).
#include "BenchSupport.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

const int kInstances = 1000, kScenes = 100, kFramesPerScene = 8;
const float kFrameSeconds = 0.05f, kElapsed = 1.0f / 60.0f;

struct Placement {
    int scene;
    D3DXVECTOR3 position;
};

} // namespace

int wmain(int argc, wchar_t** argv) {
    bench::App app(argc, argv, 2, 120, "animation_bench ATLAS.te ANIMATIONS.am [FRAMES]");
    const int frames = app.count;
    IDirect3DDevice9* device = app.GetDevice();
    ZQ::ZQSprite sprite(device);
    sprite.Entry(argv[1]);
    ZQ::ZQAnimate animate(&sprite);
    animate.Entry(argv[2]);
    ZQ::ZQRenderMulti multi(&animate);

    std::vector<Placement> placements;
    unsigned seed = 11;
    for (int i = 0; i < kInstances; ++i) {
        seed = seed * 1103515245u + 12345u;
        const float x = static_cast<float>((seed >> 8) % 600), y = static_cast<float>((seed >> 20) % 440);
        placements.push_back({i % kScenes, D3DXVECTOR3(x, y, 0.0f)});
        wchar_t name[8];
        _snwprintf(name, 8, L"a%03d", i % kScenes);
        if (!multi.Entry(name, placements.back().position, true, -1)) {
            std::printf("no scene %ls: make the animations with bench/run.sh\n", name);
            return 1;
        }
    }
    // The plain calls draw what the instances draw: the same chunk into the same rectangle.
    std::vector<wchar_t> names(static_cast<size_t>(kScenes * kFramesPerScene) * 8);
    std::vector<ZQ::ZQRect> sizes(static_cast<size_t>(kScenes * kFramesPerScene));
    for (int k = 0; k < kScenes * kFramesPerScene; ++k) {
        _snwprintf(&names[static_cast<size_t>(k) * 8], 8, L"s%05d", k);
        if (ZQ::_ZQTextureChunk_tag* chunk = sprite.Trans(&names[static_cast<size_t>(k) * 8]))
            sizes[static_cast<size_t>(k)] = ZQ::ZQRect(0.0f, 0.0f, chunk->pixel.width(), chunk->pixel.height());
    }
    D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);

    double players = 0.0, plain = 0.0, playersCpu = 0.0;
    float clock = 0.0f;
    for (int frame = 0; frame < frames; ++frame) {
        double start = bench::Now();
        device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0);
        device->BeginScene();
        const double cpuStart = bench::Now();
        multi.OnFrameRender(device, clock, kElapsed, nullptr);
        playersCpu += bench::Now() - cpuStart;
        device->EndScene();
        bench::Finish(device);
        players += bench::Now() - start;

        clock += kElapsed;
        const int current = static_cast<int>(clock / kFrameSeconds) % kFramesPerScene;
        start = bench::Now();
        device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0);
        device->BeginScene();
        for (const Placement& p : placements) {
            const int k = p.scene * kFramesPerScene + current;
            ZQ::ZQRect dest = sizes[static_cast<size_t>(k)];
            dest.left += p.position.x, dest.right += p.position.x;
            dest.top += p.position.y, dest.bottom += p.position.y;
            sprite.Render(&names[static_cast<size_t>(k) * 8], dest, 0.0f, white, 0);
        }
        device->EndScene();
        bench::Finish(device);
        plain += bench::Now() - start;
    }
    std::printf("%d frames, %d instances, 640 x 480 (milliseconds a frame, drawing finished)\n", frames, kInstances);
    std::printf("  ZQRenderMulti::OnFrameRender     %8.2f\n", players * 1000.0 / frames);
    std::printf("  ZQSprite::Render, same chunks    %8.2f\n", plain * 1000.0 / frames);
    std::printf("  overhead of the players          %7.1f %%\n", (players / plain - 1.0) * 100.0);
    std::printf("  OnFrameRender's call alone (CPU) %8.2f\n", playersCpu * 1000.0 / frames);
    return 0;
}
