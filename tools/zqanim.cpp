// zqanim: writes, prints and previews the library's animation (".AM", ".TA") and spline-path (".SPL") files.
//
//   zqanim am [--wide] -o OUT.am MANIFEST        "AMv2" (single-byte names); --wide: "QXR_AM" (UTF-16 names)
//   zqanim ta -o OUT.ta MANIFEST                 "TETA" (UTF-16 names)
//   zqanim spl --words FIRST SECOND -o OUT.spl MANIFEST
//   zqanim print FILE...
//   zqanim preview [--atlas ATLAS] [-o DIR] FILE...
//
// The manifest format is described in kUsage below and in the README.
#include "ZQAnimationFile.h"
#include "ZQImage.h"
#include "ZQPackedTexture.h"
#include "ToolText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using namespace ZQ::formats;

namespace {

const char kUsage[] =
    "usage:\n"
    "  zqanim am [--wide] [--atlas ATLAS] -o OUT.am MANIFEST   \"AMv2\"; --wide: \"QXR_AM\" (UTF-16 names)\n"
    "  zqanim ta [--atlas ATLAS] -o OUT.ta MANIFEST            \"TETA\"\n"
    "  zqanim spl --words FIRST SECOND -o OUT.spl MANIFEST     spline paths\n"
    "  zqanim print FILE...                                    the files in readable form\n"
    "  zqanim preview [--atlas ATLAS] [-o DIR] FILE...         PNG strips of animations, plots of paths\n"
    "manifest lines ('#' starts a comment):\n"
    "  atlas FILE                       the .te/.om atlas the frames draw from (for default placements)\n"
    "  scene NAME                       starts an animation\n"
    "  frame CHUNK SECONDS [anchor X Y] [end X Y] [place L T R B] [colour AARRGGBB]\n"
    "                                   anchor 0 0, end = anchor, place = the chunk's size, colour FFFFFFFF\n"
    "  path NAME SECONDS                starts a spline path with its total time\n"
    "  key TIME X Y [Z] [tension T] [continuity C] [bias B]      (T, C, B 0 unless given)\n";

[[noreturn]] void Fail(const std::string& message) {
    std::fprintf(stderr, "zqanim: %s\n", message.c_str());
    std::exit(1);
}

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), ::toupper);
    return text;
}

// ---- Atlases: the chunks a preview draws and a manifest's default placements come from.

struct Chunk {
    std::string name; // upper case
    int left = 0, top = 0, right = 0, bottom = 0;
};

struct Atlas {
    std::vector<Chunk> chunks;
    zqtools::Image image;
    const Chunk* Find(const std::string& name) const {
        const std::string upper = Upper(name);
        for (const Chunk& chunk : chunks)
            if (chunk.name == upper)
                return &chunk;
        return nullptr; // the first of equal names wins, as in the library
    }
};

Atlas LoadAtlas(const std::string& path) {
    std::vector<uint8_t> bytes;
    if (!zqtools::ReadFile(path, bytes))
        Fail("cannot read " + path);
    PackedFile packed;
    const bool om = Upper(path).find(".OM") != std::string::npos;
    if ((om ? ParseOm(bytes.data(), bytes.size(), packed) : ParseTe(bytes.data(), bytes.size(), packed)) !=
        ParseResult::Ok)
        Fail(path + ": not an .om or .te file");
    Atlas atlas;
    for (const PackedRecord& record : packed.records)
        atlas.chunks.push_back({Upper(record.wideName ? Utf8(record.wideNameText) : record.narrowName),
                                record.pixel[0], record.pixel[1], record.pixel[2], record.pixel[3]});
    std::string error;
    if (!zqtools::DecodeImage(packed.image, packed.imageBytes, atlas.image, error))
        Fail(path + ": its image: " + error);
    return atlas;
}

// ---- Manifests.

struct Manifest {
    std::string atlas;
    std::vector<AnimationScene> scenes; // names and chunks in UTF-8 (narrowName, narrowChunk)
    std::vector<SplinePath> paths;
    std::vector<std::string> pathNames;
};

Manifest ReadManifest(const std::string& path, const std::string& atlasOption) {
    std::ifstream in(path);
    if (!in)
        Fail("cannot read " + path);
    Manifest manifest;
    manifest.atlas = atlasOption;
    std::vector<bool> placed; // per frame of the scenes, in order: given a place
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        const std::string where = path + ":" + std::to_string(number) + ": ";
        std::istringstream fields(line.substr(0, line.find('#')));
        std::string keyword;
        if (!(fields >> keyword))
            continue;
        auto numbers = [&](auto* values, int count, const char* what) {
            for (int i = 0; i < count; ++i)
                if (!(fields >> values[i]))
                    Fail(where + what + " needs " + std::to_string(count) + " numbers");
        };
        if (keyword == "atlas") {
            std::string file;
            fields >> file;
            if (manifest.atlas.empty())
                manifest.atlas = (fs::path(path).parent_path() / file).string();
        } else if (keyword == "scene") {
            AnimationScene scene;
            if (!(fields >> scene.narrowName))
                Fail(where + "a scene needs a name");
            manifest.scenes.push_back(scene);
        } else if (keyword == "frame") {
            if (manifest.scenes.empty())
                Fail(where + "a frame before any scene");
            AnimationFrame frame;
            frame.colour = 0xFFFFFFFF;
            if (!(fields >> frame.narrowChunk >> frame.duration))
                Fail(where + "a frame needs a chunk name and its seconds");
            bool hasEnd = false, hasPlace = false;
            std::string word;
            while (fields >> word) {
                if (word == "anchor")
                    numbers(frame.anchor, 2, "anchor");
                else if (word == "end")
                    numbers(frame.endAnchor, 2, "end"), hasEnd = true;
                else if (word == "place")
                    numbers(frame.placement, 4, "place"), hasPlace = true;
                else if (word == "colour" || word == "color") {
                    std::string hex;
                    fields >> hex;
                    char* end = nullptr;
                    frame.colour = static_cast<uint32_t>(std::strtoul(hex.c_str(), &end, 16));
                    if (hex.empty() || *end)
                        Fail(where + "colour takes AARRGGBB in hexadecimal");
                } else
                    Fail(where + "unknown frame field " + word);
            }
            if (!hasEnd)
                std::copy(frame.anchor, frame.anchor + 2, frame.endAnchor);
            manifest.scenes.back().frames.push_back(frame);
            placed.push_back(hasPlace);
        } else if (keyword == "path") {
            SplinePath spline;
            std::string name;
            if (!(fields >> name >> spline.time))
                Fail(where + "a path needs a name and its total time");
            spline.name = Utf16(name);
            manifest.paths.push_back(spline);
            manifest.pathNames.push_back(name);
        } else if (keyword == "key") {
            if (manifest.paths.empty())
                Fail(where + "a key before any path");
            SplineKey key;
            if (!(fields >> key.time >> key.position[0] >> key.position[1]))
                Fail(where + "a key needs its time, x and y");
            std::string word;
            while (fields >> word) {
                if (word == "tension")
                    numbers(&key.tension, 1, "tension");
                else if (word == "continuity")
                    numbers(&key.continuity, 1, "continuity");
                else if (word == "bias")
                    numbers(&key.bias, 1, "bias");
                else
                    key.position[2] = std::strtof(word.c_str(), nullptr);
            }
            manifest.paths.back().keys.push_back(key);
        } else {
            Fail(where + "unknown line " + keyword);
        }
    }
    // Frames without a place take their chunk's size from the atlas.
    size_t index = 0;
    Atlas atlas;
    bool atlasRead = false;
    for (AnimationScene& scene : manifest.scenes)
        for (AnimationFrame& frame : scene.frames) {
            if (placed[index++])
                continue;
            if (manifest.atlas.empty())
                Fail(path + ": frame " + frame.narrowChunk + " has no place and no atlas is given");
            if (!atlasRead)
                atlas = LoadAtlas(manifest.atlas), atlasRead = true;
            const Chunk* chunk = atlas.Find(frame.narrowChunk);
            if (!chunk)
                Fail(path + ": frame " + frame.narrowChunk + " has no place and the atlas has no such chunk");
            frame.placement[2] = chunk->right - chunk->left;
            frame.placement[3] = chunk->bottom - chunk->top;
        }
    return manifest;
}

void CheckLength(const std::string& what, size_t length, size_t limit) {
    if (length == 0 || length > limit)
        Fail("the name \"" + what + "\" must have 1 to " + std::to_string(limit) + " characters in this layout");
}

AnimationFile ToAnimation(const Manifest& manifest, AnimationLayout layout) {
    AnimationFile file;
    file.layout = layout;
    const bool wide = IsWide(layout);
    for (AnimationScene scene : manifest.scenes) {
        if (wide) {
            scene.wideName = Utf16(scene.narrowName);
            CheckLength(scene.narrowName, scene.wideName.size(), kSceneNameBytesWide / 2 - 1);
            scene.narrowName.clear();
        } else {
            CheckLength(scene.narrowName, scene.narrowName.size(), kSceneNameBytesNarrow - 1);
        }
        for (AnimationFrame& frame : scene.frames) {
            if (wide) {
                frame.wideChunk = Utf16(frame.narrowChunk);
                CheckLength(frame.narrowChunk, frame.wideChunk.size(), kChunkNameBytesWide / 2 - 1);
                frame.narrowChunk.clear();
            } else {
                CheckLength(frame.narrowChunk, frame.narrowChunk.size(), kChunkNameBytesNarrow - 1);
            }
        }
        file.scenes.push_back(scene);
    }
    return file;
}

// ---- Reading any of the three kinds.

enum class Kind { Am, Ta, Spl, Unknown };

Kind KindOf(const std::string& path, const std::vector<uint8_t>& bytes) {
    const std::string upper = Upper(fs::path(path).filename().string());
    if (upper.find(".AM") != std::string::npos)
        return Kind::Am;
    if (upper.find(".TA") != std::string::npos)
        return Kind::Ta;
    if (upper.find(".SPL") != std::string::npos)
        return Kind::Spl;
    AnimationFile probe;
    if (ParseAm(bytes.data(), bytes.size(), probe) == ParseResult::Ok)
        return Kind::Am;
    if (ParseTa(bytes.data(), bytes.size(), probe) == ParseResult::Ok)
        return Kind::Ta;
    return Kind::Unknown;
}

const char* LayoutName(AnimationLayout layout) {
    switch (layout) {
    case AnimationLayout::AmNarrow: return "\"AMv2\" (56-byte scenes, 396-byte frames, single-byte names)";
    case AnimationLayout::AmWide: return "\"QXR_AM\" (88-byte scenes, 428-byte frames, UTF-16 names)";
    default: return "\"TETA\" (88-byte scenes, 692-byte frames, UTF-16 names)";
    }
}

std::string SceneName(const AnimationScene& scene) {
    return scene.wideName.empty() ? scene.narrowName : Utf8(scene.wideName);
}
std::string ChunkName(const AnimationFrame& frame) {
    return frame.wideChunk.empty() ? frame.narrowChunk : Utf8(frame.wideChunk);
}

bool ReadAnimation(const std::string& path, const std::vector<uint8_t>& bytes, Kind kind, AnimationFile& file) {
    const ParseResult result = kind == Kind::Am ? ParseAm(bytes.data(), bytes.size(), file)
                                                : ParseTa(bytes.data(), bytes.size(), file);
    if (result != ParseResult::Ok)
        std::printf("%s: the magic is not %s; the library drops this file\n", path.c_str(),
                    kind == Kind::Am ? "\"AMv2\" or \"QXR_AM\"" : "\"TETA\"");
    return result == ParseResult::Ok;
}

int Print(const std::string& path) {
    std::vector<uint8_t> bytes;
    if (!zqtools::ReadFile(path, bytes))
        Fail("cannot read " + path);
    const Kind kind = KindOf(path, bytes);
    if (kind == Kind::Spl) {
        SplineFile file;
        ParseSpline(bytes.data(), bytes.size(), file);
        std::printf("%s: spline paths (.SPL), words %u %u, %lld paths declared, %zu present\n", path.c_str(),
                    file.first, file.second, static_cast<long long>(file.declaredPaths), file.paths.size());
        for (const SplinePath& spline : file.paths) {
            std::printf("  path %s: total time %g, %lld keys declared, %zu present%s\n", Utf8(spline.name).c_str(),
                        spline.time, static_cast<long long>(spline.declaredKeys), spline.keys.size(),
                        spline.keys.size() < 4 ? " (fewer than 4: the library's spline stays at the origin)" : "");
            for (const SplineKey& key : spline.keys)
                std::printf("    time %-8g position %g %g %g  tension %g continuity %g bias %g\n", key.time,
                            key.position[0], key.position[1], key.position[2], key.tension, key.continuity,
                            key.bias);
        }
        return 0;
    }
    if (kind == Kind::Unknown) {
        std::printf("%s: not a file of a kind this tool knows (.AM, .TA, .SPL)\n", path.c_str());
        return 1;
    }
    AnimationFile file;
    if (!ReadAnimation(path, bytes, kind, file))
        return 1;
    std::printf("%s: animations (%s), %s, %lld scenes declared, %zu present\n", path.c_str(),
                kind == Kind::Am ? ".AM" : ".TA", LayoutName(file.layout),
                static_cast<long long>(file.declaredScenes), file.scenes.size());
    for (const AnimationScene& scene : file.scenes) {
        std::printf("  scene %s: %lld frames declared, %zu present\n", SceneName(scene).c_str(),
                    static_cast<long long>(scene.declaredFrames), scene.frames.size());
        for (size_t i = 0; i < scene.frames.size(); ++i) {
            const AnimationFrame& f = scene.frames[i];
            std::printf("    %-3zu %-20s %8gs  anchor %d %d  end %d %d  place %d %d %d %d  colour %08X\n", i,
                        ChunkName(f).c_str(), f.duration, f.anchor[0], f.anchor[1], f.endAnchor[0], f.endAnchor[1],
                        f.placement[0], f.placement[1], f.placement[2], f.placement[3], f.colour);
        }
    }
    return 0;
}

// ---- Previews.

const int kMaxPreviewSide = 8192;

void Blend(zqtools::Image& image, int x, int y, const float rgba[4]) {
    if (x < 0 || y < 0 || x >= image.width || y >= image.height)
        return;
    uint8_t* p = image.Pixel(x, y);
    const float a = rgba[3];
    for (int c = 0; c < 3; ++c)
        p[c] = static_cast<uint8_t>(std::lround(rgba[c] * 255.0f * a + p[c] * (1.0f - a)));
    p[3] = 255;
}

void Dot(zqtools::Image& image, int x, int y, int radius, const float rgba[4]) {
    for (int dy = -radius; dy <= radius; ++dy)
        for (int dx = -radius; dx <= radius; ++dx)
            Blend(image, x + dx, y + dy, rgba);
}

void Line(zqtools::Image& image, float x0, float y0, float x1, float y1, const float rgba[4]) {
    const int steps = static_cast<int>(std::max(std::fabs(x1 - x0), std::fabs(y1 - y0))) + 1;
    if (steps > 4 * kMaxPreviewSide)
        return;
    for (int i = 0; i <= steps; ++i) {
        const float t = static_cast<float>(i) / static_cast<float>(steps);
        Blend(image, static_cast<int>(std::lround(x0 + (x1 - x0) * t)),
              static_cast<int>(std::lround(y0 + (y1 - y0) * t)), rgba);
    }
}

zqtools::Image Canvas(int width, int height) {
    zqtools::Image image;
    image.width = width;
    image.height = height;
    image.rgba.resize(static_cast<size_t>(width) * height * 4);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const uint8_t shade = ((x / 8 + y / 8) % 2) ? 200 : 232; // a checkerboard shows transparency
            uint8_t* p = image.Pixel(x, y);
            p[0] = p[1] = p[2] = shade;
            p[3] = 255;
        }
    return image;
}

std::string FileSafe(std::string name) {
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '-' && c != '_')
            c = '_';
    return name;
}

// One cell per frame, left to right: each frame drawn as the library would at scale 1 with the scene
// standing at the cell's anchor point (the red cross), its chunk stretched into its placement and
// multiplied by its colour. A chunk the atlas lacks is outlined in magenta (the library draws nothing).
void PreviewScene(const AnimationScene& scene, const Atlas& atlas, const std::string& output) {
    if (scene.frames.empty()) {
        std::printf("  %s: no frames, no preview\n", SceneName(scene).c_str());
        return;
    }
    long long minX = 0, minY = 0, maxX = 1, maxY = 1;
    for (const AnimationFrame& f : scene.frames) {
        minX = std::min<long long>(minX, static_cast<long long>(f.placement[0]) - f.anchor[0]);
        minY = std::min<long long>(minY, static_cast<long long>(f.placement[1]) - f.anchor[1]);
        maxX = std::max<long long>(maxX, static_cast<long long>(f.placement[2]) - f.anchor[0]);
        maxY = std::max<long long>(maxY, static_cast<long long>(f.placement[3]) - f.anchor[1]);
    }
    const long long cellWidth = maxX - minX + 8, cellHeight = maxY - minY + 8;
    const long long frames = static_cast<long long>(scene.frames.size());
    if (cellHeight > kMaxPreviewSide || cellWidth * frames > kMaxPreviewSide) {
        std::printf("  %s: %lld frames of %lld x %lld pixels make too large a strip; no preview\n",
                    SceneName(scene).c_str(), frames, cellWidth, cellHeight);
        return;
    }
    zqtools::Image strip = Canvas(static_cast<int>(cellWidth * frames), static_cast<int>(cellHeight));
    const float separator[4] = {0.3f, 0.3f, 0.3f, 1.0f}, cross[4] = {0.9f, 0.1f, 0.1f, 1.0f},
                missing[4] = {1.0f, 0.0f, 1.0f, 1.0f};
    for (long long i = 0; i < frames; ++i) {
        const AnimationFrame& f = scene.frames[static_cast<size_t>(i)];
        const float originX = static_cast<float>(i * cellWidth - minX + 4), originY = static_cast<float>(-minY + 4);
        const float left = originX + static_cast<float>(f.placement[0] - f.anchor[0]);
        const float top = originY + static_cast<float>(f.placement[1] - f.anchor[1]);
        const float width = static_cast<float>(f.placement[2] - f.placement[0]);
        const float height = static_cast<float>(f.placement[3] - f.placement[1]);
        const Chunk* chunk = atlas.Find(ChunkName(f));
        if (chunk && width > 0 && height > 0) {
            const float colour[4] = {(f.colour >> 16 & 0xFF) / 255.0f, (f.colour >> 8 & 0xFF) / 255.0f,
                                     (f.colour & 0xFF) / 255.0f, (f.colour >> 24) / 255.0f};
            for (int y = 0; y < static_cast<int>(height); ++y)
                for (int x = 0; x < static_cast<int>(width); ++x) {
                    const int sx = chunk->left + static_cast<int>((x + 0.5f) / width * (chunk->right - chunk->left));
                    const int sy = chunk->top + static_cast<int>((y + 0.5f) / height * (chunk->bottom - chunk->top));
                    if (sx < 0 || sy < 0 || sx >= atlas.image.width || sy >= atlas.image.height)
                        continue;
                    const uint8_t* s = atlas.image.Pixel(sx, sy);
                    const float pixel[4] = {s[0] / 255.0f * colour[0], s[1] / 255.0f * colour[1],
                                            s[2] / 255.0f * colour[2], s[3] / 255.0f * colour[3]};
                    Blend(strip, static_cast<int>(left) + x, static_cast<int>(top) + y, pixel);
                }
        } else if (!chunk) {
            Line(strip, left, top, left + width, top, missing);
            Line(strip, left, top + height, left + width, top + height, missing);
            Line(strip, left, top, left, top + height, missing);
            Line(strip, left + width, top, left + width, top + height, missing);
        }
        Line(strip, originX - 3, originY, originX + 3, originY, cross);
        Line(strip, originX, originY - 3, originX, originY + 3, cross);
        if (i > 0)
            Line(strip, static_cast<float>(i * cellWidth), 0, static_cast<float>(i * cellWidth),
                 static_cast<float>(cellHeight - 1), separator);
    }
    if (!zqtools::WriteFile(output, zqtools::EncodePng(strip)))
        Fail("cannot write " + output);
    std::printf("  %s: %lld frames -> %s\n", SceneName(scene).c_str(), frames, output.c_str());
}

// The TCB spline as the library evaluates it (Hermite segments from tension, continuity and bias).
struct Vec {
    float x, y;
};

Vec SplineAt(const std::vector<SplineKey>& keys, float time) {
    const int n = static_cast<int>(keys.size());
    auto at = [&](int i) { return Vec{keys[static_cast<size_t>(i)].position[0], keys[static_cast<size_t>(i)].position[1]}; };
    int segment = 0;
    float local = 0.0f;
    if (time <= keys.front().time) {
        segment = 0;
    } else if (time >= keys.back().time) {
        segment = n - 2;
        local = keys[static_cast<size_t>(n - 1)].time - keys[static_cast<size_t>(n - 2)].time;
    } else {
        int k = 1;
        while (k < n && keys[static_cast<size_t>(k)].time <= time)
            ++k;
        segment = k - 1;
        local = time - keys[static_cast<size_t>(segment)].time;
    }
    const int p0 = std::max(segment - 1, 0), p1 = segment, p2 = segment + 1, p3 = std::min(segment + 2, n - 1);
    const SplineKey &k0 = keys[static_cast<size_t>(p0)], &k1 = keys[static_cast<size_t>(p1)],
                    &k2 = keys[static_cast<size_t>(p2)], &k3 = keys[static_cast<size_t>(p3)];
    const Vec P0 = at(p0), P1 = at(p1), P2 = at(p2), P3 = at(p3);
    const Vec d = {P2.x - P1.x, P2.y - P1.y};
    const float s1 = (k2.time - k1.time) / (k2.time - k0.time) * (1 - k1.tension);
    const float s2 = (k2.time - k1.time) / (k3.time - k1.time) * (1 - k2.tension);
    const float a1 = s1 * (1 + k1.continuity) * (1 + k1.bias), b1 = s1 * (1 - k1.continuity) * (1 - k1.bias);
    const float a2 = s2 * (1 - k2.continuity) * (1 + k2.bias), b2 = s2 * (1 + k2.continuity) * (1 - k2.bias);
    const Vec ts = {a1 * (P1.x - P0.x) + b1 * d.x, a1 * (P1.y - P0.y) + b1 * d.y};
    const Vec td = {a2 * d.x + b2 * (P3.x - P2.x), a2 * d.y + b2 * (P3.y - P2.y)};
    const float u = local / (k2.time - k1.time);
    auto component = [&](float A, float D, float TS, float TD) {
        const float C = 3 * D - 2 * TS - TD, E = -2 * D + TS + TD;
        return A + u * (TS + u * (C + E * u));
    };
    return {component(P1.x, d.x, ts.x, td.x), component(P1.y, d.y, ts.y, td.y)};
}

// The curve in blue over its whole time, the keys as red squares (the first green), y down as on screen.
void PreviewPath(const SplinePath& spline, const std::string& output) {
    const std::string name = Utf8(spline.name);
    if (spline.keys.size() < 4) {
        std::printf("  %s: %zu keys (fewer than 4: no curve), no plot\n", name.c_str(), spline.keys.size());
        return;
    }
    const int samples = 2000;
    std::vector<Vec> points;
    const float start = spline.keys.front().time, end = spline.keys.back().time;
    for (int i = 0; i <= samples; ++i)
        points.push_back(SplineAt(spline.keys, start + (end - start) * static_cast<float>(i) / samples));
    float minX = points[0].x, maxX = minX, minY = points[0].y, maxY = minY;
    for (const Vec& p : points) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y)) {
            std::printf("  %s: the curve is not finite (keys with equal times?), no plot\n", name.c_str());
            return;
        }
        minX = std::min(minX, p.x), maxX = std::max(maxX, p.x), minY = std::min(minY, p.y), maxY = std::max(maxY, p.y);
    }
    for (const SplineKey& k : spline.keys)
        minX = std::min(minX, k.position[0]), maxX = std::max(maxX, k.position[0]),
        minY = std::min(minY, k.position[1]), maxY = std::max(maxY, k.position[1]);
    const float side = 480.0f, margin = 16.0f;
    const float scale = side / std::max({maxX - minX, maxY - minY, 1.0f});
    zqtools::Image plot = Canvas(static_cast<int>((maxX - minX) * scale + 2 * margin) + 1,
                                 static_cast<int>((maxY - minY) * scale + 2 * margin) + 1);
    auto X = [&](float x) { return (x - minX) * scale + margin; };
    auto Y = [&](float y) { return (y - minY) * scale + margin; };
    const float blue[4] = {0.1f, 0.3f, 0.9f, 1.0f}, red[4] = {0.9f, 0.1f, 0.1f, 1.0f}, green[4] = {0.1f, 0.7f, 0.2f, 1.0f};
    for (size_t i = 1; i < points.size(); ++i)
        Line(plot, X(points[i - 1].x), Y(points[i - 1].y), X(points[i].x), Y(points[i].y), blue);
    for (size_t i = 0; i < spline.keys.size(); ++i)
        Dot(plot, static_cast<int>(X(spline.keys[i].position[0])), static_cast<int>(Y(spline.keys[i].position[1])), 3,
            i == 0 ? green : red);
    if (!zqtools::WriteFile(output, zqtools::EncodePng(plot)))
        Fail("cannot write " + output);
    std::printf("  %s: %zu keys over %g -> %s\n", name.c_str(), spline.keys.size(), spline.time, output.c_str());
}

int Preview(const std::string& path, const std::string& atlasPath, const std::string& directory) {
    std::vector<uint8_t> bytes;
    if (!zqtools::ReadFile(path, bytes))
        Fail("cannot read " + path);
    const Kind kind = KindOf(path, bytes);
    const std::string stem = (fs::path(directory) / fs::path(path).filename()).string();
    if (kind == Kind::Spl) {
        SplineFile file;
        ParseSpline(bytes.data(), bytes.size(), file);
        std::printf("%s:\n", path.c_str());
        for (const SplinePath& spline : file.paths)
            PreviewPath(spline, stem + "-" + FileSafe(Utf8(spline.name)) + ".png");
        return 0;
    }
    AnimationFile file;
    if (kind == Kind::Unknown || !ReadAnimation(path, bytes, kind, file))
        return 1;
    if (atlasPath.empty())
        Fail("a preview of " + path + " needs the atlas it draws from (--atlas)");
    const Atlas atlas = LoadAtlas(atlasPath);
    std::printf("%s:\n", path.c_str());
    for (const AnimationScene& scene : file.scenes)
        PreviewScene(scene, atlas, stem + "-" + FileSafe(SceneName(scene)) + ".png");
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    const std::string command = argv[1];
    if (command == "--help" || command == "-h") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    std::string output, atlas, directory = ".";
    bool wide = false, haveWords = false;
    unsigned long words[2] = {0, 0};
    std::vector<std::string> inputs;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&]() -> std::string {
            if (i + 1 >= argc)
                Fail(arg + " needs a value");
            return argv[++i];
        };
        if (arg == "-o")
            (command == "preview" ? directory : output) = value();
        else if (arg == "--atlas")
            atlas = value();
        else if (arg == "--wide")
            wide = true;
        else if (arg == "--words") {
            words[0] = std::strtoul(value().c_str(), nullptr, 0);
            words[1] = std::strtoul(value().c_str(), nullptr, 0);
            if (words[0] > 0xFFFF || words[1] > 0xFFFF)
                Fail("the words are 16-bit values");
            haveWords = true;
        } else if (arg == "--help" || arg == "-h") {
            std::fputs(kUsage, stdout);
            return 0;
        } else if (!arg.empty() && arg[0] == '-')
            Fail("unknown option " + arg);
        else
            inputs.push_back(arg);
    }
    if (command == "print" || command == "preview") {
        if (inputs.empty())
            Fail("no files given");
        int failures = 0;
        if (command == "preview")
            fs::create_directories(directory);
        for (const std::string& input : inputs)
            failures += command == "print" ? Print(input) : Preview(input, atlas, directory);
        return failures ? 1 : 0;
    }
    if ((command != "am" && command != "ta" && command != "spl") || output.empty() || inputs.size() != 1) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    const Manifest manifest = ReadManifest(inputs[0], atlas);
    std::vector<uint8_t> bytes;
    if (command == "spl") {
        if (!haveWords)
            Fail("spl needs the two identification words its readers expect (--words FIRST SECOND)");
        SplineFile file;
        file.first = static_cast<uint16_t>(words[0]);
        file.second = static_cast<uint16_t>(words[1]);
        file.paths = manifest.paths;
        for (size_t i = 0; i < file.paths.size(); ++i)
            CheckLength(manifest.pathNames[i], file.paths[i].name.size(), kSplineNameBytes / 2 - 1);
        bytes = WriteSpline(file);
    } else {
        const AnimationLayout layout =
            command == "ta" ? AnimationLayout::Ta : wide ? AnimationLayout::AmWide : AnimationLayout::AmNarrow;
        bytes = WriteAnimation(ToAnimation(manifest, layout));
    }
    if (!zqtools::WriteFile(output, bytes))
        Fail("cannot write " + output);
    return 0;
}
