#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQString.h"

namespace ZQ {

class ZQAnimate;
class ZQAnimateScene;

/// Plays one animation of a ZQAnimate at a time in one place (a character, a button's state):
/// starting another replaces it. Its instance borrows the named scene's frames. Every operation
/// takes the player's lock; call OnFrameRender from the scene's render callback.
class ZQ_API ZQRenderSingle {
public:
    /// The instance is made hidden at (0, 0, 0) with the animate's sprite.
    explicit ZQRenderSingle(ZQAnimate* animate);
    /// Memberwise: the copy shares the instance; only one of the two may be destroyed.
    ZQRenderSingle(const ZQRenderSingle& other);
    ZQRenderSingle& operator=(const ZQRenderSingle& other);
    ~ZQRenderSingle();

    /// Starts the scene name at pos from its first frame, unscaled and unturned; loops passes
    /// (negative: for ever). false, changing nothing, for an unknown name. With restart false the
    /// name that is current (even a finished one) is left running and true is returned.
    bool Entry(const wchar_t* name, const D3DXVECTOR3& pos, bool play, int loops, bool restart);
    /// Moves the instance to pos (position and drawing position).
    void SetMove(D3DXVECTOR3& pos);
    /// Multiplies placement sizes and movement from the next frame on.
    void SetScale(float scale);
    /// Radians.
    void SetAngle(float angle);
    /// Forgets the current name and hides the instance.
    void clear();
    /// Advances and draws; an instance that finishes is hidden.
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// Nothing playing: never started, cleared or finished.
    bool empty();

    /// The playing instance (for its frame, loops, position).
    ZQAnimateScene* GetScene() { return m_scene; }
    /// The name last started; empty after clear.
    const ZQString& GetName() const { return m_name; }

private:
    ZQAnimate* m_animate;
    ZQAnimateScene* m_scene;
    ZQString m_name;
    CRITICAL_SECTION m_lock;
};

} // namespace ZQ
