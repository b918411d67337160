#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {
namespace _3D {

class ZQ3DObject;
class ZQ3DInstanceList;

/// Any number of independent placed models of a ZQ3DObject, each playing its own animation. Drawn
/// grouped by model and material. An instance that finishes its passes stays in its last pose.
/// Every operation takes the player's lock (before the store's).
class ZQ_API ZQ3DRenderMulti {
public:
    explicit ZQ3DRenderMulti(ZQ3DObject* objects);
    /// The copy has instances of its own in the same poses.
    ZQ3DRenderMulti(const ZQ3DRenderMulti& other);
    ZQ3DRenderMulti& operator=(const ZQ3DRenderMulti& other);
    ~ZQ3DRenderMulti();

    /// Adds an instance of model at position playing animation for loops passes (negative: for ever;
    /// null animation: the rest pose). false, adding nothing, for an unknown model or animation.
    bool Entry(const wchar_t* model, const D3DXVECTOR3& position, const wchar_t* animation, int loops);
    /// Advances every instance by elapsed, then draws them all (a null device only advances).
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// The instance (0 for the first added) nearest along the ray of screen point (x, y), as
    /// ZQ3DRenderSingle::HitTest; -1 when the ray meets none.
    int HitTest(IDirect3DDevice9* device, int x, int y, float* distance);
    void clear();
    bool empty();
    unsigned int size();

    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    void OnLostDevice(void* context);

private:
    ZQ3DObject* m_objects;
    ZQ3DInstanceList* m_instances; ///< owned
    ZQCriticalSection m_lock;
};

} // namespace _3D
} // namespace ZQ
