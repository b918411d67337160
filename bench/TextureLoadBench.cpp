// Load time of a large atlas through ZQTexture::Entry, against decoding its embedded image alone
// with D3DX in the same run.
//   texture_load_bench ATLAS.te [ROUNDS]
#include "BenchSupport.h"

#include "src/formats/ZQPackedTexture.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

int wmain(int argc, wchar_t** argv) {
    bench::App app(argc, argv, 1, 5, "texture_load_bench ATLAS.te [ROUNDS]");
    const int rounds = app.count;
    IDirect3DDevice9* device = app.GetDevice();

    const std::vector<uint8_t> bytes = bench::ReadFile(argv[1]);
    ZQ::formats::PackedFile packed;
    if (ZQ::formats::ParseTe(bytes.data(), bytes.size(), packed) != ZQ::formats::ParseResult::Ok) {
        std::printf("not an atlas\n");
        return 1;
    }

    std::vector<double> entryTimes, decodeTimes, oneLevelTimes, copyTimes, recordTimes;
    // Entry; Entry without a device (the file, the records, their chunks and names); the image's decode
    // and copy alone. Entry and the decode alternate in order, so that neither always meets memory the
    // other has just freed.
    auto entry = [&] {
        const double start = bench::Now();
        ZQ::ZQTexture texture(device);
        texture.Entry(argv[1]);
        entryTimes.push_back(bench::Now() - start);
    };
    auto records = [&] {
        const double start = bench::Now();
        ZQ::ZQTexture texture(nullptr);
        texture.Entry(argv[1]);
        recordTimes.push_back(bench::Now() - start);
    };
    // The image decoded with its whole mip chain (D3DX_DEFAULT levels), or only its first level, as Entry
    // asks; times of the second go to oneLevel.
    auto decodeImage = [&](UINT levels, std::vector<double>& times) {
        D3DXIMAGE_INFO info;
        const double start = bench::Now();
        IDirect3DTexture9* texture = nullptr;
        D3DXCreateTextureFromFileInMemoryEx(device, packed.image, static_cast<UINT>(packed.imageBytes),
                                            static_cast<UINT>(packed.width), static_cast<UINT>(packed.height),
                                            levels, 0, D3DFMT_UNKNOWN, D3DPOOL_MANAGED, D3DX_DEFAULT, D3DX_DEFAULT,
                                            0, &info, nullptr, &texture);
        times.push_back(bench::Now() - start);
        return texture;
    };
    auto decodeAndCopy = [&] {
        if (IDirect3DTexture9* whole = decodeImage(D3DX_DEFAULT, decodeTimes))
            whole->Release();
        IDirect3DTexture9* texture = decodeImage(1, oneLevelTimes);
        double start = bench::Now();
        // The copy into the chunk's own texture that loading does after decoding, with its mip levels.
        D3DSURFACE_DESC desc = {};
        IDirect3DTexture9* copy = nullptr;
        IDirect3DSurface9 *from = nullptr, *to = nullptr;
        if (texture && SUCCEEDED(texture->GetLevelDesc(0, &desc)) &&
            SUCCEEDED(device->CreateTexture(desc.Width, desc.Height,
                                            ZQ::formats::PackedMipLevels(desc.Width, desc.Height), 0, desc.Format,
                                            D3DPOOL_MANAGED, &copy, nullptr)) &&
            SUCCEEDED(copy->GetSurfaceLevel(0, &to)) && SUCCEEDED(texture->GetSurfaceLevel(0, &from)))
            D3DXLoadSurfaceFromSurface(to, nullptr, nullptr, from, nullptr, nullptr, D3DX_DEFAULT, 0);
        copyTimes.push_back(bench::Now() - start);
        for (IUnknown* object : {static_cast<IUnknown*>(from), static_cast<IUnknown*>(to),
                                 static_cast<IUnknown*>(copy), static_cast<IUnknown*>(texture)})
            if (object)
                object->Release();
    };
    for (int round = 0; round < rounds; ++round) {
        if (round % 2) {
            decodeAndCopy();
            entry();
        } else {
            entry();
            decodeAndCopy();
        }
        records();
    }
    size_t chunks = 0;
    for (const ZQ::formats::PackedRecord& record : packed.records)
        chunks += record.narrowName.empty() ? 0 : 1;
    const double entryTime = bench::Median(entryTimes), decode = bench::Median(decodeTimes), copy = bench::Median(copyTimes);
    const double recordTime = bench::Median(recordTimes), oneLevel = bench::Median(oneLevelTimes);
    std::printf("atlas: %lld x %lld, %zu chunks, %zu bytes, %d rounds (medians)\n",
                static_cast<long long>(packed.width), static_cast<long long>(packed.height), chunks, bytes.size(),
                rounds);
    std::printf("ZQTexture::Entry          %8.1f ms\n", entryTime * 1000.0);
    std::printf("D3DX decode of the image  %8.1f ms (all mip levels)\n", decode * 1000.0);
    std::printf("ratio (Entry / decode)    %8.2f\n", entryTime / decode);
    std::printf("D3DX decode, one level    %8.1f ms (as Entry asks)\n", oneLevel * 1000.0);
    std::printf("ratio (Entry / one level) %8.2f\n", entryTime / oneLevel);
    std::printf("copy into a new texture   %8.1f ms\n", copy * 1000.0);
    std::printf("file, records, names      %8.1f ms (Entry without a device)\n", recordTime * 1000.0);
    std::printf("the rest of Entry         %8.1f ms\n", (entryTime - oneLevel - copy - recordTime) * 1000.0);
    return 0;
}
