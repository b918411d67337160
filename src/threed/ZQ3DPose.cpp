#include "src/threed/ZQ3DPose.h"

#include <algorithm>
#include <cmath>

namespace ZQ {
namespace _3D {

using formats::XAnimationSet;
using formats::XRotationKey;
using formats::XTrack;
using formats::XVectorKey;

XMatrix MultiplyMatrices(const XMatrix& a, const XMatrix& b) {
    XMatrix out;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            out.m[row * 4 + column] = a.m[row * 4] * b.m[column] + a.m[row * 4 + 1] * b.m[4 + column] +
                                      a.m[row * 4 + 2] * b.m[8 + column] + a.m[row * 4 + 3] * b.m[12 + column];
    return out;
}

XMatrix RotationMatrix(const float q[4]) {
    const float w = q[0], x = q[1], y = q[2], z = q[3];
    XMatrix r;
    r.m[0] = 1 - 2 * (y * y + z * z);
    r.m[1] = 2 * (x * y + z * w);
    r.m[2] = 2 * (x * z - y * w);
    r.m[4] = 2 * (x * y - z * w);
    r.m[5] = 1 - 2 * (x * x + z * z);
    r.m[6] = 2 * (y * z + x * w);
    r.m[8] = 2 * (x * z + y * w);
    r.m[9] = 2 * (y * z - x * w);
    r.m[10] = 1 - 2 * (x * x + y * y);
    return r;
}

XMatrix ComposeTransform(const ZQ3DTransform& t) {
    XMatrix out = RotationMatrix(t.rotation);
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            out.m[row * 4 + column] *= t.scale[row];
    out.m[12] = t.translation[0];
    out.m[13] = t.translation[1];
    out.m[14] = t.translation[2];
    return out;
}

void SlerpRotation(const float from[4], const float to[4], float t, float out[4]) {
    float cosine = from[0] * to[0] + from[1] * to[1] + from[2] * to[2] + from[3] * to[3];
    float sign = 1.0f;
    if (cosine < 0.0f) {
        cosine = -cosine;
        sign = -1.0f;
    }
    float a = 1.0f - t, b = t;
    // Nearly equal rotations: the sine below vanishes, and linear is as good.
    if (cosine < 0.9995f) {
        const float angle = std::acos(cosine);
        const float sine = std::sin(angle);
        a = std::sin((1.0f - t) * angle) / sine;
        b = std::sin(t * angle) / sine;
    }
    float length = 0.0f;
    for (int i = 0; i < 4; ++i) {
        out[i] = a * from[i] + sign * b * to[i];
        length += out[i] * out[i];
    }
    length = std::sqrt(length);
    if (length > 0.0f)
        for (int i = 0; i < 4; ++i)
            out[i] /= length;
}

ZQ3DTransform BlendTransforms(const ZQ3DTransform& a, const ZQ3DTransform& b, float t) {
    ZQ3DTransform out;
    for (int i = 0; i < 3; ++i) {
        out.scale[i] = a.scale[i] + (b.scale[i] - a.scale[i]) * t;
        out.translation[i] = a.translation[i] + (b.translation[i] - a.translation[i]) * t;
    }
    SlerpRotation(a.rotation, b.rotation, t, out.rotation);
    return out;
}

namespace {

// The key pair around ticks and the weight between them; first == second at or beyond either end.
template <typename Key>
void Bracket(const std::vector<Key>& keys, double ticks, size_t& first, size_t& second, float& t) {
    const auto after =
        std::upper_bound(keys.begin(), keys.end(), ticks, [](double time, const Key& key) { return time < key.time; });
    if (after == keys.begin()) {
        first = second = 0;
    } else if (after == keys.end()) {
        first = second = keys.size() - 1;
    } else {
        second = static_cast<size_t>(after - keys.begin());
        first = second - 1;
    }
    const double span = keys[second].time - keys[first].time;
    t = span > 0 ? static_cast<float>((ticks - keys[first].time) / span) : 0.0f;
}

void SampleVector(const std::vector<XVectorKey>& keys, double ticks, float out[3]) {
    if (keys.empty())
        return;
    size_t first, second;
    float t;
    Bracket(keys, ticks, first, second, t);
    for (int i = 0; i < 3; ++i)
        out[i] = keys[first].value[i] + (keys[second].value[i] - keys[first].value[i]) * t;
}

void SampleRotation(const std::vector<XRotationKey>& keys, double ticks, float out[4]) {
    if (keys.empty())
        return;
    size_t first, second;
    float t;
    Bracket(keys, ticks, first, second, t);
    SlerpRotation(keys[first].value, keys[second].value, t, out);
}

} // namespace

ZQ3DSkeleton::ZQ3DSkeleton(const formats::XFile& file) : m_file(file), m_rest(file.frames.size()) {
    for (size_t i = 0; i < file.frames.size(); ++i) {
        ZQ3DTransform& rest = m_rest[i];
        formats::DecomposeXMatrix(file.frames[i].transform, rest.scale, rest.rotation, rest.translation);
    }
    m_trackOfFrame.resize(file.animationSets.size());
    for (size_t set = 0; set < file.animationSets.size(); ++set) {
        std::vector<int>& tracks = m_trackOfFrame[set];
        tracks.assign(file.frames.size(), -1);
        const XAnimationSet& animation = file.animationSets[set];
        // The first track of a frame wins, as lookups do everywhere in the library.
        for (size_t track = animation.tracks.size(); track-- > 0;)
            tracks[static_cast<size_t>(animation.tracks[track].frameIndex)] = static_cast<int>(track);
    }
}

int ZQ3DSkeleton::TrackOf(int set, size_t frame) const {
    if (set < 0 || static_cast<size_t>(set) >= m_trackOfFrame.size())
        return -1;
    return m_trackOfFrame[static_cast<size_t>(set)][frame];
}

double ZQ3DSkeleton::Length(int set) const {
    if (set < 0 || static_cast<size_t>(set) >= m_file.animationSets.size())
        return 0;
    return m_file.animationSets[static_cast<size_t>(set)].lastKeyTime / m_file.ticksPerSecond;
}

void ZQ3DSkeleton::Sample(int set, double seconds, ZQ3DTransform* parts, XMatrix* local) const {
    const double ticks = seconds * m_file.ticksPerSecond;
    for (size_t frame = 0; frame < m_file.frames.size(); ++frame) {
        parts[frame] = m_rest[frame];
        const int track = TrackOf(set, frame);
        if (track < 0) {
            local[frame] = m_file.frames[frame].transform;
            continue;
        }
        const XTrack& keys = m_file.animationSets[static_cast<size_t>(set)].tracks[static_cast<size_t>(track)];
        SampleVector(keys.scales, ticks, parts[frame].scale);
        SampleRotation(keys.rotations, ticks, parts[frame].rotation);
        SampleVector(keys.positions, ticks, parts[frame].translation);
        local[frame] = ComposeTransform(parts[frame]);
    }
}

void ZQ3DSkeleton::SampleBlend(int fromSet, double fromSeconds, int set, double seconds, float weight,
                               ZQ3DTransform* fromParts, ZQ3DTransform* parts, XMatrix* local) const {
    Sample(fromSet, fromSeconds, fromParts, local);
    Sample(set, seconds, parts, local);
    for (size_t frame = 0; frame < m_file.frames.size(); ++frame) {
        // A frame neither animation moves keeps its matrix exactly, as Sample left it.
        if (TrackOf(fromSet, frame) >= 0 || TrackOf(set, frame) >= 0)
            local[frame] = ComposeTransform(BlendTransforms(fromParts[frame], parts[frame], weight));
    }
}

void ZQ3DSkeleton::Combine(const XMatrix* local, XMatrix* combined) const {
    for (size_t frame = 0; frame < m_file.frames.size(); ++frame) {
        const int parent = m_file.frames[frame].parent;
        combined[frame] =
            parent < 0 ? local[frame] : MultiplyMatrices(local[frame], combined[static_cast<size_t>(parent)]);
    }
}

void ZQ3DPlayback::Start(int animation, int loopCount, double length) {
    set = animation;
    time = 0;
    loops = loopCount;
    passes = 0;
    finished = false;
    if (loops == 0) {
        finished = true;
        time = length;
    }
}

void ZQ3DPlayback::Advance(double seconds, double length) {
    if (finished || set < 0 || !std::isfinite(seconds))
        return;
    time += seconds;
    if (length <= 0) {
        time = 0;
        finished = loops >= 0;
        return;
    }
    if (loops < 0) {
        time = std::fmod(time, length);
        if (time < 0)
            time += length;
        return;
    }
    if (time < 0)
        time = 0;
    if (time >= length) {
        // Whole passes at once: a long pause with a short animation must not loop here.
        const double whole = std::floor(time / length);
        if (whole >= static_cast<double>(loops - passes)) {
            passes = loops;
            time = length;
            finished = true;
            return;
        }
        passes += static_cast<int>(whole);
        time -= whole * length;
    }
}

} // namespace _3D
} // namespace ZQ
