#include "AnimationText.h"

#include "ToolText.h"

#include <cstdio>
#include <filesystem>

using namespace ZQ::formats;

namespace zqtools {

namespace {

const char* LayoutName(AnimationLayout layout) {
    switch (layout) {
    case AnimationLayout::AmNarrow:
        return "\"AMv2\" (56-byte scenes, 396-byte frames, single-byte names)";
    case AnimationLayout::AmWide:
        return "\"QXR_AM\" (88-byte scenes, 428-byte frames, UTF-16 names)";
    default:
        return "\"TETA\" (88-byte scenes, 692-byte frames, UTF-16 names)";
    }
}

// "N things declared, M present", and what the library keeps when its list would overflow.
std::string Counts(long long declared, size_t present, const char* things) {
    std::string text = std::to_string(declared) + " " + things + " declared";
    if (declared != static_cast<long long>(present) || static_cast<long long>(present) <= kLibraryListCeiling)
        text += ", " + std::to_string(present) + " present";
    if (static_cast<long long>(present) > kLibraryListCeiling)
        text += ", the library keeps " + std::to_string(kLibraryListCeiling);
    return text;
}

// The registered name where it differs from the stored one, and a lone '%'.
std::string NameNote(const std::string& stored) {
    const std::string warning = PercentWarning(stored);
    return warning.empty() ? "" : " (the name " + warning + ")";
}

} // namespace

AnimationKind AnimationKindByName(const std::string& path) {
    const std::string upper = UpperAscii(std::filesystem::path(path).filename().string());
    if (upper.find(".AM") != std::string::npos)
        return AnimationKind::Am;
    if (upper.find(".TA") != std::string::npos)
        return AnimationKind::Ta;
    if (upper.find(".SPL") != std::string::npos)
        return AnimationKind::Spl;
    return AnimationKind::Unknown;
}

AnimationKind AnimationKindOf(const std::string& path, const std::vector<uint8_t>& bytes) {
    const AnimationKind byName = AnimationKindByName(path);
    if (byName != AnimationKind::Unknown)
        return byName;
    AnimationFile probe;
    if (ParseAm(bytes.data(), bytes.size(), probe) == ParseResult::Ok)
        return AnimationKind::Am;
    if (ParseTa(bytes.data(), bytes.size(), probe) == ParseResult::Ok)
        return AnimationKind::Ta;
    return AnimationKind::Unknown;
}

std::string SceneName(const AnimationScene& scene) {
    return scene.wideName.empty() ? scene.narrowName : Utf8(scene.wideName);
}

std::string ChunkName(const AnimationFrame& frame) {
    return frame.wideChunk.empty() ? frame.narrowChunk : Utf8(frame.wideChunk);
}

bool ReadAnimation(const std::string& path, const std::vector<uint8_t>& bytes, AnimationKind kind,
                   AnimationFile& file) {
    const ParseResult result = kind == AnimationKind::Am ? ParseAm(bytes.data(), bytes.size(), file)
                                                         : ParseTa(bytes.data(), bytes.size(), file);
    if (result != ParseResult::Ok)
        std::printf("%s: the magic is not %s; the library drops this file\n", path.c_str(),
                    kind == AnimationKind::Am ? "\"AMv2\" or \"QXR_AM\"" : "\"TETA\"");
    return result == ParseResult::Ok;
}

int PrintAnimationFile(const std::string& path, const std::vector<uint8_t>& bytes, AnimationKind kind) {
    if (kind == AnimationKind::Spl) {
        SplineFile file;
        ParseSpline(bytes.data(), bytes.size(), file);
        std::printf("%s: spline paths (.SPL), words %u %u, %lld paths declared, %zu present\n", path.c_str(),
                    file.first, file.second, static_cast<long long>(file.declaredPaths), file.paths.size());
        for (const SplinePath& spline : file.paths) {
            const std::string name = Utf8(spline.name);
            std::printf("  path %s%s: total time %g, %s%s\n", name.c_str(), NameNote(name).c_str(), spline.time,
                        Counts(spline.declaredKeys, spline.keys.size(), "keys").c_str(),
                        spline.keys.size() < 4 ? " (fewer than 4: the library's spline stays at the origin)" : "");
            for (const SplineKey& key : spline.keys)
                std::printf("    time %-8g position %g %g %g  tension %g continuity %g bias %g\n", key.time,
                            key.position[0], key.position[1], key.position[2], key.tension, key.continuity, key.bias);
        }
        return 0;
    }
    if (kind == AnimationKind::Unknown) {
        std::printf("%s: not a file of a kind this tool knows (.AM, .TA, .SPL)\n", path.c_str());
        return 1;
    }
    AnimationFile file;
    if (!ReadAnimation(path, bytes, kind, file))
        return 1;
    std::printf("%s: animations (%s), %s, %lld scenes declared, %zu present\n", path.c_str(),
                kind == AnimationKind::Am ? ".AM" : ".TA", LayoutName(file.layout),
                static_cast<long long>(file.declaredScenes), file.scenes.size());
    for (const AnimationScene& scene : file.scenes) {
        const std::string name = SceneName(scene);
        std::printf("  scene %s%s: %s\n", name.c_str(), NameNote(name).c_str(),
                    Counts(scene.declaredFrames, scene.frames.size(), "frames").c_str());
        for (size_t i = 0; i < scene.frames.size(); ++i) {
            const AnimationFrame& f = scene.frames[i];
            std::printf("    %-3zu %-20s %8gs  anchor %d %d  end %d %d  place %d %d %d %d  colour %08X%s\n", i,
                        ChunkName(f).c_str(), f.duration, f.anchor[0], f.anchor[1], f.endAnchor[0], f.endAnchor[1],
                        f.placement[0], f.placement[1], f.placement[2], f.placement[3], f.colour,
                        f.placement[2] < f.placement[0] || f.placement[3] < f.placement[1] ? "  (mirrored)" : "");
        }
    }
    return 0;
}

} // namespace zqtools
