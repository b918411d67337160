#include "ZQ/frame/ZQViewport.h"
#include "src/core/ZQComRelease.h"

#include <algorithm>

namespace ZQ {

ZQViewport::ZQViewport() : ZQViewport(0, 0, 0, 0) {}

ZQViewport::ZQViewport(int x, int y, int width, int height)
    : m_device(nullptr), m_x(x), m_y(y), m_width(width), m_height(height), m_begun(false), m_saved(), m_set() {}

void ZQViewport::Entry(int x, int y, int width, int height) {
    ZQLock lock(m_lock);
    m_x = x;
    m_y = y;
    m_width = width;
    m_height = height;
}

bool ZQViewport::Begin(IDirect3DDevice9* device) {
    ZQLock lock(m_lock);
    if (!device || m_begun)
        return false;
    IDirect3DSurface9* target = nullptr;
    D3DSURFACE_DESC desc = {};
    const bool sized = SUCCEEDED(device->GetRenderTarget(0, &target)) && SUCCEEDED(target->GetDesc(&desc));
    ZQSafeRelease(target);
    D3DVIEWPORT9 saved;
    if (!sized || FAILED(device->GetViewport(&saved)))
        return false;
    // The device refuses a viewport reaching outside its render target.
    const long long left = std::max(0LL, static_cast<long long>(m_x)), top = std::max(0LL, static_cast<long long>(m_y));
    const long long right = std::min(static_cast<long long>(desc.Width), static_cast<long long>(m_x) + m_width);
    const long long bottom = std::min(static_cast<long long>(desc.Height), static_cast<long long>(m_y) + m_height);
    if (right <= left || bottom <= top)
        return false;
    D3DVIEWPORT9 set = saved;
    set.X = static_cast<DWORD>(left);
    set.Y = static_cast<DWORD>(top);
    set.Width = static_cast<DWORD>(right - left);
    set.Height = static_cast<DWORD>(bottom - top);
    if (FAILED(device->SetViewport(&set)))
        return false;
    m_device = device;
    m_saved = saved;
    m_set = set;
    m_begun = true;
    return true;
}

void ZQViewport::End() {
    ZQLock lock(m_lock);
    if (!m_begun)
        return;
    m_device->SetViewport(&m_saved);
    m_begun = false;
    m_device = nullptr;
    m_set = D3DVIEWPORT9();
}

D3DVIEWPORT9 ZQViewport::GetViewport() {
    ZQLock lock(m_lock);
    return m_set;
}

} // namespace ZQ
