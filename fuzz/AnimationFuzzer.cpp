// libFuzzer target: the parsing of ".AM", ".TA" and ".SPL" files, the bound of what they make by the
// bytes they hold, and the round trip through the writers.
#include "ZQAnimationFile.h"

#include <cstdlib>
#include <vector>

namespace {

using namespace ZQ::formats;

// Every scene and frame made must have come from bytes of the file.
void CheckAnimation(const AnimationFile& file, size_t size, bool (*parse)(const std::vector<uint8_t>&, AnimationFile&)) {
    size_t frames = 0;
    for (const AnimationScene& scene : file.scenes)
        frames += scene.frames.size();
    if (file.scenes.size() * kSceneSizeNarrow + frames * kFrameSizeAmNarrow > size)
        std::abort();
    AnimationFile again;
    const std::vector<uint8_t> written = WriteAnimation(file);
    if (!parse(written, again) || again.layout != file.layout || again.scenes.size() != file.scenes.size())
        std::abort();
    for (size_t i = 0; i < file.scenes.size(); ++i)
        // A name that fills its whole field loses its last character to the writer's terminator.
        if (again.scenes[i].frames.size() != file.scenes[i].frames.size() ||
            again.scenes[i].narrowName != file.scenes[i].narrowName.substr(0, kSceneNameBytesNarrow - 1) ||
            again.scenes[i].wideName != file.scenes[i].wideName.substr(0, kSceneNameBytesWide / 2 - 1))
            std::abort();
}

bool ParseAmBytes(const std::vector<uint8_t>& bytes, AnimationFile& file) {
    return ParseAm(bytes.data(), bytes.size(), file) == ParseResult::Ok;
}
bool ParseTaBytes(const std::vector<uint8_t>& bytes, AnimationFile& file) {
    return ParseTa(bytes.data(), bytes.size(), file) == ParseResult::Ok;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    AnimationFile file;
    if (ParseAm(data, size, file) == ParseResult::Ok)
        CheckAnimation(file, size, ParseAmBytes);
    if (ParseTa(data, size, file) == ParseResult::Ok)
        CheckAnimation(file, size, ParseTaBytes);

    SplineFile splines;
    ParseSpline(data, size, splines);
    size_t keys = 0;
    for (const SplinePath& path : splines.paths)
        keys += path.keys.size();
    if (splines.paths.size() * kSplinePathHeaderSize + keys * kSplineKeySize > size)
        std::abort();
    SplineFile again;
    const std::vector<uint8_t> written = WriteSpline(splines);
    ParseSpline(written.data(), written.size(), again);
    if (again.paths.size() != splines.paths.size() || again.first != splines.first || again.second != splines.second)
        std::abort();
    return 0;
}
