#include "ZQ/threed/ZQ3DRenderMulti.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/threed/ZQ3DObject.h"
#include "src/core/ZQOutOfMemory.h"
#include "src/threed/ZQ3DInstance.h"

#include <algorithm>
#include <new>

namespace ZQ {
namespace _3D {

ZQ3DRenderMulti::ZQ3DRenderMulti(ZQ3DObject* objects)
    : m_objects(objects), m_instances(new (std::nothrow) ZQ3DInstanceList) {}

ZQ3DRenderMulti::ZQ3DRenderMulti(const ZQ3DRenderMulti& other) : m_objects(nullptr), m_instances(nullptr) {
    *this = other;
}

ZQ3DRenderMulti& ZQ3DRenderMulti::operator=(const ZQ3DRenderMulti& other) {
    if (this == &other)
        return *this;
    ZQ3DInstanceList* copy = new (std::nothrow) ZQ3DInstanceList;
    ZQ3DObject* objects;
    {
        ZQLock lock(const_cast<ZQCriticalSection&>(other.m_lock));
        objects = other.m_objects;
        if (copy && other.m_instances)
            copy->instances = other.m_instances->instances;
    }
    ZQLock lock(m_lock);
    delete m_instances;
    m_objects = objects;
    m_instances = copy;
    return *this;
}

ZQ3DRenderMulti::~ZQ3DRenderMulti() {
    delete m_instances;
}

bool ZQ3DRenderMulti::Entry(const wchar_t* model, const D3DXVECTOR3& position, const wchar_t* animation, int loops) {
    ZQLock lock(m_lock);
    _ZQ3DObjectChunk_tag* chunk = m_objects && m_instances ? m_objects->Trans(model) : nullptr;
    if (!chunk)
        return false;
    const int set = animation ? chunk->model->FindAnimation(animation) : -1;
    if (animation && set < 0)
        return false;
    return ZQSurvivesOutOfMemory([&] {
        m_instances->instances.emplace_back(chunk->model, position);
        if (set >= 0)
            m_instances->instances.back().Play(set, loops, 0.0f);
    });
}

void ZQ3DRenderMulti::OnFrameRender(IDirect3DDevice9* device, double, float elapsed, void*) {
    ZQLock lock(m_lock);
    if (!m_instances)
        return;
    std::vector<ZQ3DInstance>& instances = m_instances->instances;
    std::vector<ZQ3DModel*>& models = m_instances->models;
    std::vector<ZQ3DPlaced>& placed = m_instances->placed;
    models.clear();
    for (ZQ3DInstance& instance : instances) {
        instance.Advance(elapsed);
        if (std::find(models.begin(), models.end(), instance.Model()) == models.end())
            models.push_back(instance.Model());
    }
    // One pass per model, so that its meshes and materials are set once for all its instances.
    for (ZQ3DModel* model : models) {
        placed.clear();
        for (const ZQ3DInstance& instance : instances)
            if (instance.Model() == model)
                placed.push_back(instance.Placed());
        model->Draw(device, placed.data(), placed.size());
    }
}

int ZQ3DRenderMulti::HitTest(IDirect3DDevice9* device, int x, int y, float* distance) {
    ZQLock lock(m_lock);
    int nearest = -1;
    float nearestDistance = 0;
    for (size_t i = 0; m_instances && i < m_instances->instances.size(); ++i) {
        float hit;
        if (m_instances->instances[i].HitTest(device, x, y, &hit) && (nearest < 0 || hit < nearestDistance)) {
            nearest = static_cast<int>(i);
            nearestDistance = hit;
        }
    }
    if (nearest >= 0 && distance)
        *distance = nearestDistance;
    return nearest;
}

void ZQ3DRenderMulti::clear() {
    ZQLock lock(m_lock);
    if (m_instances)
        m_instances->instances.clear();
}

bool ZQ3DRenderMulti::empty() {
    return size() == 0;
}

unsigned int ZQ3DRenderMulti::size() {
    ZQLock lock(m_lock);
    return m_instances ? static_cast<unsigned int>(m_instances->instances.size()) : 0;
}

HRESULT ZQ3DRenderMulti::OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {
    return S_OK;
}

void ZQ3DRenderMulti::OnLostDevice(void*) {}

} // namespace _3D
} // namespace ZQ
