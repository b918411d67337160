// zqinspect: prints the contents of the library's files in readable form.
//
//   zqinspect FILE...
//
// The kind is told by the name, as the library does (".OM" before ".TE", then ".AM", ".TA", ".SPL",
// anywhere in the upper-cased name), or else by the file's first bytes. A ".x" model is told first:
// by its "xof " header, or by a name ending in ".X".
#include "AnimationText.h"
#include "ZQD3DFormats.h"
#include "ZQImage.h"
#include "ZQPackedTexture.h"
#include "ZQXFile.h"
#include "ToolText.h"

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <string>

using ZQ::formats::PackedFile;
using ZQ::formats::PackedRecord;
using ZQ::formats::ParseResult;
using ZQ::formats::XFile;
using ZQ::formats::XFrame;
using ZQ::formats::XMesh;

namespace {

void PrintImage(const PackedFile& file) {
    int width = 0, height = 0;
    std::printf("  image: %u bytes declared, %zu present", file.imageSize, file.imageBytes);
    // A DDS is drawn by the platform, not decoded here: say what format the device will be given.
    const uint32_t ddsFormat = ZQ::formats::DdsFormat(file.image, file.imageBytes);
    if (const ZQ::formats::D3DFormatInfo* dds = ddsFormat ? ZQ::formats::FindD3DFormat(ddsFormat) : nullptr)
        std::printf(", a DDS in %ls (%u bits a pixel, %u of alpha)", dds->name, dds->bits, dds->alphaBits);
    if (zqtools::ImageSize(file.image, file.imageBytes, width, height))
        std::printf(", decodes as %d x %d\n", width, height);
    else
        std::printf(", not an image this tool can decode\n");
}

void PrintRecords(const PackedFile& file, bool atlas) {
    if (file.declaredCount != static_cast<int64_t>(file.records.size()))
        std::printf("  %lld records declared, %zu present (the file is cut short)\n",
                    static_cast<long long>(file.declaredCount), file.records.size());
    std::printf("  %-4s %-24s %-22s %-34s %-12s%s\n", "#", "name", "pixels (l t r b)", "texture coordinates",
                "origin", atlas ? " trim (l t r b)" : "");
    for (size_t i = 0; i < file.records.size(); ++i) {
        const PackedRecord& r = file.records[i];
        char pixels[64], coords[96], origin[32];
        std::snprintf(pixels, sizeof pixels, "%d %d %d %d", r.pixel[0], r.pixel[1], r.pixel[2], r.pixel[3]);
        std::snprintf(coords, sizeof coords, "%.4f %.4f %.4f %.4f", r.texcoord[0], r.texcoord[1], r.texcoord[2],
                      r.texcoord[3]);
        std::snprintf(origin, sizeof origin, "%d %d", r.origin[0], r.origin[1]);
        const std::string name = r.wideName ? Utf8(r.wideNameText) : r.narrowName;
        std::printf("  %-4zu %-24s %-22s %-34s %-12s", i, name.c_str(), pixels, coords, origin);
        if (atlas)
            std::printf(" %d %d %d %d", r.trim[0], r.trim[1], r.trim[2], r.trim[3]);
        std::printf("\n");
    }
    // The library registers each name as format text: say where that is not the name as stored.
    for (size_t i = 0; i < file.records.size(); ++i) {
        const PackedRecord& r = file.records[i];
        const std::string name = r.wideName ? Utf8(r.wideNameText) : r.narrowName;
        const std::string warning = zqtools::PercentWarning(name);
        if (!warning.empty())
            std::printf("  record %zu: the name \"%s\" %s\n", i, name.c_str(), warning.c_str());
    }
}

std::string FrameName(const XFile& file, int index) {
    if (index == 0)
        return "(root)";
    return file.frames[index].name.empty() ? "(unnamed)" : file.frames[index].name;
}

void PrintFrame(const XFile& file, int index, int depth) {
    const XFrame& frame = file.frames[index];
    std::printf("  %*s%s", 2 * depth, "", FrameName(file, index).c_str());
    if (!frame.children.empty())
        std::printf(": %zu %s", frame.children.size(), frame.children.size() == 1 ? "child" : "children");
    for (size_t i = 0; i < frame.meshes.size(); ++i) {
        const std::string& name = file.meshes[frame.meshes[i]].name;
        std::printf("%s%s", i ? ", " : "; meshes: ", name.empty() ? "(unnamed)" : name.c_str());
    }
    std::printf("\n");
    for (int child : frame.children)
        PrintFrame(file, child, depth + 1);
}

// Everything but the first line is the same for a model's text and binary forms.
int PrintX(const char* path, const std::vector<uint8_t>& bytes) {
    XFile file;
    std::string error;
    const ZQ::formats::XResult result = ZQ::formats::ParseX(bytes.data(), bytes.size(), file, &error);
    if (result != ZQ::formats::XResult::Ok) {
        std::printf("%s: %s (%s); the library does not load it\n", path, ZQ::formats::DescribeXResult(result),
                    error.c_str());
        return 1;
    }
    std::printf("%s: .x model, %s, %d-bit floats, version %04d, %zu bytes\n", path, file.binary ? "binary" : "text",
                file.floatBits, file.version, bytes.size());
    std::printf("  ticks per second: %u%s\n", file.ticksPerSecond,
                file.ticksDeclared ? " (declared)" : " (the default: no AnimTicksPerSecond)");
    std::printf("  frames:\n");
    PrintFrame(file, 0, 1);
    for (const XMesh& mesh : file.meshes) {
        std::printf("  mesh %s in %s: %u vertices declared, %zu made; %u faces, %zu triangles; normals %s, %s, %s\n",
                    mesh.name.empty() ? "(unnamed)" : mesh.name.c_str(), FrameName(file, mesh.frame).c_str(),
                    mesh.declaredVertices, mesh.vertices.size(), mesh.declaredFaces, mesh.indices.size() / 3,
                    mesh.hasNormals ? "given" : "computed",
                    mesh.hasTextureCoordinates ? "texture coordinates" : "no texture coordinates",
                    mesh.hasColours ? "vertex colours" : "no vertex colours");
        for (size_t i = 0; i < mesh.materials.size(); ++i) {
            const ZQ::formats::XMaterial& m = mesh.materials[i];
            const size_t triangles = static_cast<size_t>(
                std::count(mesh.triangleMaterials.begin(), mesh.triangleMaterials.end(), static_cast<uint32_t>(i)));
            std::printf(
                "    material %zu%s%s: colour %g %g %g %g, power %g, specular %g %g %g, emissive %g %g %g, %s%s%s; "
                "%zu triangles\n",
                i, m.name.empty() ? "" : " ", m.name.c_str(), m.diffuse[0], m.diffuse[1], m.diffuse[2], m.diffuse[3],
                m.power, m.specular[0], m.specular[1], m.specular[2], m.emissive[0], m.emissive[1], m.emissive[2],
                m.texture.empty() ? "no texture" : "texture \"", m.texture.c_str(), m.texture.empty() ? "" : "\"",
                triangles);
        }
        for (const ZQ::formats::XBone& bone : mesh.bones)
            std::printf("    bone %s (frame %d): %zu weights\n", bone.frame.c_str(), bone.frameIndex,
                        bone.vertices.size());
    }
    for (const ZQ::formats::XAnimationSet& set : file.animationSets) {
        std::printf("  animation set %s: %g ticks (%g s), %zu track%s\n",
                    set.name.empty() ? "(unnamed)" : set.name.c_str(), set.lastKeyTime,
                    set.lastKeyTime / file.ticksPerSecond, set.tracks.size(), set.tracks.size() == 1 ? "" : "s");
        for (const ZQ::formats::XTrack& track : set.tracks)
            std::printf("    track %s: %zu rotation, %zu scale, %zu position keys%s\n", track.frame.c_str(),
                        track.rotations.size(), track.scales.size(), track.positions.size(),
                        track.hasMatrixKeys ? " (from matrix keys)" : "");
    }
    return 0;
}

int Inspect(const char* path) {
    std::vector<uint8_t> bytes;
    if (!zqtools::ReadFile(path, bytes)) {
        std::fprintf(stderr, "zqinspect: cannot read %s\n", path);
        return 1;
    }
    const std::string upper = zqtools::UpperAscii(path);
    if ((bytes.size() >= 4 && std::memcmp(bytes.data(), "xof ", 4) == 0) ||
        (upper.size() >= 2 && upper.compare(upper.size() - 2, 2, ".X") == 0))
        return PrintX(path, bytes);
    bool om = upper.find(".OM") != std::string::npos;
    bool te = !om && upper.find(".TE") != std::string::npos;
    if (!om && !te) {
        const zqtools::AnimationKind kind = zqtools::AnimationKindOf(path, bytes);
        if (kind != zqtools::AnimationKind::Unknown)
            return zqtools::PrintAnimationFile(path, bytes, kind);
        om = bytes.size() >= 5 && std::memcmp(bytes.data(), ZQ::formats::kOmMagic, 5) == 0;
        te = !om && bytes.size() >= 2;
    }
    PackedFile file;
    if (om) {
        if (ZQ::formats::ParseOm(bytes.data(), bytes.size(), file) != ParseResult::Ok) {
            std::printf("%s: not an .OM file (the magic is not \"QXROM\"); the library ignores it\n", path);
            return 1;
        }
        std::printf("%s: packed texture (.OM), layout %s, %zu bytes\n", path,
                    file.versionTwo ? "\"v2\" (72-byte records, single-byte names)"
                                    : "1 (104-byte records, UTF-16 names)",
                    bytes.size());
        std::printf("  image size given to the loader: %lld x %lld\n", static_cast<long long>(file.width),
                    static_cast<long long>(file.height));
        PrintImage(file);
        PrintRecords(file, false);
        return 0;
    }
    if (te && ZQ::formats::ParseTe(bytes.data(), bytes.size(), file) == ParseResult::Ok) {
        std::printf("%s: atlas (.TE), tag %u (%s), %zu bytes\n", path, file.teTag,
                    file.teTag == ZQ::formats::kTeTagWide ? "712-byte records, UTF-16 names"
                                                          : "456-byte records, single-byte names",
                    bytes.size());
        std::printf("  atlas size: %lld x %lld\n", static_cast<long long>(file.width),
                    static_cast<long long>(file.height));
        PrintImage(file);
        PrintRecords(file, true);
        return 0;
    }
    std::printf("%s: not a file of a kind this tool knows (.OM, .TE, .AM, .TA, .SPL, .X)\n", path);
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
    const char* usage = "usage: zqinspect FILE...   (.OM, .TE: header, image, records; .AM, .TA, .SPL: scenes, paths;\n"
                        "                            .X: frames, meshes, animation sets)\n";
    if (argc < 2) {
        std::fputs(usage, stderr);
        return 2;
    }
    if (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
        std::fputs(usage, stdout);
        return 0;
    }
    int failures = 0;
    for (int i = 1; i < argc; ++i)
        failures += Inspect(argv[i]);
    return failures ? 1 : 0;
}
