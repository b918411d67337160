#include "ZQ/threed/ZQ3DCamera.h"
#include "ZQ/core/ZQLock.h"
#include "src/core/ZQLockedAccessors.h"

namespace ZQ {
namespace _3D {

namespace {
const float kTwoPi = 6.2831854820251465f;
const float kFieldOfView = 0.7853981852531433f;

void Rotate(D3DXVECTOR3& vector, const D3DXVECTOR3& axis, float angle) {
    D3DXMATRIX rotation;
    D3DXMatrixRotationAxis(&rotation, &axis, angle);
    D3DXVec3TransformCoord(&vector, &vector, &rotation);
}
} // namespace

ZQ3DCamera::ZQ3DCamera(IDirect3DDevice9* device) {
    Construct(device, D3DXVECTOR3(0.0f, 0.0f, 0.0f));
}

ZQ3DCamera::ZQ3DCamera(IDirect3DDevice9* device, const D3DXVECTOR3& position) {
    Construct(device, position);
}

void ZQ3DCamera::Construct(IDirect3DDevice9* device, const D3DXVECTOR3& position) {
    m_device = device;
    m_height = m_width = m_aspect = 0.0f;
    m_yaw = m_pitch = m_roll = m_time = 0.0f;
    m_action = true;
    m_position = position;
    m_up = D3DXVECTOR3(0.0f, 1.0f, 0.0f);
    m_look = D3DXVECTOR3(0.0f, 0.0f, 1.0f);
    m_right = D3DXVECTOR3(1.0f, 0.0f, 0.0f);
    IDirect3DSurface9* backBuffer = nullptr;
    D3DSURFACE_DESC desc;
    if (device && SUCCEEDED(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &backBuffer)) &&
        SUCCEEDED(backBuffer->GetDesc(&desc))) {
        m_width = static_cast<float>(desc.Width);
        m_height = static_cast<float>(desc.Height);
        m_aspect = m_width / m_height;
    }
    if (backBuffer)
        backBuffer->Release();
}

ZQ3DCamera::~ZQ3DCamera() = default;

ZQ_LOCKED_ACCESSORS(ZQ3DCamera, float, Time, m_time)
ZQ_LOCKED_ACCESSORS(ZQ3DCamera, bool, Action, m_action)

void ZQ3DCamera::SetPosition(const D3DXVECTOR3& position) {
    m_lock.Write(m_position, position);
}

D3DXVECTOR3 ZQ3DCamera::GetPosition() {
    return m_lock.Read(m_position);
}

float ZQ3DCamera::GetYaw() {
    return m_lock.Read(m_yaw);
}

float ZQ3DCamera::GetPitch() {
    return m_lock.Read(m_pitch);
}

float ZQ3DCamera::GetRoll() {
    return m_lock.Read(m_roll);
}

void ZQ3DCamera::SetYawPitchRoll(float yaw, float pitch, float roll) {
    ZQLock lock(m_lock);
    m_yaw = yaw, m_pitch = pitch, m_roll = roll;
}

void ZQ3DCamera::SetYaw(float delta) {
    ZQLock lock(m_lock);
    m_yaw = RestrictAngleTo360Range_NoLock(m_yaw + delta);
}

void ZQ3DCamera::SetPitch(float delta) {
    ZQLock lock(m_lock);
    m_pitch = RestrictAngleTo360Range_NoLock(m_pitch + delta);
}

void ZQ3DCamera::SetRoll(float delta) {
    ZQLock lock(m_lock);
    m_roll = RestrictAngleTo360Range_NoLock(m_roll + delta);
}

void ZQ3DCamera::SetMoveForward(float distance) {
    ZQLock lock(m_lock);
    m_position += m_look * distance;
}

void ZQ3DCamera::SetMoveRight(float distance) {
    ZQLock lock(m_lock);
    m_position += m_right * distance;
}

void ZQ3DCamera::SetMoveUp(float distance) {
    ZQLock lock(m_lock);
    m_position += m_up * distance;
}

float ZQ3DCamera::RestrictAngleTo360Range_NoLock(float angle) {
    // Bounded loops: an infinite or huge angle must not hang the frame.
    if (angle >= kTwoPi) {
        angle -= kTwoPi;
        for (int i = 0; angle > kTwoPi && i < 1024; ++i)
            angle -= kTwoPi;
    } else {
        for (int i = 0; angle < 0.0f && i < 1024; ++i)
            angle += kTwoPi;
    }
    return angle;
}

void ZQ3DCamera::CalculateViewMatrix(D3DXMATRIX* view) {
    ZQLock lock(m_lock);
    CalculateViewMatrix_NoLock(view);
}

void ZQ3DCamera::CalculateViewMatrix_NoLock(D3DXMATRIX* view) {
    m_up = D3DXVECTOR3(0.0f, 1.0f, 0.0f);
    m_look = D3DXVECTOR3(0.0f, 0.0f, 1.0f);
    m_right = D3DXVECTOR3(1.0f, 0.0f, 0.0f);
    Rotate(m_look, m_up, m_yaw);
    Rotate(m_right, m_up, m_yaw);
    Rotate(m_look, m_right, m_pitch);
    Rotate(m_up, m_right, m_pitch);
    Rotate(m_right, m_look, m_roll);
    Rotate(m_up, m_look, m_roll);
    if (!view)
        return;
    *view = D3DXMATRIX(m_right.x, m_up.x, m_look.x, 0.0f, m_right.y, m_up.y, m_look.y, 0.0f, m_right.z, m_up.z,
                       m_look.z, 0.0f, -D3DXVec3Dot(&m_position, &m_right), -D3DXVec3Dot(&m_position, &m_up),
                       -D3DXVec3Dot(&m_position, &m_look), 1.0f);
}

void ZQ3DCamera::BeginScene(float elapsed) {
    ZQLock lock(m_lock);
    if (isReady() && m_action) {
        m_time += elapsed;
        m_position = ZQ3DSpline::GetPosition(m_time);
    }
    if (!m_device)
        return;
    IDirect3DDevice9* device = m_device;
    device->SetRenderState(D3DRS_LIGHTING, TRUE);
    device->SetRenderState(D3DRS_DITHERENABLE, TRUE);
    device->SetRenderState(D3DRS_SPECULARENABLE, FALSE);
    device->SetRenderState(D3DRS_ZENABLE, D3DZB_TRUE);
    device->SetRenderState(D3DRS_CULLMODE, D3DCULL_CCW);
    device->SetRenderState(D3DRS_AMBIENT, 0x99999999);
    device->SetRenderState(D3DRS_NORMALIZENORMALS, TRUE);
    device->SetTextureStageState(0, D3DTSS_COLOROP, D3DTOP_MODULATE);
    device->SetTextureStageState(0, D3DTSS_COLORARG1, D3DTA_TEXTURE);
    device->SetTextureStageState(0, D3DTSS_COLORARG2, D3DTA_CURRENT);
    device->SetTextureStageState(0, D3DTSS_ALPHAOP, D3DTOP_MODULATE);
    device->SetTextureStageState(0, D3DTSS_ALPHAARG1, D3DTA_TEXTURE);
    device->SetTextureStageState(0, D3DTSS_ALPHAARG2, D3DTA_DIFFUSE);
    device->SetSamplerState(0, D3DSAMP_MAGFILTER, D3DTEXF_LINEAR);
    device->SetSamplerState(0, D3DSAMP_MINFILTER, D3DTEXF_LINEAR);

    D3DXMATRIX view;
    CalculateViewMatrix_NoLock(&view);
    device->SetTransform(D3DTS_VIEW, &view);

    D3DVIEWPORT9 viewport;
    if (SUCCEEDED(device->GetViewport(&viewport)) && viewport.Height > 0) {
        m_width = static_cast<float>(viewport.Width);
        m_height = static_cast<float>(viewport.Height);
        m_aspect = m_width / m_height;
    }
    D3DXMATRIX projection;
    D3DXMatrixPerspectiveFovLH(&projection, kFieldOfView, m_aspect, 0.1f, 5000.0f);
    device->SetTransform(D3DTS_PROJECTION, &projection);

    device->SetRenderState(D3DRS_LIGHTING, TRUE);
    D3DLIGHT9 light = {};
    light.Type = D3DLIGHT_DIRECTIONAL;
    light.Diffuse.r = light.Diffuse.g = light.Diffuse.b = light.Diffuse.a = 1.0f;
    light.Range = 1000.0f;
    D3DXVECTOR3 direction(0.0f, -0.3f, 0.5f);
    D3DXVec3Normalize(reinterpret_cast<D3DXVECTOR3*>(&light.Direction), &direction);
    device->SetLight(0, &light);
    device->LightEnable(0, TRUE);
    device->SetRenderState(D3DRS_AMBIENT, 0xff505050);
}

void ZQ3DCamera::EndScene() {
    ZQLock lock(m_lock);
    if (!m_device)
        return;
    m_device->SetRenderState(D3DRS_LIGHTING, FALSE);
    m_device->SetRenderState(D3DRS_DITHERENABLE, FALSE);
    m_device->SetRenderState(D3DRS_ZENABLE, D3DZB_FALSE);
    m_device->SetRenderState(D3DRS_CULLMODE, D3DCULL_NONE);
    m_device->SetRenderState(D3DRS_NORMALIZENORMALS, FALSE);
}

ZQ3DQuake::ZQ3DQuake() : m_action(false), m_time(0.0f) {
    const float depths[] = {0.0f, 0.5f, 0.0f, 0.5f, 0.0f};
    const float times[] = {0.0f, 0.1f, 0.2f, 0.3f, 0.4f};
    for (int i = 0; i < 5; ++i)
        push_back(_ZQ3DTcbSpline_tag(D3DXVECTOR3(0.0f, 0.0f, depths[i]), times[i]));
}

void ZQ3DQuake::SetTime(float elapsed) {
    if (!m_action)
        return;
    m_time += elapsed;
    if (GetKeyCount() > 0 && GetTable(GetKeyCount() - 1)->time < m_time) {
        m_action = false;
        m_time = 0.0f;
    }
}

D3DXVECTOR3 ZQ3DQuake::GetPosition() const {
    return ZQ3DSpline::GetPosition(m_time);
}

} // namespace _3D
} // namespace ZQ
