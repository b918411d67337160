// Registration and lookup in the name map with many names: 65,535 distinct names, 65,535 entries of
// one name, and ZQTexture::Trans of present names in a 3,000-chunk atlas.
//   name_map_bench ATLAS.te [ROUNDS]
#include "BenchSupport.h"

#include "src/formats/ZQPackedTexture.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

// Seconds to insert count entries named by name(i), the names made beforehand.
template <typename Name> double Register(int count, Name name) {
    std::vector<ZQ::ZQString> names;
    names.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        names.push_back(name(i));
    static int value;
    ZQ::ZQMapper map;
    const double start = bench::Now();
    for (ZQ::ZQString& text : names)
        map.insert(text, &value);
    return bench::Now() - start;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    const int rounds = bench::Count(argc, argv, 1, 5, "name_map_bench ATLAS.te [ROUNDS]");
    if (!rounds)
        return 2;

    std::vector<double> distinct, same;
    for (int round = 0; round < rounds; ++round) {
        distinct.push_back(Register(65535, [](int i) { return ZQ::ZQString(L"n%d", i); }));
        same.push_back(Register(65535, [](int) { return ZQ::ZQString(L"chunk"); }));
    }
    std::printf("ZQMapper::insert of 65,535 distinct names (n0 ... n65534): %.1f ms\n", bench::Median(distinct) * 1e3);
    std::printf("ZQMapper::insert of 65,535 entries of one name: %.1f ms\n", bench::Median(same) * 1e3);

    // The same names as the records of an atlas file (no image), registered by ZQTexture::Entry; two
    // sizes, to show how the cost grows.
    for (int count : {16384, 65535}) {
        ZQ::formats::PackedFile atlas;
        atlas.teTag = ZQ::formats::kTeTagNarrow;
        for (int i = 0; i < count; ++i) {
            ZQ::formats::PackedRecord record;
            record.narrowName = "n" + std::to_string(i);
            record.pixel[2] = record.pixel[3] = 1;
            atlas.records.push_back(record);
        }
        const std::vector<uint8_t> file = ZQ::formats::WriteTe(atlas, {});
        if (FILE* out = _wfopen(L"name_map_bench.te", L"wb")) {
            fwrite(file.data(), 1, file.size(), out);
            fclose(out);
        }
        double start = bench::Now();
        ZQ::formats::PackedFile parsed;
        ZQ::formats::ParseTe(file.data(), file.size(), parsed);
        const double parse = bench::Now() - start;
        ZQ::ZQTexture texture(nullptr);
        start = bench::Now();
        texture.Entry(L"name_map_bench.te");
        const double entry = bench::Now() - start;
        _wremove(L"name_map_bench.te");
        std::printf("ZQTexture::Entry of an atlas of %d records n0 ... (file read included): %.1f ms "
                    "(of which parsing alone %.1f ms)\n",
                    count, entry * 1e3, parse * 1e3);
    }

    // The atlas's chunks registered without a device (no textures), then every name looked up in turn.
    const std::vector<uint8_t> bytes = bench::ReadFile(argv[1]);
    ZQ::formats::PackedFile packed;
    if (ZQ::formats::ParseTe(bytes.data(), bytes.size(), packed) != ZQ::formats::ParseResult::Ok) {
        std::printf("not an atlas\n");
        return 1;
    }
    std::vector<std::wstring> names;
    for (const ZQ::formats::PackedRecord& record : packed.records)
        names.emplace_back(record.narrowName.begin(), record.narrowName.end());
    ZQ::ZQTexture texture(nullptr);
    texture.Entry(argv[1]);
    const int lookups = 3000000;
    std::vector<double> trans;
    size_t found = 0;
    for (int round = 0; round < rounds; ++round) {
        found = 0;
        const double start = bench::Now();
        for (int i = 0; i < lookups; ++i)
            found += texture.Trans(names[static_cast<size_t>(i) % names.size()].c_str()) != nullptr;
        trans.push_back(bench::Now() - start);
    }
    std::printf("ZQTexture::Trans of a present name, %zu-chunk atlas: %.0f ns (%zu of %d found)\n", names.size(),
                bench::Median(trans) / lookups * 1e9, found, lookups);
    return 0;
}
