// One placed model and the animations it plays: what the 3D players keep per model they show.
#pragma once
#include "ZQ/threed/ZQ3DObjectChunk.h"
#include "src/threed/ZQ3DModel.h"

#include <vector>

namespace ZQ {
namespace _3D {

class ZQ3DInstance {
public:
    /// In the rest pose, unturned, unscaled, speed 1, the pose already evaluated.
    ZQ3DInstance(ZQ3DModel* model, const D3DXVECTOR3& position);

    ZQ3DModel* Model() const { return m_model; }
    /// Starts animation set (its index; -1 the rest pose) at time 0, blending from the animation that
    /// was playing; the pose follows at the next Advance.
    void Play(int set, int loops, float blendSeconds);
    /// Advances the animations by seconds and evaluates the pose.
    void Advance(float seconds);
    bool Finished() const { return m_current.finished || m_current.set < 0; }
    /// The pose last evaluated and the placement: what drawing and picking take.
    ZQ3DPlaced Placed() const;
    /// The frame's combined matrix times the placement.
    D3DXMATRIX FrameMatrix(int frame) const;
    /// The ray of screen point (x, y) under the device's view, projection and viewport, against the pose.
    bool HitTest(IDirect3DDevice9* device, int x, int y, float* distance) const;

    D3DXVECTOR3 position;
    float yaw = 0, pitch = 0, roll = 0;
    float scale = 1;
    float speed = 1;

private:
    void Evaluate();

    ZQ3DModel* m_model;
    ZQ3DPlayback m_current;
    ZQ3DPlayback m_previous;
    float m_blendSeconds = 0;
    float m_blendElapsed = 0;
    std::vector<ZQ3DTransform> m_parts;
    std::vector<ZQ3DTransform> m_previousParts;
    std::vector<XMatrix> m_local;
    std::vector<XMatrix> m_combined;
};

/// The instances of a ZQ3DRenderMulti, and its drawing scratch (kept to spare an allocation a frame).
class ZQ3DInstanceList {
public:
    std::vector<ZQ3DInstance> instances;
    std::vector<ZQ3DPlaced> placed;
    std::vector<ZQ3DModel*> models;
};

} // namespace _3D
} // namespace ZQ
