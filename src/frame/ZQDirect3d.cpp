// Construction of the device framework and its state accessors.
#include "ZQ/frame/ZQDirect3d.h"
#include "ZQ/core/ZQLock.h"

namespace ZQ {

ZQDirect3d* ZQDirect3d::m_pDirect3d = nullptr;

ZQDirect3d::ZQDirect3d()
    : m_ownWindowedPlacement(), m_ownBackBufferSurfaceDesc(), m_ownCaps(), m_ownDeviceSettings(),
      m_ownEnumeration(nullptr), m_frameStats(), m_nextTimerId(1) {
    InitializeCriticalSection(&m_stateLock);
    m_ownWindowedPlacement.length = sizeof m_ownWindowedPlacement;
    m_WindowedPlacement = &m_ownWindowedPlacement;
    m_BackBufferSurfaceDesc = &m_ownBackBufferSurfaceDesc;
    m_Caps = &m_ownCaps;
    m_Timer = &m_ownTimer;
    m_TimerList = &m_ownTimerList;
    m_pDirect3d = this;
}

ZQDirect3d::~ZQDirect3d() {
    Cleanup3DEnvironment(true);
    ReleaseD3D();
    delete m_ownEnumeration;
    if (m_pDirect3d == this)
        m_pDirect3d = nullptr;
    DeleteCriticalSection(&m_stateLock);
}

// State accessors: one field per lock hold.

#define ZQ_DEFINE_ACCESSORS(type, name, initial)                                                                     \
    type ZQDirect3d::Get##name() {                                                                                    \
        ZQLock lock(&m_stateLock);                                                                                    \
        return m_##name;                                                                                              \
    }                                                                                                                 \
    void ZQDirect3d::Set##name(type value) {                                                                          \
        ZQLock lock(&m_stateLock);                                                                                    \
        m_##name = value;                                                                                             \
    }
ZQ_DIRECT3D_STATE(ZQ_DEFINE_ACCESSORS)
#undef ZQ_DEFINE_ACCESSORS

D3DSURFACE_DESC ZQDirect3d::BackBufferCopy() {
    ZQLock lock(&m_stateLock);
    D3DSURFACE_DESC desc = {};
    if (m_BackBufferSurfaceDesc)
        desc = *m_BackBufferSurfaceDesc;
    return desc;
}

_ZQDeviceSettings_tag ZQDirect3d::GetDeviceSettings() {
    ZQLock lock(&m_stateLock);
    _ZQDeviceSettings_tag settings = {};
    if (m_CurrentDeviceSettings)
        settings = *m_CurrentDeviceSettings;
    return settings;
}

bool ZQDirect3d::IsWindowed() {
    ZQLock lock(&m_stateLock);
    return !m_CurrentDeviceSettings || m_CurrentDeviceSettings->pp.Windowed;
}

ZQD3DEnumeration* ZQDirect3d::PrepareEnumerationObject(bool enumerate) {
    IDirect3D9* d3d = GetD3D();
    if (!d3d)
        return nullptr;
    ZQD3DEnumeration* enumeration = GetD3DEnumeration();
    if (!enumeration) {
        {
            ZQLock lock(&m_stateLock);
            if (!m_ownEnumeration)
                m_ownEnumeration = new ZQD3DEnumeration;
            enumeration = m_ownEnumeration;
        }
        SetD3DEnumeration(enumeration);
    }
    if (enumerate || !enumeration->HasEnumerated())
        enumeration->Enumerate(d3d);
    return enumeration;
}

bool ZQDirect3d::IsActive() {
    return GetActive();
}

bool ZQDirect3d::IsRenderingPaused() {
    return GetPauseRenderingCount() > 0;
}

bool ZQDirect3d::IsTimePaused() {
    return GetPauseTimeCount() > 0;
}

} // namespace ZQ
