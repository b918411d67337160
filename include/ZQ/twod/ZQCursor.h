#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"

namespace ZQ {

class ZQAnimate;
class ZQRenderSingle;
class ZQSprite;

/// The application's own mouse cursor, shown only inside an area. The chunk form draws one chunk of a sprite
/// per button state at the mouse position; the animated form plays an animation at the position it was
/// started at (it does not follow the mouse). Feed it the frame's mouse callback, draw it from the render
/// callback. Every operation takes the cursor's lock.
class ZQ_API ZQCursor : public ZQHeapObject {
public:
    /// Chunk cursor drawing with sprite (not owned).
    explicit ZQCursor(ZQSprite* sprite);
    /// Animated cursor: draws with the animate's sprite through a player of its own.
    explicit ZQCursor(ZQAnimate* animate);
    /// Member-wise, except that each animated cursor owns its player: a copy starts its own on the current name.
    ZQCursor(const ZQCursor& other);
    ZQCursor& operator=(const ZQCursor& other);
    /// Deletes the player.
    virtual ~ZQCursor();

    /// Sets the area (edges inside) and the names: normal, then the pressed name for every button, each of
    /// right, middle, side1 and side2 replacing it when not null. The animated form starts normal at the
    /// current position, looping for ever.
    void Entry(ZQRect& area, const wchar_t* normal, const wchar_t* pressed, const wchar_t* right,
               const wchar_t* middle, const wchar_t* side1, const wchar_t* side2);
    /// The chunk drawn under the cursor and its colour; a button press clears the name.
    void SetSprite(const wchar_t* overlay, D3DXCOLOR& color);

    void SetVisible(bool visible);
    bool GetVisible();
    /// A disabled cursor ignores the mouse and draws nothing.
    void SetDisable(bool disable);
    bool GetDisable();

    /// Follows the mouse: outside the area hidden; a press picks the name of the first pressed button in the
    /// order left, right, middle, side 1, side 2 and clears the overlay; anything else shows the normal name.
    void OnMouse(bool buttonDown, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x,
                 int y, void* context);
    /// Draws the overlay, then the cursor over it, when visible and enabled.
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);

private:
    void CopyFrom(const ZQCursor& other);
    void StartPlayer();

    ZQSprite* m_sprite;
    ZQAnimate* m_animate;
    ZQRenderSingle* m_player;
    ZQString m_current;
    ZQString m_normal;
    ZQString m_left;
    ZQString m_right;
    ZQString m_middle;
    ZQString m_side1;
    ZQString m_side2;
    ZQString m_overlay;
    ZQRect m_area;
    D3DXVECTOR3 m_position;
    D3DXCOLOR m_overlayColor;
    bool m_visible;
    bool m_disabled;
    ZQCriticalSection m_lock;
};

} // namespace ZQ
