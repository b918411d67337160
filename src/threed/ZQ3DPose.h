// Poses of .x models, evaluated by the library on every platform: keys sampled at a time, two
// animations blended, local transforms combined down the hierarchy. No platform calls.
#pragma once
#include "src/formats/ZQXFile.h"

#include <vector>

namespace ZQ {
namespace _3D {

using formats::XMatrix;

/// A frame's local transform in parts: scale, then rotation (w, x, y, z, the keys' sense), then translation.
struct ZQ3DTransform {
    float scale[3] = {1, 1, 1};
    float rotation[4] = {1, 0, 0, 0};
    float translation[3] = {};
};

/// a, then b (row vectors: the product a * b).
XMatrix MultiplyMatrices(const XMatrix& a, const XMatrix& b);
XMatrix ComposeTransform(const ZQ3DTransform& transform);
/// The matrix of a rotation key (w, x, y, z), as the platform's quaternion functions make it.
XMatrix RotationMatrix(const float rotation[4]);
/// Shortest-arc spherical interpolation, normalised.
void SlerpRotation(const float from[4], const float to[4], float t, float out[4]);
/// Linear from a to b (weight t) in each part, rotation by SlerpRotation.
ZQ3DTransform BlendTransforms(const ZQ3DTransform& a, const ZQ3DTransform& b, float t);

/// What a model's poses need, prepared once when it is loaded.
class ZQ3DSkeleton {
public:
    explicit ZQ3DSkeleton(const formats::XFile& file);

    size_t FrameCount() const { return m_file.frames.size(); }
    const formats::XFile& File() const { return m_file; }
    /// Seconds from time 0 to the last key of the set; 0 for the rest pose (set -1).
    double Length(int set) const;
    /// Every frame's local matrix at seconds into the set (-1: the rest pose). A frame the set does not
    /// animate keeps its FrameTransformMatrix as written; a track without keys of one kind takes that
    /// part from the frame's matrix. parts must hold FrameCount() entries; it receives the parts.
    void Sample(int set, double seconds, ZQ3DTransform* parts, XMatrix* local) const;
    /// As Sample, then blended from the pose of (fromSet, fromSeconds) by weight 0 to 1.
    void SampleBlend(int fromSet, double fromSeconds, int set, double seconds, float weight, ZQ3DTransform* fromParts,
                     ZQ3DTransform* parts, XMatrix* local) const;
    /// combined[i] = local[i] times the parent's combined matrix, frames in order (parents first).
    void Combine(const XMatrix* local, XMatrix* combined) const;

private:
    int TrackOf(int set, size_t frame) const;

    const formats::XFile& m_file;
    std::vector<ZQ3DTransform> m_rest;
    std::vector<std::vector<int>> m_trackOfFrame; ///< per set, per frame: the track or -1
};

/// One run of an animation: time, passes and the end, as the players count them.
struct ZQ3DPlayback {
    int set = -1; ///< -1: the rest pose
    double time = 0;
    int loops = 0; ///< passes to play; negative: for ever
    int passes = 0;
    bool finished = false;

    void Start(int animation, int loopCount, double length);
    /// Moves by seconds (negative runs backwards); after the last pass it holds the end.
    void Advance(double seconds, double length);
};

} // namespace _3D
} // namespace ZQ
