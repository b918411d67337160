#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/dialog/ZQDialogPixel.h"
#include "ZQ/dialog/ZQResponseDialog.h"

namespace ZQ {

class ZQAnimate;
class ZQRenderSingle;
class ZQSound;
class ZQSprite;

/// One picture layer of a clickable control: a chunk name drawn through the sprite or, made on an
/// animate, an animation played endlessly by a player the layer owns. A copy plays the same animation
/// on a player of its own.
class ZQ_API ZQDialogPicture {
public:
    /// Without an animate the layer draws chunks.
    explicit ZQDialogPicture(ZQAnimate* animate = nullptr);
    ZQDialogPicture(const ZQDialogPicture& other);
    ZQDialogPicture& operator=(const ZQDialogPicture& other);
    ~ZQDialogPicture();

    /// Shows name at position (an empty name too); the player restarts only for another name.
    void Show(const ZQString& name, const D3DXVECTOR3& position);
    /// Shows nothing; the player stops.
    void clear();
    const ZQString& GetName() const { return m_name; }
    /// The chunk at the position and colour, or the player's frame.
    void OnFrameRender(ZQSprite* sprite, D3DXCOLOR& colour, IDirect3DDevice9* device, double time,
                       float elapsed, void* context);

private:
    ZQAnimate* m_animate;
    ZQRenderSingle* m_player;
    ZQString m_name;
    D3DXVECTOR3 m_position = D3DXVECTOR3(0.0f, 0.0f, 0.0f);
};

/// What every clickable control (button, check box, radio button and their animated forms) holds and
/// does: its pictures, sounds, place, flags, lock and id, the accessors and the mouse machine. A
/// control holds one and adds what is its own; each operation takes the lock.
class ZQ_API ZQDialogClickable {
public:
    /// The control is both the pixel mask and the response holder, which gets response.
    /// Chunk pictures: the hit rectangle from the normal chunk at position, and the mask of that chunk
    /// when pixel-exact.
    ZQDialogClickable(ZQDialogPixel& pixel, ZQDialogResponseEvent& control, _ZQResponseDialog_tag* response,
                      ZQSprite* sprite, ZQSound* sound, unsigned int id, const wchar_t* normal,
                      const wchar_t* second, const wchar_t* over, const wchar_t* disabled,
                      const D3DXVECTOR3& position, bool pixelExact);
    /// Animations of animate, at rect's top-left corner; the hit rectangle and mask from the mask chunk
    /// when one is named and the sprite knows it, else rect. Pixel-exact exactly when one is named.
    /// Keeps the mask chunk's name.
    ZQDialogClickable(ZQDialogPixel& pixel, ZQDialogResponseEvent& control, _ZQResponseDialog_tag* response,
                      ZQAnimate* animate, ZQSound* sound, unsigned int id, const wchar_t* normal,
                      const wchar_t* second, const wchar_t* over, const wchar_t* disabled, const ZQRect& rect,
                      const wchar_t* maskChunk);
    /// Member-wise; the lock and the player are the copy's own, and empty names are copied too.
    ZQDialogClickable(const ZQDialogClickable& other) = default;
    ZQDialogClickable& operator=(const ZQDialogClickable& other);
    ~ZQDialogClickable() = default;

    void SetSprite(const wchar_t* normal, const wchar_t* second, const wchar_t* over, const wchar_t* disabled);
    void SetSound(const wchar_t* click, const wchar_t* over);
    void SetDisable(bool disable);
    void SetShow(bool show) { m_lock.Write(m_show, show); }
    /// A radio button's selection: the second picture and the pressed flag follow it.
    void SetSelect(bool select);
    /// A check box's mark layer: the second picture when checked, nothing when not.
    void SetChecked(ZQDialogPicture& mark, bool checked);

    bool GetDisable() { return m_lock.Read(m_disabled); }
    bool GetShow() { return m_lock.Read(m_show); }
    bool GetOvered() { return m_lock.Read(m_over); }
    bool GetSelect() { return m_lock.Read(m_selected); }
    bool GetMask() { return m_lock.Read(m_pixelExact); }
    bool GetChecked(const ZQDialogPicture& mark);
    ZQRect GetRect() { return m_lock.Read(m_hit); }
    unsigned int GetId() const { return m_id; }

    /// When shown: the picture, then the mark layer when one is given and checked.
    void OnFrameRender(ZQDialogPicture* mark, IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// The mouse machine; with a mark layer a press toggles the mark instead of showing the second picture.
    /// A click is reported to control's response with this lock released.
    void OnMouse(ZQDialogPixel& pixel, ZQDialogResponseEvent& control, ZQDialogPicture* mark, bool down, bool left,
                 bool right, bool middle, int x, int y);

private:
    /// Where a selected radio button rests: its second picture; every other control its normal one.
    const ZQString& Resting() const;

    ZQSprite* m_sprite;
    ZQSound* m_sound;
    ZQString m_normal, m_second, m_overName, m_disabledName;
    ZQDialogPicture m_shown;
    ZQString m_maskChunk; ///< an animated control's mask chunk, empty without one
    ZQString m_overSound, m_clickSound;
    D3DXCOLOR m_colour;
    D3DXVECTOR3 m_position;
    ZQRect m_hit;
    bool m_show = true, m_disabled = false, m_pressed = false, m_pixelExact, m_over = false;
    bool m_selected = false;
    ZQCriticalSection m_lock;
    unsigned int m_id;
};

} // namespace ZQ
