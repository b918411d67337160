#include "ZQ/twod/ZQAnimate.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/twod/ZQSprite.h"

#include <cwchar>

namespace ZQ {

_ZQAnimateFrame_tag::_ZQAnimateFrame_tag(ZQSprite* sprite)
    : sprite(sprite), anchor(0.0f, 0.0f, 0.0f), endAnchor(0.0f, 0.0f, 0.0f), color(0.0f, 0.0f, 0.0f, 0.0f),
      duration(0.0f) {}

ZQAnimateScene::ZQAnimateScene(ZQSprite* sprite, const D3DXVECTOR3& position)
    : m_sprite(sprite), m_drawPosition(position), m_position(position), m_offset(0.0f, 0.0f, 0.0f) {}

ZQAnimateScene::~ZQAnimateScene() {
    if (!m_borrowed)
        for (unsigned int i = 0; i < m_frames.size(); ++i)
            delete static_cast<_ZQAnimateFrame_tag*>(m_frames[static_cast<int>(i)]);
    m_frames.clear();
}

_ZQAnimateFrame_tag* ZQAnimateScene::GetFrame(int index) const {
    if (index < 0 || static_cast<unsigned int>(index) >= m_frames.size())
        return nullptr;
    return static_cast<_ZQAnimateFrame_tag*>(m_frames[index]);
}

void ZQAnimateScene::Borrow(const ZQAnimateScene& source) {
    m_frames = source.m_frames;
    m_borrowed = &source;
}

int ZQAnimateScene::OnFrameRender(IDirect3DDevice9*, double, float elapsed, void*) {
    const int count = static_cast<int>(m_frames.size());
    if (count == 0)
        return NoFrames;
    if (!m_visible)
        return Hidden;
    if (m_loops == 0)
        return Finished;
    if (!m_playing)
        return Running;
    // A current frame set out of range starts the pass again rather than reading past the list.
    if (m_currentFrame < 0 || m_currentFrame >= count)
        m_currentFrame = 0;
    m_time += elapsed;
    const _ZQAnimateFrame_tag& frame = *static_cast<const _ZQAnimateFrame_tag*>(m_frames[m_currentFrame]);
    const float s = m_scale;
    const D3DXVECTOR3 anchor = frame.anchor * s;
    m_drawPosition = m_position + m_offset - anchor;
    Draw(frame);
    // One frame at most per call, however long the pause: frames are never skipped.
    if (m_time > frame.duration) {
        const D3DXVECTOR3 endAnchor = frame.endAnchor * s;
        if (anchor != endAnchor)
            m_position += endAnchor - anchor;
        m_time -= frame.duration;
        if (++m_currentFrame >= count) {
            m_currentFrame = 0;
            if (m_loops > 0 && --m_loops == 0)
                return Finished;
        }
    }
    return Running;
}

void ZQAnimateScene::Draw(const _ZQAnimateFrame_tag& frame) {
    ZQSprite* sprite = frame.sprite ? frame.sprite : m_sprite;
    if (!sprite)
        return;
    const ZQRect& place = frame.placement;
    const float left = place.left + m_drawPosition.x, top = place.top + m_drawPosition.y;
    ZQRect destination(left, top, left + (place.right - place.left) * m_scale,
                       top + (place.bottom - place.top) * m_scale);
    D3DXCOLOR color = frame.color;
    sprite->Render(static_cast<wchar_t*>(frame.chunk), destination, m_angle, color, 0);
}

ZQAnimate::ZQAnimate(ZQSprite* sprite)
    : ZQAmFile(sprite, &m_scenes), ZQTaFile(sprite, &m_scenes), m_sprite(sprite) {
    InitializeCriticalSection(&m_lock);
}

ZQAnimate::~ZQAnimate() {
    for (ZQMapper::iterator it = m_scenes.begin(); it != m_scenes.end(); ++it)
        delete static_cast<ZQAnimateScene*>(it->value);
    m_scenes.clear();
    DeleteCriticalSection(&m_lock);
}

void ZQAnimate::Entry(const wchar_t* file) {
    if (!file)
        return;
    ZQString upper;
    upper = file;
    upper.upper();
    const wchar_t* text = upper;
    // A substring test, ".AM" first: "walk.am.bak" is an ".AM" file.
    if (std::wcsstr(text, L".AM"))
        ZQAmFile::Entry(file);
    else if (std::wcsstr(text, L".TA"))
        ZQTaFile::Entry(file);
}

ZQAnimateScene* ZQAnimate::Trans(const wchar_t* name) {
    if (!name)
        return nullptr;
    return static_cast<ZQAnimateScene*>(m_scenes.find_name(name));
}

ZQSprite* ZQAnimate::GetSprite() {
    ZQLock lock(&m_lock);
    return m_sprite;
}

} // namespace ZQ
