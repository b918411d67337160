#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQMapper.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/frame/ZQScene.h"

namespace ZQ {

/// Registry of named scenes, the current scene and the pending switch. Names are case-insensitive.
/// All operations may be called from any thread; the switch itself happens in Dispatcher.
class ZQ_API ZQSceneManager {
public:
    ZQSceneManager();
    /// Shares the scene map and copies the lock's bytes without a new lock: a copy must not be used.
    ZQSceneManager(const ZQSceneManager& other);
    ZQSceneManager& operator=(const ZQSceneManager& other);
    /// Makes no scene current, then gives every registered scene, in registration order,
    /// OnLostDevice(null) and OnDestroyDevice(null) and deletes it.
    ~ZQSceneManager();

    /// Registers a scene and takes ownership of it. A repeated name adds an entry lookups never reach.
    void Entry(const wchar_t* name, ZQScene* scene);
    /// Requests a switch to the named scene at the next Dispatcher; nothing else happens now.
    void Trans(const wchar_t* name);
    /// Performs a pending switch: the old scene gets OnLostDevice and OnDestroyDevice, the new one
    /// OnCreateDevice and OnResetDevice, all under the manager's lock. An unknown name leaves no scene
    /// current (without telling the old one); a name that stays pending is looked up again every pass.
    void Dispatcher(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    /// The current scene, or null.
    ZQScene* GetCurrent();

private:
    ZQMapper m_scenes;
    ZQScene* m_pCurrent;
    ZQScene* m_pReserved;
    ZQString m_pendingName;
    CRITICAL_SECTION m_lock;
};

} // namespace ZQ
