#include "src/dialog/ZQTextTarget.h"

#include "src/core/ZQComRelease.h"

namespace ZQ {

ZQTextTarget::ZQTextTarget(IDirect3DDevice9* device, int width, int height)
    : m_device(device), m_width(width > 0 ? width : 0), m_height(height > 0 ? height : 0) {
    if (!device)
        return;
    D3DXCreateSprite(device, &m_textSprite);
    if (device->TestCooperativeLevel() == D3D_OK)
        CreateTarget();
}

ZQTextTarget::~ZQTextTarget() {
    OnLostDevice();
    ZQSafeRelease(m_textSprite);
}

HRESULT ZQTextTarget::CreateTarget() {
    if (!m_device || m_width == 0 || m_height == 0)
        return E_FAIL;
    HRESULT hr = m_device->CreateTexture(m_width, m_height, 1, D3DUSAGE_RENDERTARGET, D3DFMT_A8R8G8B8,
                                         D3DPOOL_DEFAULT, &m_texture, nullptr);
    if (SUCCEEDED(hr))
        hr = m_texture->GetSurfaceLevel(0, &m_surface);
    D3DSURFACE_DESC desc;
    if (SUCCEEDED(hr))
        hr = m_surface->GetDesc(&desc);
    if (SUCCEEDED(hr))
        hr = D3DXCreateRenderToSurface(m_device, desc.Width, desc.Height, desc.Format, FALSE, D3DFMT_D16,
                                       &m_renderToSurface);
    if (FAILED(hr))
        OnLostDevice();
    return hr;
}

void ZQTextTarget::OnLostDevice() {
    ZQSafeRelease(m_renderToSurface);
    ZQSafeRelease(m_surface);
    ZQSafeRelease(m_texture);
    if (m_textSprite)
        m_textSprite->OnLostDevice();
}

HRESULT ZQTextTarget::OnResetDevice() {
    OnLostDevice();
    if (m_textSprite)
        m_textSprite->OnResetDevice();
    return CreateTarget();
}

bool ZQTextTarget::BeginScene() {
    if (!m_renderToSurface || FAILED(m_renderToSurface->BeginScene(m_surface, nullptr)))
        return false;
    m_device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0);
    return true;
}

bool ZQTextTarget::Begin() {
    if (!m_textSprite || !BeginScene())
        return false;
    m_textSprite->Begin(D3DXSPRITE_ALPHABLEND | D3DXSPRITE_SORT_TEXTURE);
    // The texture is drawn with alpha blending later, so it must hold the text's own colour and its
    // coverage as alpha: blended the sprite's way into transparent black, both would be multiplied by
    // the coverage again and thin text would all but vanish. The sprite restores the states at End.
    m_device->SetRenderState(D3DRS_SRCBLEND, D3DBLEND_ONE);
    m_device->SetRenderState(D3DRS_SEPARATEALPHABLENDENABLE, TRUE);
    m_device->SetRenderState(D3DRS_SRCBLENDALPHA, D3DBLEND_ONE);
    m_device->SetRenderState(D3DRS_DESTBLENDALPHA, D3DBLEND_INVSRCALPHA);
    return true;
}

void ZQTextTarget::DrawText(ID3DXFont* font, const wchar_t* text, const ZQRect& where, DWORD format,
                            const D3DXCOLOR& colour, int shadowOffset, const D3DXCOLOR& shadowColour) {
    if (shadowOffset != 0) {
        const float offset = static_cast<float>(shadowOffset);
        ZQRect shadow = where + D3DXVECTOR2(offset, offset);
        font->DrawTextW(m_textSprite, text, -1, shadow, format, shadowColour);
    }
    ZQRect inside = where;
    font->DrawTextW(m_textSprite, text, -1, inside, format, colour);
}

void ZQTextTarget::End() {
    m_textSprite->End();
    m_renderToSurface->EndScene(D3DX_FILTER_NONE);
}

void ZQTextTarget::Clear() {
    if (BeginScene())
        m_renderToSurface->EndScene(D3DX_FILTER_NONE);
}

void ZQTextTarget::Draw(ZQSprite* sprite, D3DXVECTOR3& pos, D3DXCOLOR& colour) {
    if (sprite && m_texture)
        sprite->Render(m_texture, pos, colour);
}

} // namespace ZQ
