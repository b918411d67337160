#include "ZQ/frame/ZQSceneManager.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/core/ZQLock.h"

#include <cstring>

namespace ZQ {

ZQSceneManager::ZQSceneManager() : m_pCurrent(nullptr), m_pReserved(nullptr) {
    InitializeCriticalSection(&m_lock);
}

ZQSceneManager::ZQSceneManager(const ZQSceneManager& other)
    : m_scenes(other.m_scenes), m_pCurrent(other.m_pCurrent), m_pReserved(other.m_pReserved),
      m_pendingName(other.m_pendingName) {
    std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);
}

ZQSceneManager& ZQSceneManager::operator=(const ZQSceneManager& other) {
    m_scenes = other.m_scenes;
    m_pCurrent = other.m_pCurrent;
    m_pReserved = other.m_pReserved;
    m_pendingName = other.m_pendingName;
    std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);
    return *this;
}

ZQSceneManager::~ZQSceneManager() {
    {
        ZQLock lock(&m_lock);
        m_pCurrent = nullptr;
        for (ZQMapper::iterator it = m_scenes.begin(); it != m_scenes.end(); ++it) {
            // One scene registered under two names is told and deleted once.
            bool seen = false;
            for (ZQMapper::iterator earlier = m_scenes.begin(); earlier != it && !seen; ++earlier)
                seen = earlier->value == it->value;
            if (seen)
                continue;
            ZQScene* scene = static_cast<ZQScene*>(it->value);
            scene->OnLostDevice(nullptr);
            scene->OnDestroyDevice(nullptr);
            delete scene;
        }
        m_scenes.clear();
    }
    DeleteCriticalSection(&m_lock);
}

void ZQSceneManager::Entry(const wchar_t* name, ZQScene* scene) {
    ZQLock lock(&m_lock);
    // Assigned rather than formatted, so that a '%' in a scene name is only a character.
    ZQString key;
    key = name;
    m_scenes.insert(key, scene);
}

void ZQSceneManager::Trans(const wchar_t* name) {
    ZQLock lock(&m_lock);
    m_pendingName = name;
    ZQString lookup(m_pendingName);
    if (!m_scenes.find(lookup))
        ZQMessage(L"Trans: no scene is registered as \"%ls\": the switch leaves no scene current", name ? name : L"");
}

void ZQSceneManager::Dispatcher(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context) {
    ZQLock lock(&m_lock);
    if (m_pendingName.empty())
        return;
    ZQScene* next = static_cast<ZQScene*>(m_scenes.find(m_pendingName));
    if (next == m_pCurrent)
        return;
    if (!next) {
        m_pCurrent = nullptr;
        return;
    }
    if (m_pCurrent) {
        m_pCurrent->OnLostDevice(context);
        m_pCurrent->OnDestroyDevice(context);
    }
    m_pCurrent = next;
    next->OnCreateDevice(device, backBuffer, context);
    next->OnResetDevice(device, backBuffer, context);
    m_pendingName.clear();
}

ZQScene* ZQSceneManager::GetCurrent() {
    ZQLock lock(&m_lock);
    return m_pCurrent;
}

} // namespace ZQ
