// zqanim: writes, prints and previews the library's animation (".AM", ".TA") and spline-path (".SPL") files.
//
//   zqanim am [--wide] -o OUT.am MANIFEST        "AMv2" (single-byte names); --wide: "QXR_AM" (UTF-16 names)
//   zqanim ta -o OUT.ta MANIFEST                 "TETA" (UTF-16 names)
//   zqanim spl --words FIRST SECOND -o OUT.spl MANIFEST
//   zqanim print FILE...
//   zqanim preview [--atlas ATLAS] [-o DIR] FILE...
//
// The manifest format is described in kUsage below and in the README.
#include "AnimationText.h"
#include "ZQAnimationFile.h"
#include "ZQImage.h"
#include "ZQPackedTexture.h"
#include "ToolText.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using namespace ZQ::formats;
using zqtools::AnimationKind;

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

void Warn(const std::string& message) {
    std::fprintf(stderr, "zqanim: warning: %s\n", message.c_str());
}

// ---- Atlases: the chunks a preview draws and a manifest's default placements come from.

struct Chunk {
    std::u16string name; // as the library registers it, folded
    int left = 0, top = 0, right = 0, bottom = 0;
};

struct Atlas {
    std::string path;
    std::vector<Chunk> chunks;
    zqtools::Image image;
    // A frame's chunk name is looked up as written (it is no format text); the first of equal names wins.
    const Chunk* Find(const std::string& name) const {
        const std::u16string folded = zqtools::FoldedName(name);
        for (const Chunk& chunk : chunks)
            if (chunk.name == folded)
                return &chunk;
        return nullptr;
    }
};

Atlas LoadAtlas(const std::string& path) {
    std::vector<uint8_t> bytes;
    if (!zqtools::ReadFile(path, bytes))
        Fail("cannot read the atlas " + path);
    PackedFile packed;
    const bool om = zqtools::UpperAscii(path).find(".OM") != std::string::npos;
    if ((om ? ParseOm(bytes.data(), bytes.size(), packed) : ParseTe(bytes.data(), bytes.size(), packed)) !=
        ParseResult::Ok)
        Fail(path + ": not an .om or .te file");
    Atlas atlas;
    atlas.path = path;
    for (const PackedRecord& record : packed.records) {
        const std::string stored = record.wideName ? Utf8(record.wideNameText) : record.narrowName;
        atlas.chunks.push_back({zqtools::FoldedName(zqtools::RegisteredName(stored)), record.pixel[0], record.pixel[1],
                                record.pixel[2], record.pixel[3]});
    }
    std::string error;
    if (!zqtools::DecodeImage(packed.image, packed.imageBytes, atlas.image, error))
        Fail(path + ": its image: " + error);
    return atlas;
}

// ---- Manifests.

struct Manifest {
    std::string path;
    std::string atlas;
    std::vector<AnimationScene> scenes; // names and chunks in UTF-8 (narrowName, narrowChunk)
    std::vector<int> sceneLines;
    std::vector<std::vector<int>> frameLines;
    std::vector<SplinePath> paths;
    std::vector<std::string> pathNames;
    std::vector<int> pathLines;
    std::string Where(int line) const { return path + ":" + std::to_string(line) + ": "; }
};

bool IsNumber(const std::string& word) {
    std::istringstream in(word);
    float value = 0.0f;
    return in >> value && in.peek() == std::char_traits<char>::eof();
}

// Scenes are only read, not placed nor checked against the atlas, unless withScenes.
Manifest ReadManifest(const std::string& path, const std::string& atlasOption, bool withScenes) {
    std::ifstream in(path);
    if (!in)
        Fail("cannot read " + path);
    Manifest manifest;
    manifest.path = path;
    manifest.atlas = atlasOption;
    std::vector<bool> placed; // per frame of the scenes, in order: given a place
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        const std::string where = manifest.Where(number);
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
            if (!(fields >> file))
                Fail(where + "atlas needs a file");
            if (manifest.atlas.empty())
                manifest.atlas = (fs::path(path).parent_path() / file).string();
        } else if (keyword == "scene") {
            AnimationScene scene;
            if (!(fields >> scene.narrowName))
                Fail(where + "a scene needs a name");
            manifest.scenes.push_back(scene);
            manifest.sceneLines.push_back(number);
            manifest.frameLines.emplace_back();
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
            manifest.frameLines.back().push_back(number);
            placed.push_back(hasPlace);
        } else if (keyword == "path") {
            SplinePath spline;
            std::string name;
            if (!(fields >> name >> spline.time))
                Fail(where + "a path needs a name and its total time");
            spline.name = Utf16(name);
            manifest.paths.push_back(spline);
            manifest.pathNames.push_back(name);
            manifest.pathLines.push_back(number);
        } else if (keyword == "key") {
            if (manifest.paths.empty())
                Fail(where + "a key before any path");
            SplineKey key;
            if (!(fields >> key.time >> key.position[0] >> key.position[1]))
                Fail(where + "a key needs its time, x and y");
            std::string word;
            for (bool first = true; fields >> word; first = false) {
                if (word == "tension")
                    numbers(&key.tension, 1, "tension");
                else if (word == "continuity")
                    numbers(&key.continuity, 1, "continuity");
                else if (word == "bias")
                    numbers(&key.bias, 1, "bias");
                else if (first && IsNumber(word)) // Z comes right after Y or not at all
                    key.position[2] = std::strtof(word.c_str(), nullptr);
                else
                    Fail(where + "unknown key field " + word +
                         " (Z goes right after Y; then tension, continuity, bias)");
            }
            manifest.paths.back().keys.push_back(key);
        } else {
            Fail(where + "unknown line " + keyword);
        }
    }
    // Frames without a place take their chunk's size from the atlas; those with one are only checked.
    if (!withScenes)
        return manifest;
    if (manifest.atlas.empty()) {
        if (std::find(placed.begin(), placed.end(), false) != placed.end())
            Fail(path + ": a frame has no place and no atlas is given");
        return manifest;
    }
    const Atlas atlas = LoadAtlas(manifest.atlas);
    size_t index = 0;
    for (size_t s = 0; s < manifest.scenes.size(); ++s)
        for (size_t i = 0; i < manifest.scenes[s].frames.size(); ++i) {
            AnimationFrame& frame = manifest.scenes[s].frames[i];
            const std::string where = manifest.Where(manifest.frameLines[s][i]);
            const Chunk* chunk = atlas.Find(frame.narrowChunk);
            if (placed[index++]) {
                if (!chunk)
                    Warn(where + "the atlas " + atlas.path + " has no chunk \"" + frame.narrowChunk +
                         "\": the library draws nothing for this frame");
                continue;
            }
            if (!chunk)
                Fail(where + "frame " + frame.narrowChunk + " has no place and the atlas has no such chunk");
            frame.placement[2] = chunk->right - chunk->left;
            frame.placement[3] = chunk->bottom - chunk->top;
        }
    return manifest;
}

void CheckLength(const std::string& what, size_t length, size_t limit) {
    if (length == 0 || length > limit)
        Fail("the name \"" + what + "\" must have 1 to " + std::to_string(limit) + " characters in this layout");
}

// Names the library registers otherwise than written, or cannot find: '%' signs, and names equal but for
// case (its lookups ignore case and find the first).
void CheckRegisteredNames(const Manifest& manifest, const std::vector<std::string>& names,
                          const std::vector<int>& lines, const char* what) {
    std::map<std::u16string, size_t> seen;
    for (size_t i = 0; i < names.size(); ++i) {
        const std::string where = manifest.Where(lines[i]) + what + " name \"" + names[i] + "\" ";
        const std::string percent = zqtools::PercentWarning(names[i]);
        if (!percent.empty())
            Warn(where + percent);
        const std::string registered = zqtools::RegisteredName(names[i]);
        const auto earlier = seen.emplace(zqtools::FoldedName(registered), i);
        if (!earlier.second) {
            const size_t first = earlier.first->second;
            Warn(where + zqtools::SameNameHow(names[first], names[i]) + " (line " + std::to_string(lines[first]) +
                 "): the library's lookups ignore case and find only the first");
        }
    }
}

// Growing lists stop at the library's ceiling: what lies beyond is dropped when the file is read.
void CheckCeiling(const Manifest& manifest, int line, const std::string& what, size_t count, const char* things) {
    if (static_cast<long long>(count) > zqtools::kLibraryListCeiling)
        Warn(manifest.Where(line) + what + ": " + std::to_string(count) + " " + things +
             " declared, the library keeps " + std::to_string(zqtools::kLibraryListCeiling));
}

AnimationFile ToAnimation(const Manifest& manifest, AnimationLayout layout) {
    AnimationFile file;
    file.layout = layout;
    const bool wide = IsWide(layout);
    std::vector<std::string> names;
    for (size_t s = 0; s < manifest.scenes.size(); ++s) {
        AnimationScene scene = manifest.scenes[s];
        names.push_back(scene.narrowName);
        const std::string where = manifest.Where(manifest.sceneLines[s]);
        if (!wide && !zqtools::IsAscii(scene.narrowName))
            Warn(where + "scene name \"" + scene.narrowName +
                 "\" is not ASCII: the library reads single-byte names in the ANSI code page and will not find it "
                 "by this name; use --wide (or ta) for UTF-16 names");
        CheckCeiling(manifest, manifest.sceneLines[s], "scene \"" + scene.narrowName + "\"", scene.frames.size(),
                     "frames");
        if (wide) {
            scene.wideName = Utf16(scene.narrowName);
            CheckLength(scene.narrowName, scene.wideName.size(), kSceneNameBytesWide / 2 - 1);
            scene.narrowName.clear();
        } else {
            CheckLength(scene.narrowName, scene.narrowName.size(), kSceneNameBytesNarrow - 1);
        }
        for (size_t i = 0; i < scene.frames.size(); ++i) {
            AnimationFrame& frame = scene.frames[i];
            if (wide) {
                frame.wideChunk = Utf16(frame.narrowChunk);
                CheckLength(frame.narrowChunk, frame.wideChunk.size(), kChunkNameBytesWide / 2 - 1);
                frame.narrowChunk.clear();
            } else {
                CheckLength(frame.narrowChunk, frame.narrowChunk.size(), kChunkNameBytesNarrow - 1);
                if (!zqtools::IsAscii(frame.narrowChunk))
                    Warn(manifest.Where(manifest.frameLines[s][i]) + "chunk name \"" + frame.narrowChunk +
                         "\" is not ASCII: the library reads single-byte names in the ANSI code page; use --wide "
                         "(or ta) for UTF-16 names");
            }
        }
        file.scenes.push_back(scene);
    }
    CheckRegisteredNames(manifest, names, manifest.sceneLines, "scene");
    return file;
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
// multiplied by its colour. A placement whose right is left of its left (or bottom above its top)
// shows the chunk mirrored, as the library draws it. A chunk the atlas lacks is outlined in magenta
// (the library draws nothing).
void PreviewScene(const AnimationScene& scene, const Atlas& atlas, const std::string& output) {
    if (scene.frames.empty()) {
        std::printf("  %s: no frames, no preview\n", zqtools::SceneName(scene).c_str());
        return;
    }
    long long minX = 0, minY = 0, maxX = 1, maxY = 1;
    for (const AnimationFrame& f : scene.frames) {
        const long long left = std::min(f.placement[0], f.placement[2]),
                        right = std::max(f.placement[0], f.placement[2]);
        const long long top = std::min(f.placement[1], f.placement[3]),
                        bottom = std::max(f.placement[1], f.placement[3]);
        minX = std::min(minX, left - f.anchor[0]);
        minY = std::min(minY, top - f.anchor[1]);
        maxX = std::max(maxX, right - f.anchor[0]);
        maxY = std::max(maxY, bottom - f.anchor[1]);
    }
    const long long cellWidth = maxX - minX + 8, cellHeight = maxY - minY + 8;
    const long long frames = static_cast<long long>(scene.frames.size());
    if (cellHeight > kMaxPreviewSide || cellWidth * frames > kMaxPreviewSide) {
        std::printf("  %s: %lld frames of %lld x %lld pixels make too large a strip; no preview\n",
                    zqtools::SceneName(scene).c_str(), frames, cellWidth, cellHeight);
        return;
    }
    zqtools::Image strip = Canvas(static_cast<int>(cellWidth * frames), static_cast<int>(cellHeight));
    const float separator[4] = {0.3f, 0.3f, 0.3f, 1.0f}, cross[4] = {0.9f, 0.1f, 0.1f, 1.0f},
                missing[4] = {1.0f, 0.0f, 1.0f, 1.0f};
    for (long long i = 0; i < frames; ++i) {
        const AnimationFrame& f = scene.frames[static_cast<size_t>(i)];
        const long long originX = i * cellWidth - minX + 4, originY = -minY + 4;
        // Signed: negative for a mirrored placement, so the chunk's left edge lands on the placement's left.
        const long long width = static_cast<long long>(f.placement[2]) - f.placement[0];
        const long long height = static_cast<long long>(f.placement[3]) - f.placement[1];
        const long long startX = originX + f.placement[0] - f.anchor[0],
                        startY = originY + f.placement[1] - f.anchor[1];
        const long long boxLeft = std::min(startX, startX + width), boxTop = std::min(startY, startY + height);
        const Chunk* chunk = atlas.Find(zqtools::ChunkName(f));
        if (chunk && width != 0 && height != 0) {
            const float colour[4] = {(f.colour >> 16 & 0xFF) / 255.0f, (f.colour >> 8 & 0xFF) / 255.0f,
                                     (f.colour & 0xFF) / 255.0f, (f.colour >> 24) / 255.0f};
            for (long long y = boxTop; y < boxTop + std::llabs(height); ++y)
                for (long long x = boxLeft; x < boxLeft + std::llabs(width); ++x) {
                    const float u = (static_cast<float>(x - startX) + 0.5f) / static_cast<float>(width);
                    const float v = (static_cast<float>(y - startY) + 0.5f) / static_cast<float>(height);
                    const int sx = chunk->left + static_cast<int>(u * static_cast<float>(chunk->right - chunk->left));
                    const int sy = chunk->top + static_cast<int>(v * static_cast<float>(chunk->bottom - chunk->top));
                    if (sx < 0 || sy < 0 || sx >= atlas.image.width || sy >= atlas.image.height)
                        continue;
                    const uint8_t* s = atlas.image.Pixel(sx, sy);
                    const float pixel[4] = {s[0] / 255.0f * colour[0], s[1] / 255.0f * colour[1],
                                            s[2] / 255.0f * colour[2], s[3] / 255.0f * colour[3]};
                    Blend(strip, static_cast<int>(x), static_cast<int>(y), pixel);
                }
        } else if (!chunk) {
            const float left = static_cast<float>(boxLeft), top = static_cast<float>(boxTop);
            const float right = left + static_cast<float>(std::llabs(width)),
                        bottom = top + static_cast<float>(std::llabs(height));
            Line(strip, left, top, right, top, missing);
            Line(strip, left, bottom, right, bottom, missing);
            Line(strip, left, top, left, bottom, missing);
            Line(strip, right, top, right, bottom, missing);
        }
        const float crossX = static_cast<float>(originX), crossY = static_cast<float>(originY);
        Line(strip, crossX - 3, crossY, crossX + 3, crossY, cross);
        Line(strip, crossX, crossY - 3, crossX, crossY + 3, cross);
        if (i > 0)
            Line(strip, static_cast<float>(i * cellWidth), 0, static_cast<float>(i * cellWidth),
                 static_cast<float>(cellHeight - 1), separator);
    }
    if (!zqtools::WriteFile(output, zqtools::EncodePng(strip)))
        Fail("cannot write " + output);
    std::printf("  %s: %lld frames -> %s\n", zqtools::SceneName(scene).c_str(), frames, output.c_str());
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
    const AnimationKind kind = zqtools::AnimationKindOf(path, bytes);
    const std::string stem = (fs::path(directory) / fs::path(path).filename()).string();
    if (kind == AnimationKind::Spl) {
        SplineFile file;
        ParseSpline(bytes.data(), bytes.size(), file);
        std::printf("%s:\n", path.c_str());
        // Drawn as the library keeps it: no key past its lists' ceiling.
        for (SplinePath& spline : file.paths) {
            spline.keys.resize(std::min<size_t>(spline.keys.size(), zqtools::kLibraryListCeiling));
            PreviewPath(spline, stem + "-" + FileSafe(Utf8(spline.name)) + ".png");
        }
        return 0;
    }
    AnimationFile file;
    if (kind == AnimationKind::Unknown) {
        std::printf("%s: not a file of a kind this tool knows (.AM, .TA, .SPL)\n", path.c_str());
        return 1;
    }
    if (!zqtools::ReadAnimation(path, bytes, kind, file))
        return 1;
    if (atlasPath.empty())
        Fail("a preview of " + path + " needs the atlas it draws from (--atlas)");
    const Atlas atlas = LoadAtlas(atlasPath);
    std::printf("%s:\n", path.c_str());
    for (AnimationScene& scene : file.scenes) {
        scene.frames.resize(std::min<size_t>(scene.frames.size(), zqtools::kLibraryListCeiling));
        PreviewScene(scene, atlas, stem + "-" + FileSafe(zqtools::SceneName(scene)) + ".png");
    }
    return 0;
}

int Print(const std::string& path) {
    std::vector<uint8_t> bytes;
    if (!zqtools::ReadFile(path, bytes))
        Fail("cannot read " + path);
    return zqtools::PrintAnimationFile(path, bytes, zqtools::AnimationKindOf(path, bytes));
}

// The library's loaders pick the format by the name alone: a file named otherwise is never read as one.
void CheckOutputName(const std::string& command, const std::string& output) {
    const AnimationKind wanted = command == "am"   ? AnimationKind::Am
                                 : command == "ta" ? AnimationKind::Ta
                                                   : AnimationKind::Spl;
    const AnimationKind named = zqtools::AnimationKindByName(output);
    if (named == wanted)
        return;
    const char* extension = wanted == AnimationKind::Am ? ".AM" : wanted == AnimationKind::Ta ? ".TA" : ".SPL";
    Warn(output + ": the library reads a file as " + extension + " only when its name holds \"" + extension +
         "\" (in any case)" +
         (named == AnimationKind::Unknown ? "" : std::string(", and this name makes it another kind")) +
         "; name it like OUT" + std::string(extension));
}

} // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
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
    long long words[2] = {0, 0};
    std::vector<std::string> inputs;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&] { return zqtools::OptionValue("zqanim", argc, argv, i); };
        if (arg == "-o")
            (command == "preview" ? directory : output) = value();
        else if (arg == "--atlas") {
            atlas = value();
            if (!std::ifstream(atlas))
                Fail("--atlas: cannot read " + atlas);
        } else if (arg == "--wide")
            wide = true;
        else if (arg == "--words") {
            words[0] = zqtools::WholeOption("zqanim", "--words", value(), 0, 0xFFFF, true);
            words[1] = zqtools::WholeOption("zqanim", "--words", value(), 0, 0xFFFF, true);
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
    if (command == "spl" && !haveWords)
        Fail("spl needs the two identification words its readers expect (--words FIRST SECOND)");
    CheckOutputName(command, output);
    const Manifest manifest = ReadManifest(inputs[0], atlas, command != "spl");
    std::vector<uint8_t> bytes;
    if (command == "spl") {
        SplineFile file;
        file.first = static_cast<uint16_t>(words[0]);
        file.second = static_cast<uint16_t>(words[1]);
        file.paths = manifest.paths;
        for (size_t i = 0; i < file.paths.size(); ++i) {
            CheckLength(manifest.pathNames[i], file.paths[i].name.size(), kSplineNameBytes / 2 - 1);
            CheckCeiling(manifest, manifest.pathLines[i], "path \"" + manifest.pathNames[i] + "\"",
                         file.paths[i].keys.size(), "keys");
        }
        CheckRegisteredNames(manifest, manifest.pathNames, manifest.pathLines, "path");
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
