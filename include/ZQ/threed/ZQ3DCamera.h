#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/threed/ZQ3DSpline.h"

namespace ZQ {
namespace _3D {

/// The view of a 3D scene: a position and yaw, pitch and roll (radians), optionally moved along its
/// own spline path (its keys) by BeginScene. BeginScene sets the device's 3D state, view, projection
/// and light; EndScene switches the 3D state off. Neither begins nor ends the device scene.
class ZQ_API ZQ3DCamera : public ZQ3DSpline {
public:
    explicit ZQ3DCamera(IDirect3DDevice9* device);
    ZQ3DCamera(IDirect3DDevice9* device, const D3DXVECTOR3& position);
    /// Copies every member; the copy has a lock of its own.
    ZQ3DCamera(const ZQ3DCamera& other) = default;
    ZQ3DCamera& operator=(const ZQ3DCamera& other) = default;
    virtual ~ZQ3DCamera();

    void SetPosition(const D3DXVECTOR3& position);
    D3DXVECTOR3 GetPosition();
    void SetTime(float time);
    float GetTime();
    /// Whether BeginScene follows the path.
    void SetAction(bool action);
    bool GetAction();
    float GetYaw();
    float GetPitch();
    float GetRoll();
    /// Sets the three angles as given (no wrapping).
    void SetYawPitchRoll(float yaw, float pitch, float roll);
    /// Turns by delta (relative, despite the name) and wraps into [0, 2 pi]; see the wrap rule.
    void SetYaw(float delta);
    void SetPitch(float delta);
    void SetRoll(float delta);
    /// Moves along the look, right or up vector of the last view-matrix calculation.
    void SetMoveForward(float distance);
    void SetMoveRight(float distance);
    void SetMoveUp(float distance);
    void CalculateViewMatrix(D3DXMATRIX* view);
    void CalculateViewMatrix_NoLock(D3DXMATRIX* view);
    /// Follows the path by elapsed seconds (with four keys or more and action set), then sets the
    /// render states, texture stage 0, view, projection (pi/4, 0.1 to 5000) and light 0.
    void BeginScene(float elapsed);
    /// Lighting, dithering, depth test, culling and normal normalisation off.
    void EndScene();

    /// At least 2 pi: minus 2 pi, then again while greater than 2 pi (2 pi gives 0, 4 pi gives 2 pi);
    /// negative: plus 2 pi until not negative.
    static float RestrictAngleTo360Range_NoLock(float angle);

private:
    void Construct(IDirect3DDevice9* device, const D3DXVECTOR3& position);

    IDirect3DDevice9* m_device;
    float m_height;
    float m_width;
    float m_aspect;
    float m_yaw;
    float m_pitch;
    float m_roll;
    float m_time;
    bool m_action;
    D3DXVECTOR3 m_position;
    D3DXVECTOR3 m_up;
    D3DXVECTOR3 m_look;
    D3DXVECTOR3 m_right;
    ZQCriticalSection m_lock;
};

/// A camera shake: five keys along z (0, 0.5, 0, 0.5, 0 at 0.1 s steps). Start it with SetAction(true),
/// advance it with SetTime(elapsed) each frame and add GetPosition() to the view; it stops by itself.
class ZQ_API ZQ3DQuake : public ZQ3DSpline {
public:
    ZQ3DQuake();

    void SetAction(bool action) { m_action = action; }
    bool GetAction() const { return m_action; }
    float GetTime() const { return m_time; }
    /// While running: time += elapsed; past the last key it stops and returns to time 0.
    void SetTime(float elapsed);
    /// The shake offset at the current time.
    D3DXVECTOR3 GetPosition() const;

private:
    bool m_action;
    float m_time;
};

} // namespace _3D
} // namespace ZQ
