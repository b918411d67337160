#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {
namespace _3D {

class ZQ3DObject;
class ZQ3DInstance;

/// One placed model of a ZQ3DObject and the animation it plays. Draw it between the camera's
/// BeginScene and EndScene; afterwards the device's states are as the 2D drawing expects them.
/// Every operation takes the player's lock (before the store's).
class ZQ_API ZQ3DRenderSingle {
public:
    explicit ZQ3DRenderSingle(ZQ3DObject* objects);
    /// The copy plays on its own from the same pose.
    ZQ3DRenderSingle(const ZQ3DRenderSingle& other);
    ZQ3DRenderSingle& operator=(const ZQ3DRenderSingle& other);
    ~ZQ3DRenderSingle();

    /// Places model at position in its rest pose, unturned, unscaled, speed 1, no animation. false,
    /// changing nothing, for an unknown model.
    bool Entry(const wchar_t* model, const D3DXVECTOR3& position);
    /// Starts the animation at its time 0 for loops passes (negative: for ever; after the last pass
    /// the model holds the last key's pose). With blendSeconds above 0 the pose moves linearly over
    /// that time from the previous animation's (which keeps running) to this one's. false, changing
    /// nothing, for an unknown animation or when no model is placed.
    bool Play(const wchar_t* animation, int loops, float blendSeconds);
    void SetMove(const D3DXVECTOR3& position);
    /// Radians: yaw about y, pitch about x, roll about z (roll first, then pitch, then yaw).
    void SetRotation(float yaw, float pitch, float roll);
    void SetScale(float scale);
    /// Multiplies the elapsed time the animation advances by (0 stops it; negative runs backwards).
    void SetSpeed(float speed);
    /// Advances the animation by elapsed times the speed, then draws the pose at the new time (a null
    /// device only advances).
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// The frame's combined matrix in the pose last advanced to (the rest pose before any), times the
    /// placement (world space).
    /// false for an unknown frame or when no model is placed.
    bool GetFrameMatrix(const wchar_t* frame, D3DXMATRIX* out);
    /// Whether the ray of screen point (x, y), under the device's view, projection and viewport, meets
    /// the model's triangles in its current pose; distance: along the ray from the near plane.
    bool HitTest(IDirect3DDevice9* device, int x, int y, float* distance);
    /// The animation has played all its passes (true when none was started).
    bool IsFinished();
    /// No model placed: never placed, or cleared.
    bool empty();
    /// Removes the placed model.
    void clear();

    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    void OnLostDevice(void* context);

private:
    ZQ3DObject* m_objects;
    ZQ3DInstance* m_instance; ///< owned; null when empty
    ZQCriticalSection m_lock;
};

} // namespace _3D
} // namespace ZQ
