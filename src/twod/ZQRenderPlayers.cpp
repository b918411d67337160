#include "ZQ/twod/ZQRenderMulti.h"
#include "ZQ/twod/ZQRenderSingle.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/twod/ZQAnimate.h"

#include <cstring>
#include <new>

namespace ZQ {

ZQRenderSingle::ZQRenderSingle(ZQAnimate* animate)
    : m_animate(animate),
      m_scene(new ZQAnimateScene(animate ? animate->GetSprite() : nullptr, D3DXVECTOR3(0.0f, 0.0f, 0.0f))) {
    m_scene->SetVisible(false);
    m_scene->SetBorrowed(m_scene); // its frames always belong to the animate's scenes
    InitializeCriticalSection(&m_lock);
}

ZQRenderSingle::ZQRenderSingle(const ZQRenderSingle& other)
    : m_animate(other.m_animate), m_scene(other.m_scene), m_name(other.m_name) {
    std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);
}

ZQRenderSingle& ZQRenderSingle::operator=(const ZQRenderSingle& other) {
    m_animate = other.m_animate;
    m_scene = other.m_scene;
    m_name = other.m_name;
    std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);
    return *this;
}

ZQRenderSingle::~ZQRenderSingle() {
    delete m_scene;
    DeleteCriticalSection(&m_lock);
}

bool ZQRenderSingle::Entry(const wchar_t* name, const D3DXVECTOR3& pos, bool play, int loops, bool restart) {
    ZQLock lock(&m_lock);
    if (!name)
        return false;
    if (!restart && !m_name.empty() && m_name == name)
        return true;
    ZQAnimateScene* source = m_animate ? m_animate->Trans(name) : nullptr;
    if (!source)
        return false;
    m_name = name;
    m_scene->SetDrawPosition(pos);
    m_scene->SetPosition(pos);
    m_scene->Borrow(*source);
    m_scene->SetPlaying(play);
    m_scene->SetLoops(loops);
    m_scene->SetVisible(true);
    m_scene->SetTime(0.0f);
    m_scene->SetCurrentFrame(0);
    m_scene->SetAngle(0.0f);
    m_scene->SetScale(1.0f);
    return true;
}

void ZQRenderSingle::SetMove(D3DXVECTOR3& pos) {
    ZQLock lock(&m_lock);
    m_scene->SetDrawPosition(pos);
    m_scene->SetPosition(pos);
}

void ZQRenderSingle::SetScale(float scale) {
    ZQLock lock(&m_lock);
    m_scene->SetScale(scale);
}

void ZQRenderSingle::SetAngle(float angle) {
    ZQLock lock(&m_lock);
    m_scene->SetAngle(angle);
}

void ZQRenderSingle::clear() {
    ZQLock lock(&m_lock);
    m_name.clear();
    m_scene->SetVisible(false);
}

void ZQRenderSingle::OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    ZQLock lock(&m_lock);
    if (m_scene->OnFrameRender(device, time, elapsed, context) == ZQAnimateScene::Finished)
        m_scene->SetVisible(false);
}

bool ZQRenderSingle::empty() {
    ZQLock lock(&m_lock);
    return !m_scene->GetVisible();
}

ZQRenderMulti::ZQRenderMulti(ZQAnimate* animate) : m_animate(animate) {
    InitializeCriticalSection(&m_lock);
}

ZQRenderMulti::ZQRenderMulti(const ZQRenderMulti& other) : m_animate(other.m_animate), m_instances(other.m_instances) {
    std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);
}

ZQRenderMulti& ZQRenderMulti::operator=(const ZQRenderMulti& other) {
    m_animate = other.m_animate;
    m_instances = other.m_instances;
    std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);
    return *this;
}

ZQRenderMulti::~ZQRenderMulti() {
    clear();
    DeleteCriticalSection(&m_lock);
}

bool ZQRenderMulti::Entry(const wchar_t* name, const D3DXVECTOR3& pos, bool play, int loops) {
    ZQLock lock(&m_lock);
    ZQAnimateScene* source = m_animate && name ? m_animate->Trans(name) : nullptr;
    if (!source)
        return false;
    ZQAnimateScene* instance = new (std::nothrow) ZQAnimateScene(source->GetSprite(), pos);
    if (!instance)
        return false;
    instance->Borrow(*source);
    instance->SetPlaying(play);
    instance->SetLoops(loops);
    const unsigned int before = m_instances.size();
    m_instances.push_back(instance);
    if (m_instances.size() == before) { // the list is at its ceiling
        delete instance;
        return false;
    }
    return true;
}

void ZQRenderMulti::OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    ZQLock lock(&m_lock);
    bool finished = false;
    for (ZQVector::iterator it = m_instances.begin(); it != m_instances.end(); ++it) {
        ZQAnimateScene* instance = static_cast<ZQAnimateScene*>(*it);
        if (instance && instance->OnFrameRender(device, time, elapsed, context) == ZQAnimateScene::Finished) {
            m_instances.erase(it);
            delete instance;
            finished = true;
        }
    }
    if (finished)
        m_instances.swap();
}

void ZQRenderMulti::clear() {
    ZQLock lock(&m_lock);
    for (unsigned int i = 0; i < m_instances.size(); ++i)
        delete static_cast<ZQAnimateScene*>(m_instances[static_cast<int>(i)]);
    m_instances.clear();
}

bool ZQRenderMulti::empty() {
    ZQLock lock(&m_lock);
    return m_instances.empty();
}

unsigned int ZQRenderMulti::size() {
    ZQLock lock(&m_lock);
    return m_instances.size();
}

} // namespace ZQ
