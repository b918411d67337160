#include "src/threed/ZQ3DInstance.h"

#include <cmath>

namespace ZQ {
namespace _3D {

ZQ3DInstance::ZQ3DInstance(ZQ3DModel* model, const D3DXVECTOR3& where)
    : position(where), m_model(model), m_parts(model->Skeleton().FrameCount()),
      m_previousParts(model->Skeleton().FrameCount()), m_local(model->Skeleton().FrameCount()),
      m_combined(model->Skeleton().FrameCount()) {
    Evaluate();
}

void ZQ3DInstance::Play(int set, int loops, float blendSeconds) {
    const ZQ3DSkeleton& skeleton = m_model->Skeleton();
    // A blend under way hands over from the animation it was blending to.
    m_previous = m_current;
    m_blendSeconds = blendSeconds > 0 && std::isfinite(blendSeconds) ? blendSeconds : 0;
    m_blendElapsed = 0;
    // The pose changes at the next advance: until then it stays the one last advanced to.
    m_current.Start(set, loops, skeleton.Length(set));
}

void ZQ3DInstance::Advance(float seconds) {
    const ZQ3DSkeleton& skeleton = m_model->Skeleton();
    const double step = static_cast<double>(seconds) * speed;
    m_current.Advance(step, skeleton.Length(m_current.set));
    if (m_blendSeconds > 0) {
        m_previous.Advance(step, skeleton.Length(m_previous.set));
        m_blendElapsed += static_cast<float>(std::fabs(step));
        if (!(m_blendElapsed < m_blendSeconds))
            m_blendSeconds = 0;
    }
    Evaluate();
}

void ZQ3DInstance::Evaluate() {
    const ZQ3DSkeleton& skeleton = m_model->Skeleton();
    if (m_blendSeconds > 0)
        skeleton.SampleBlend(m_previous.set, m_previous.time, m_current.set, m_current.time,
                             m_blendElapsed / m_blendSeconds, m_previousParts.data(), m_parts.data(), m_local.data());
    else
        skeleton.Sample(m_current.set, m_current.time, m_parts.data(), m_local.data());
    skeleton.Combine(m_local.data(), m_combined.data());
}

ZQ3DPlaced ZQ3DInstance::Placed() const {
    ZQ3DPlaced placed;
    placed.combined = m_combined.data();
    D3DXMATRIX scaling, rotation, translation;
    D3DXMatrixScaling(&scaling, scale, scale, scale);
    D3DXMatrixRotationYawPitchRoll(&rotation, yaw, pitch, roll);
    D3DXMatrixTranslation(&translation, position.x, position.y, position.z);
    placed.placement = scaling * rotation * translation;
    return placed;
}

D3DXMATRIX ZQ3DInstance::FrameMatrix(int frame) const {
    return D3DXMATRIX(m_combined[static_cast<size_t>(frame)].m) * Placed().placement;
}

bool ZQ3DInstance::HitTest(IDirect3DDevice9* device, int x, int y, float* distance) const {
    D3DVIEWPORT9 viewport;
    D3DXMATRIX view, projection, identity;
    if (!device || FAILED(device->GetViewport(&viewport)) || FAILED(device->GetTransform(D3DTS_VIEW, &view)) ||
        FAILED(device->GetTransform(D3DTS_PROJECTION, &projection)))
        return false;
    D3DXMatrixIdentity(&identity);
    const bool depth = viewport.MaxZ > viewport.MinZ;
    const D3DXVECTOR3 nearScreen(static_cast<float>(x), static_cast<float>(y), depth ? viewport.MinZ : 0.0f);
    const D3DXVECTOR3 farScreen(static_cast<float>(x), static_cast<float>(y), depth ? viewport.MaxZ : 1.0f);
    D3DXVECTOR3 nearWorld, farWorld, direction;
    D3DXVec3Unproject(&nearWorld, &nearScreen, &viewport, &projection, &view, &identity);
    D3DXVec3Unproject(&farWorld, &farScreen, &viewport, &projection, &view, &identity);
    const D3DXVECTOR3 along = farWorld - nearWorld;
    D3DXVec3Normalize(&direction, &along);
    return m_model->Intersect(Placed(), nearWorld, direction, distance);
}

} // namespace _3D
} // namespace ZQ
