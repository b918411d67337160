#include "ZQ/threed/ZQ3DRenderSingle.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/threed/ZQ3DObject.h"
#include "src/threed/ZQ3DInstance.h"

#include <new>

namespace ZQ {
namespace _3D {

ZQ3DRenderSingle::ZQ3DRenderSingle(ZQ3DObject* objects) : m_objects(objects), m_instance(nullptr) {}

ZQ3DRenderSingle::ZQ3DRenderSingle(const ZQ3DRenderSingle& other) : m_objects(nullptr), m_instance(nullptr) {
    *this = other;
}

ZQ3DRenderSingle& ZQ3DRenderSingle::operator=(const ZQ3DRenderSingle& other) {
    if (this == &other)
        return *this;
    ZQ3DInstance* copy = nullptr;
    ZQ3DObject* objects;
    {
        ZQLock lock(const_cast<ZQCriticalSection&>(other.m_lock));
        objects = other.m_objects;
        if (other.m_instance)
            copy = new (std::nothrow) ZQ3DInstance(*other.m_instance);
    }
    ZQLock lock(m_lock);
    delete m_instance;
    m_objects = objects;
    m_instance = copy;
    return *this;
}

ZQ3DRenderSingle::~ZQ3DRenderSingle() {
    delete m_instance;
}

bool ZQ3DRenderSingle::Entry(const wchar_t* model, const D3DXVECTOR3& position) {
    ZQLock lock(m_lock);
    _ZQ3DObjectChunk_tag* chunk = m_objects ? m_objects->Trans(model) : nullptr;
    ZQ3DInstance* placed = chunk ? new (std::nothrow) ZQ3DInstance(chunk->model, position) : nullptr;
    if (!placed)
        return false;
    delete m_instance;
    m_instance = placed;
    return true;
}

bool ZQ3DRenderSingle::Play(const wchar_t* animation, int loops, float blendSeconds) {
    ZQLock lock(m_lock);
    const int set = m_instance ? m_instance->Model()->FindAnimation(animation) : -1;
    if (set < 0)
        return false;
    m_instance->Play(set, loops, blendSeconds);
    return true;
}

void ZQ3DRenderSingle::SetMove(const D3DXVECTOR3& position) {
    ZQLock lock(m_lock);
    if (m_instance)
        m_instance->position = position;
}

void ZQ3DRenderSingle::SetRotation(float yaw, float pitch, float roll) {
    ZQLock lock(m_lock);
    if (m_instance) {
        m_instance->yaw = yaw;
        m_instance->pitch = pitch;
        m_instance->roll = roll;
    }
}

void ZQ3DRenderSingle::SetScale(float scale) {
    ZQLock lock(m_lock);
    if (m_instance)
        m_instance->scale = scale;
}

void ZQ3DRenderSingle::SetSpeed(float speed) {
    ZQLock lock(m_lock);
    if (m_instance)
        m_instance->speed = speed;
}

void ZQ3DRenderSingle::OnFrameRender(IDirect3DDevice9* device, double, float elapsed, void*) {
    ZQLock lock(m_lock);
    if (!m_instance)
        return;
    m_instance->Advance(elapsed);
    const ZQ3DPlaced placed = m_instance->Placed();
    m_instance->Model()->Draw(device, &placed, 1);
}

bool ZQ3DRenderSingle::GetFrameMatrix(const wchar_t* frame, D3DXMATRIX* out) {
    ZQLock lock(m_lock);
    const int index = m_instance ? m_instance->Model()->FindFrame(frame) : -1;
    if (index < 0 || !out)
        return false;
    *out = m_instance->FrameMatrix(index);
    return true;
}

bool ZQ3DRenderSingle::HitTest(IDirect3DDevice9* device, int x, int y, float* distance) {
    ZQLock lock(m_lock);
    return m_instance && m_instance->HitTest(device, x, y, distance);
}

bool ZQ3DRenderSingle::IsFinished() {
    ZQLock lock(m_lock);
    return !m_instance || m_instance->Finished();
}

bool ZQ3DRenderSingle::empty() {
    ZQLock lock(m_lock);
    return !m_instance;
}

void ZQ3DRenderSingle::clear() {
    ZQLock lock(m_lock);
    delete m_instance;
    m_instance = nullptr;
}

HRESULT ZQ3DRenderSingle::OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {
    return S_OK;
}

void ZQ3DRenderSingle::OnLostDevice(void*) {}

} // namespace _3D
} // namespace ZQ
