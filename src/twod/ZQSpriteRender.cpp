#include "ZQ/twod/ZQSpriteRender.h"
#include "ZQ/core/ZQLock.h"

#include <cstring>
#include <new>

namespace ZQ {

namespace {

const DWORD kVertexFormat = D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1; // 274
const UINT kVertexBytes = 32;
const UINT kQuadBytes = 4 * kVertexBytes;
const float kFieldOfView = D3DX_PI / 4.0f;
const float kEyeDistance = 2.41f;

struct Vertex {
    float x, y, z;
    float nx, ny, nz;
    float u, v;
};
static_assert(sizeof(Vertex) == kVertexBytes, "the vertex layout of FVF 274");

} // namespace

ZQSpriteRender::ZQSpriteRender(IDirect3DDevice9* device)
    : m_device(device), m_vertexBuffer(nullptr), m_vertices(new (std::nothrow) unsigned char[kQuadBytes]()), m_viewportWidth(0.0f),
      m_viewportHeight(0.0f), m_aspect(0.0f), m_material() {
    InitializeCriticalSection(&m_lock);
    ReadViewport();
    CreateVertexBuffer();
}

bool ZQSpriteRender::ReadViewport() {
    ZQLock lock(&m_lock);
    D3DVIEWPORT9 viewport;
    if (!m_device || FAILED(m_device->GetViewport(&viewport)) || viewport.Height == 0)
        return false;
    m_viewportWidth = static_cast<float>(viewport.Width);
    m_viewportHeight = static_cast<float>(viewport.Height);
    m_aspect = m_viewportWidth / m_viewportHeight;
    return true;
}

ZQSpriteRender::~ZQSpriteRender() {
    if (m_vertexBuffer)
        m_vertexBuffer->Release();
    delete[] m_vertices;
    DeleteCriticalSection(&m_lock);
}

bool ZQSpriteRender::CreateVertexBuffer() {
    ZQLock lock(&m_lock);
    return CreateVertexBuffer_NoLock();
}

bool ZQSpriteRender::CreateVertexBuffer_NoLock() {
    if (m_vertexBuffer)
        return true;
    return m_device && SUCCEEDED(m_device->CreateVertexBuffer(kQuadBytes, D3DUSAGE_WRITEONLY, kVertexFormat,
                                                              D3DPOOL_MANAGED, &m_vertexBuffer, nullptr));
}

void ZQSpriteRender::Set(ZQRect dest, ZQRect tex, D3DXCOLOR color) {
    ZQLock lock(&m_lock);
    Set_NoLock(dest, tex, color);
}

void ZQSpriteRender::Set_NoLock(ZQRect dest, ZQRect tex, D3DXCOLOR) {
    if (!m_vertexBuffer || !m_vertices || m_viewportHeight <= 0.0f)
        return;
    // Truncated edges moved half a pixel put texel centres on pixel centres; two world units are the
    // viewport's height.
    auto world = [this](float edge) { return (static_cast<float>(static_cast<int>(edge)) - 0.5f) / m_viewportHeight * 2.0f; };
    const float left = world(dest.left), top = world(dest.top), right = world(dest.right), bottom = world(dest.bottom);
    const Vertex quad[4] = {
        {left, -top, 0.0f, 0.0f, 0.0f, -1.0f, tex.left, tex.top},
        {right, -top, 0.0f, 0.0f, 0.0f, -1.0f, tex.right, tex.top},
        {right, -bottom, 0.0f, 0.0f, 0.0f, -1.0f, tex.right, tex.bottom},
        {left, -bottom, 0.0f, 0.0f, 0.0f, -1.0f, tex.left, tex.bottom},
    };
    std::memcpy(m_vertices, quad, kQuadBytes);
    void* locked = nullptr;
    if (SUCCEEDED(m_vertexBuffer->Lock(0, 0, &locked, 0))) {
        std::memcpy(locked, m_vertices, kQuadBytes);
        m_vertexBuffer->Unlock();
    }
}

void ZQSpriteRender::Camera(D3DXVECTOR3& eye, D3DXVECTOR3& at, D3DXVECTOR3& up) {
    ZQLock lock(&m_lock);
    Camera_NoLock(eye, at, up);
}

void ZQSpriteRender::Camera_NoLock(D3DXVECTOR3& eye, D3DXVECTOR3& at, D3DXVECTOR3& up) {
    if (!m_device)
        return;
    D3DXMATRIX view, projection, shake, corner, world;
    D3DXMatrixLookAtLH(&view, &eye, &at, &up);
    m_device->SetTransform(D3DTS_VIEW, &view);
    D3DXMatrixPerspectiveFovLH(&projection, kFieldOfView, m_aspect, 0.1f, 100.0f);
    m_device->SetTransform(D3DTS_PROJECTION, &projection);
    const D3DXVECTOR3 offset = GetPosition();
    D3DXMatrixTranslation(&shake, offset.x, offset.y, offset.z);
    D3DXMatrixTranslation(&corner, -m_aspect, 1.0f, 0.0f);
    world = shake * corner;
    m_device->SetTransform(D3DTS_WORLD, &world);
    m_device->SetRenderState(D3DRS_ZENABLE, D3DZB_FALSE);
    m_device->SetRenderState(D3DRS_LIGHTING, TRUE);
    m_device->SetRenderState(D3DRS_CULLMODE, D3DCULL_NONE);
    // One white light straight onto the quad and no ambient light: the lit colour is the material's.
    std::memset(&m_material, 0, sizeof m_material);
    m_material.Diffuse = D3DXCOLOR(1.0f, 1.0f, 1.0f, 1.0f);
    D3DLIGHT9 light = {};
    light.Type = D3DLIGHT_DIRECTIONAL;
    light.Diffuse = D3DXCOLOR(1.0f, 1.0f, 1.0f, 1.0f);
    light.Direction = D3DXVECTOR3(0.0f, 0.0f, 1.0f);
    m_device->SetLight(0, &light);
    m_device->LightEnable(0, TRUE);
    m_device->SetRenderState(D3DRS_AMBIENT, 0);
}

void ZQSpriteRender::Draw(IDirect3DTexture9* texture, const D3DXCOLOR& color, const D3DXVECTOR3* centre,
                          float angle) {
    if (!m_device)
        return;
    D3DXVECTOR3 eye(0.0f, 0.0f, -kEyeDistance), at(0.0f, 0.0f, 0.0f), up(0.0f, 1.0f, 0.0f);
    Camera(eye, at, up);
    if (centre) {
        D3DXMATRIX rotationZ, turn, world;
        D3DXQUATERNION rotation;
        D3DXMatrixRotationZ(&rotationZ, angle);
        D3DXQuaternionRotationMatrix(&rotation, &rotationZ);
        const D3DXVECTOR3 pivot(2.0f * centre->x / m_viewportHeight - m_aspect,
                                -2.0f * centre->y / m_viewportHeight + 1.0f, 0.0f);
        D3DXMatrixTransformation(&turn, nullptr, nullptr, nullptr, &pivot, &rotation, nullptr);
        m_device->GetTransform(D3DTS_WORLD, &world);
        world *= turn;
        m_device->SetTransform(D3DTS_WORLD, &world);
    }
    m_device->SetRenderState(D3DRS_ALPHABLENDENABLE, TRUE);
    m_device->SetRenderState(D3DRS_DIFFUSEMATERIALSOURCE, D3DMCS_MATERIAL);
    m_device->SetTextureStageState(0, D3DTSS_ALPHAARG1, D3DTA_DIFFUSE);
    m_device->SetTextureStageState(0, D3DTSS_ALPHAARG2, D3DTA_TEXTURE);
    m_device->SetTextureStageState(0, D3DTSS_ALPHAOP, D3DTOP_MODULATE);
    m_device->SetRenderState(D3DRS_SRCBLEND, D3DBLEND_SRCALPHA);
    m_device->SetRenderState(D3DRS_DESTBLEND, D3DBLEND_INVSRCALPHA);
    m_device->SetSamplerState(0, D3DSAMP_MAGFILTER, D3DTEXF_ANISOTROPIC);
    m_device->SetSamplerState(0, D3DSAMP_MINFILTER, D3DTEXF_ANISOTROPIC);
    {
        ZQLock lock(&m_lock);
        m_material.Diffuse = color;
        m_device->SetMaterial(&m_material);
    }
    m_device->SetTexture(0, texture);
    m_device->SetFVF(kVertexFormat);
    m_device->SetStreamSource(0, m_vertexBuffer, 0, kVertexBytes);
    m_device->DrawPrimitive(D3DPT_TRIANGLEFAN, 0, 2);
    m_device->SetRenderState(D3DRS_ALPHATESTENABLE, FALSE);
    if (centre) {
        Camera(eye, at, up);
        m_device->SetRenderState(D3DRS_LIGHTING, FALSE);
    }
}

void ZQSpriteRender::Render(IDirect3DTexture9* texture, D3DXVECTOR3& pos, D3DXCOLOR& color) {
    D3DSURFACE_DESC desc;
    if (!texture || FAILED(texture->GetLevelDesc(0, &desc)))
        return;
    ZQRect dest(pos.x, pos.y, pos.x + static_cast<float>(desc.Width), pos.y + static_cast<float>(desc.Height));
    ZQRect whole(0.0f, 0.0f, 1.0f, 1.0f);
    Render(texture, dest, whole, color);
}

void ZQSpriteRender::Render(IDirect3DTexture9* texture, ZQRect& dest, ZQRect& tex, D3DXCOLOR& color) {
    Set(dest, tex, color);
    Draw(texture, color);
}

void ZQSpriteRender::OnFrameMove(IDirect3DDevice9*, double, float elapsed, void*) {
    SetTime(elapsed);
}

} // namespace ZQ
