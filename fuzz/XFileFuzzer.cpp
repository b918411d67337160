// libFuzzer target: the reading of ".x" models. What a file that reads holds must be usable as it is:
// every index in range, and no more made than the bytes can state.
#include "ZQXFile.h"

#include <cstdlib>
#include <cstring>

namespace {

using namespace ZQ::formats;

void Check(bool condition) {
    if (!condition)
        std::abort();
}

void CheckFile(const XFile& file, size_t size) {
    const size_t frames = file.frames.size(), meshes = file.meshes.size();
    Check(frames >= 1 && file.frames[0].parent == -1 && file.frames[0].name.empty());
    for (size_t i = 0; i < frames; ++i) {
        const XFrame& frame = file.frames[i];
        Check(i == 0 || (frame.parent >= 0 && static_cast<size_t>(frame.parent) < i));
        for (int child : frame.children)
            Check(child > static_cast<int>(i) && static_cast<size_t>(child) < frames &&
                  file.frames[child].parent == static_cast<int>(i));
        for (int mesh : frame.meshes)
            Check(mesh >= 0 && static_cast<size_t>(mesh) < meshes && file.meshes[mesh].frame == static_cast<int>(i));
    }
    size_t made = 0;
    for (const XMesh& mesh : file.meshes) {
        Check(mesh.frame >= 0 && static_cast<size_t>(mesh.frame) < frames && !mesh.materials.empty());
        Check(mesh.triangleMaterials.size() * 3 == mesh.indices.size());
        for (uint32_t index : mesh.indices)
            Check(index < mesh.vertices.size());
        for (uint32_t material : mesh.triangleMaterials)
            Check(material < mesh.materials.size());
        for (const XVertex& vertex : mesh.vertices)
            Check(vertex.source < mesh.declaredVertices);
        for (const XBone& bone : mesh.bones) {
            Check(bone.frameIndex > 0 && static_cast<size_t>(bone.frameIndex) < frames &&
                  file.frames[bone.frameIndex].name == bone.frame);
            Check(bone.weights.size() == bone.vertices.size());
            for (uint32_t vertex : bone.vertices)
                Check(vertex < mesh.vertices.size());
        }
        made += mesh.vertices.size() + mesh.indices.size();
    }
    for (const XAnimationSet& set : file.animationSets)
        for (const XTrack& track : set.tracks) {
            Check(track.frameIndex > 0 && static_cast<size_t>(track.frameIndex) < frames &&
                  file.frames[track.frameIndex].name == track.frame);
            made += track.rotations.size() + track.scales.size() + track.positions.size();
        }
    // A number takes at least two bytes of text (its digit and a separator) or four of binary, and makes
    // at most three entries: a corner of a large face makes nearly three indices, a corner with a normal
    // of its own one more vertex but takes two numbers, a matrix key of 18 numbers three keys.
    Check(made <= 2 * size);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    XFile file;
    std::string error;
    const XResult result = ParseX(data, size, file, &error);
    if (result == XResult::Ok)
        CheckFile(file, size);
    else
        Check(file.frames.empty() && file.meshes.empty() && file.animationSets.empty() && !error.empty());

    XMatrix matrix;
    if (size >= sizeof matrix.m)
        std::memcpy(matrix.m, data, sizeof matrix.m);
    float scale[3], rotation[4], translation[3];
    DecomposeXMatrix(matrix, scale, rotation, translation);
    return 0;
}
