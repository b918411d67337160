// libFuzzer target: the parsing of ".OM" and ".TE" files, and the round trip through the writers.
#include "ZQPackedTexture.h"

#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace ZQ::formats;
    PackedFile file;
    if (ParseOm(data, size, file) == ParseResult::Ok) {
        if (file.records.size() * kOmRecordSizeV2 > size)
            std::abort(); // a record made from bytes the file does not have
        const std::vector<uint8_t> image(file.image, file.image + file.imageBytes);
        const std::vector<uint8_t> written = WriteOm(file, image);
        PackedFile again;
        if (ParseOm(written.data(), written.size(), again) != ParseResult::Ok ||
            again.records.size() != file.records.size() || again.imageBytes != image.size())
            std::abort();
    }
    if (ParseTe(data, size, file) == ParseResult::Ok) {
        if (file.records.size() * kTeRecordSizeNarrow > size)
            std::abort();
        const std::vector<uint8_t> image(file.image, file.image + file.imageBytes);
        const std::vector<uint8_t> written = WriteTe(file, image);
        PackedFile again;
        if (ParseTe(written.data(), written.size(), again) != ParseResult::Ok ||
            again.records.size() != file.records.size())
            std::abort();
    }
    for (unsigned long value = 0; value < 4; ++value)
        PackedLog2(size * 4 + value);
    return 0;
}
