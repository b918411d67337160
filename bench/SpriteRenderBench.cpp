// Time per frame for 1,000 and 10,000 ZQSprite::Render calls, against drawing the same chunks with
// ID3DXSprite in the same run.
//   sprite_render_bench ATLAS.te [FRAMES]
#include "BenchSupport.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

struct Placement {
    std::wstring name;
    D3DXVECTOR3 position;
};

} // namespace

int wmain(int argc, wchar_t** argv) {
    bench::App app(argc, argv, 1, 20, "sprite_render_bench ATLAS.te [FRAMES]");
    IDirect3DDevice9* device = app.GetDevice();
    ZQ::ZQSprite sprite(device);
    sprite.Entry(argv[1]);
    ID3DXSprite* d3dxSprite = nullptr;
    if (FAILED(D3DXCreateSprite(device, &d3dxSprite)))
        return 1;

    std::vector<Placement> placements;
    unsigned seed = 7;
    for (int i = 0; i < 10000; ++i) {
        wchar_t name[16];
        _snwprintf(name, 16, L"s%05d", i % 3000);
        seed = seed * 1103515245u + 12345u;
        const float x = static_cast<float>((seed >> 8) % 600), y = static_cast<float>((seed >> 20) % 440);
        placements.push_back({name, D3DXVECTOR3(x, y, 0.0f)});
    }
    D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);

    const int frames = app.count;
    std::printf("%d frames each, 640 x 480 (milliseconds a frame, drawing finished)\n", frames);
    std::printf("%8s %14s %14s %8s\n", "sprites", "ZQSprite", "ID3DXSprite", "ratio");
    for (int count : {1000, 10000}) {
        double ours = 0.0, theirs = 0.0;
        for (int frame = 0; frame < frames; ++frame) {
            double start = bench::Now();
            device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0);
            device->BeginScene();
            for (int i = 0; i < count; ++i)
                sprite.Render(placements[static_cast<size_t>(i)].name.c_str(), placements[static_cast<size_t>(i)].position,
                              white, 0);
            device->EndScene();
            bench::Finish(device);
            ours += bench::Now() - start;

            start = bench::Now();
            device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0);
            device->BeginScene();
            d3dxSprite->Begin(D3DXSPRITE_ALPHABLEND);
            for (int i = 0; i < count; ++i) {
                ZQ::_ZQTextureChunk_tag* chunk = sprite.Trans(placements[static_cast<size_t>(i)].name.c_str());
                if (!chunk)
                    continue;
                const D3DXVECTOR3 centre(chunk->originX, chunk->originY, 0.0f);
                d3dxSprite->Draw(chunk->sharedTexture ? chunk->sharedTexture : chunk->texture, chunk->pixel,
                                 &centre, &placements[static_cast<size_t>(i)].position, 0xFFFFFFFF);
            }
            d3dxSprite->End();
            device->EndScene();
            bench::Finish(device);
            theirs += bench::Now() - start;
        }
        std::printf("%8d %14.2f %14.2f %8.1f\n", count, ours * 1000.0 / frames, theirs * 1000.0 / frames,
                    ours / theirs);
    }
    // Where the time of one Render goes: its parts alone, 10,000 times each, inside one scene.
    const int calls = 10000;
    ZQ::ZQRect dest(10.0f, 10.0f, 42.0f, 42.0f), tex(0.0f, 0.0f, 0.1f, 0.1f);
    D3DXVECTOR3 eye(0.0f, 0.0f, -2.41f), at(0.0f, 0.0f, 0.0f), up(0.0f, 1.0f, 0.0f);
    auto perCall = [&](auto&& part) {
        device->BeginScene();
        const double start = bench::Now();
        for (int i = 0; i < calls; ++i)
            part(i);
        device->EndScene();
        bench::Finish(device);
        return (bench::Now() - start) * 1e6 / calls;
    };
    const double lookup = perCall([&](int i) { sprite.Trans(placements[static_cast<size_t>(i)].name.c_str()); });
    const double fill = perCall([&](int) { sprite.Set(dest, tex, white); });
    const double camera = perCall([&](int) { sprite.Camera(eye, at, up); });
    const double whole = perCall([&](int i) {
        sprite.Render(placements[static_cast<size_t>(i)].name.c_str(), placements[static_cast<size_t>(i)].position,
                      white, 0);
    });
    std::printf("\nmicroseconds per Render call, and its parts alone:\n");
    std::printf("  whole Render                       %6.2f\n", whole);
    std::printf("  chunk lookup by name (Trans)       %6.2f\n", lookup);
    std::printf("  vertex fill and buffer lock (Set)  %6.2f\n", fill);
    std::printf("  camera: transforms, states, light  %6.2f\n", camera);
    std::printf("  the rest: blend states, material, texture, draw %6.2f\n", whole - lookup - fill - camera);
    d3dxSprite->Release();
    return 0;
}
