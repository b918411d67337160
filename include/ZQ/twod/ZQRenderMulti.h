#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQVector.h"

namespace ZQ {

class ZQAnimate;
class ZQAnimateScene;

/// Runs any number of independent instances of a ZQAnimate's scenes (effects, sparks); each is deleted
/// when it finishes. Every operation takes the player's lock.
class ZQ_API ZQRenderMulti {
public:
    explicit ZQRenderMulti(ZQAnimate* animate);
    /// Memberwise: the copy shares the instances; only one of the two may be destroyed.
    ZQRenderMulti(const ZQRenderMulti& other);
    ZQRenderMulti& operator=(const ZQRenderMulti& other);
    /// Deletes every instance.
    ~ZQRenderMulti();

    /// Adds an instance of the scene name at pos; false, adding nothing, for an unknown name (or when
    /// the list is at its ceiling of about 10,000 instances). loops 0 finishes at the next frame.
    bool Entry(const wchar_t* name, const D3DXVECTOR3& pos, bool play, int loops);
    /// Runs every instance in the order added and deletes those that finish.
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// Deletes every instance.
    void clear();
    /// No instance left.
    bool empty();
    /// Number of instances.
    unsigned int size();

private:
    ZQAnimate* m_animate;
    ZQVector m_instances;
    CRITICAL_SECTION m_lock;
};

} // namespace ZQ
