#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQMapper.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/core/ZQVector.h"
#include "ZQ/dialog/ZQDialogAniButton.h"
#include "ZQ/dialog/ZQDialogAniCheckBox.h"
#include "ZQ/dialog/ZQDialogAniRadioButton.h"
#include "ZQ/dialog/ZQDialogButton.h"
#include "ZQ/dialog/ZQDialogCheckBox.h"
#include "ZQ/dialog/ZQDialogEditBox.h"
#include "ZQ/dialog/ZQDialogGauge.h"
#include "ZQ/dialog/ZQDialogListBox.h"
#include "ZQ/dialog/ZQDialogNumber.h"
#include "ZQ/dialog/ZQDialogProgress.h"
#include "ZQ/dialog/ZQDialogRadioButton.h"
#include "ZQ/dialog/ZQDialogStatic.h"
#include "ZQ/dialog/ZQDialogTimeBar.h"
#include "ZQ/dialog/ZQDialogTimeGauge.h"
#include "ZQ/dialog/ZQResponseDialog.h"
#include "ZQ/sound/ZQSound.h"
#include "ZQ/twod/ZQAnimate.h"
#include "ZQ/twod/ZQRenderMulti.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

/// The controls of one screen. The dialog owns what its Add operations create, draws them in a fixed
/// order of kinds (background, statics, buttons, bars, gauges, list boxes, edit boxes, check boxes,
/// numbers, radio buttons: later on top), routes the scene's mouse reports to the clickable ones, keeps
/// one selection per radio group and the focus among edit boxes. Forward the scene's callbacks to it.
/// Every operation takes the dialog's lock, except the four bar and gauge Adds and the two radio lookups.
class ZQ_API ZQDialog : public ZQDialogResponseEvent {
public:
    /// Controls draw with sprite and play through sound (which may be null: no sounds).
    ZQDialog(ZQSprite* sprite, ZQSound* sound, _ZQResponseDialog_tag* response);
    /// An animation dialog: its sprite is the animate's, so sprite controls work in it too, and it has a
    /// background animation player.
    ZQDialog(ZQAnimate* animate, ZQSound* sound, _ZQResponseDialog_tag* response);
    /// Shallow: the copy shares the controls; only one of the two may be destroyed.
    ZQDialog(const ZQDialog& other) = default;
    ZQDialog& operator=(const ZQDialog& other) = default;
    /// Deletes every control and background picture.
    virtual ~ZQDialog();

    /// Stores the callback and hands it to every control that sends events.
    void SetResponse(_ZQResponseDialog_tag* response) override;

    ZQSprite* GetSprite();
    ZQAnimate* GetAnimate();
    ZQSound* GetSound();
    void SetVisible(bool visible);
    bool GetVisible();
    /// Disables or enables every control (statics and the background are drawn at half alpha).
    void SetDisable(bool disable);
    bool GetDisable();
    /// Return moves the edit-box focus (default true).
    void SetReturn(bool advances);
    bool GetReturn();
    /// Tab moves the edit-box focus (default true).
    void SetTab(bool advances);
    bool GetTab();

    /// Appends a background picture.
    void SetSprite(const wchar_t* name, D3DXVECTOR3& pos, D3DXCOLOR& colour);
    /// Replaces background picture index; nothing when there is none.
    void SetSprite(unsigned int index, const wchar_t* name, D3DXVECTOR3& pos, D3DXCOLOR& colour);

    /// Starts a background animation (loop plays it; count passes, negative for ever); animation
    /// dialogs only.
    void SetAnimate(const wchar_t* name, D3DXVECTOR3& pos, bool loop, int count);

    void AddStatic(unsigned int id, ID3DXFont* font, const wchar_t* text, ZQRect& rect, D3DXCOLOR& colour,
                   unsigned long format);
    void AddButton(unsigned int id, const wchar_t* normal, const wchar_t* pressed, const wchar_t* over,
                   const wchar_t* disabled, D3DXVECTOR3& position, bool pixelExact);
    /// The animated controls are made in animation dialogs only; maskChunk may be null (not pixel-exact).
    void AddAniButton(unsigned int id, const wchar_t* normal, const wchar_t* pressed, const wchar_t* over,
                      const wchar_t* disabled, ZQRect& rect, const wchar_t* maskChunk);
    void AddAniCheckBox(unsigned int id, const wchar_t* box, const wchar_t* mark, const wchar_t* over,
                        const wchar_t* disabled, ZQRect& rect, const wchar_t* maskChunk);
    void AddAniRadioButton(unsigned int id, unsigned int group, const wchar_t* normal, const wchar_t* selected,
                           const wchar_t* over, const wchar_t* disabled, ZQRect& rect, bool select,
                           const wchar_t* maskChunk);
    void AddCheckBox(unsigned int id, const wchar_t* box, const wchar_t* mark, const wchar_t* over,
                     const wchar_t* disabled, D3DXVECTOR3& position, bool pixelExact);
    /// The first member of a new group is selected whatever select says; a later member with select
    /// true becomes the group's only selected member.
    void AddRadioButton(unsigned int id, unsigned int group, const wchar_t* normal, const wchar_t* selected,
                        const wchar_t* over, const wchar_t* disabled, D3DXVECTOR3& position, bool select,
                        bool pixelExact);
    void AddListBox(unsigned int id, ID3DXFont* font, ZQRect& rect);
    /// The first edit box takes the focus at once.
    void AddEditBox(unsigned int id, ID3DXFont* font, ZQRect& rect, D3DXCOLOR& colour, unsigned long format);
    void AddNumber(unsigned int id, const wchar_t* prefix, D3DXVECTOR3& position, float spacing,
                   unsigned long alignment);
    /// Without a background; takes no lock.
    void AddTimeBar(unsigned int id, const wchar_t* bar, D3DXVECTOR3& position, float fTime, unsigned long direction);
    void AddTimeBar(unsigned int id, const wchar_t* bar, const wchar_t* background, D3DXVECTOR3& barPosition,
                    D3DXVECTOR3& backgroundPosition, float fTime, unsigned long direction);
    void AddProgress(unsigned int id, const wchar_t* bar, D3DXVECTOR3& position, float range,
                     unsigned long direction);
    void AddProgress(unsigned int id, const wchar_t* bar, const wchar_t* background, D3DXVECTOR3& barPosition,
                     D3DXVECTOR3& backgroundPosition, float range, unsigned long direction);
    void AddGauge(unsigned int id, const wchar_t* marker, ZQRect& rect, float range);
    void AddGauge(unsigned int id, const wchar_t* marker, const wchar_t* background, ZQRect& rect, float range);
    void AddTimeGauge(unsigned int id, const wchar_t* marker, ZQRect& rect, float range);
    void AddTimeGauge(unsigned int id, const wchar_t* marker, const wchar_t* background, ZQRect& rect, float range);

    /// The first control of the kind with that id, or null.
    ZQDialogStatic* GetStatic(unsigned int id);
    ZQDialogButton* GetButton(unsigned int id);
    ZQDialogAniButton* GetAniButton(unsigned int id);
    ZQDialogCheckBox* GetCheckBox(unsigned int id);
    ZQDialogAniCheckBox* GetAniCheckBox(unsigned int id);
    ZQDialogTimeBar* GetTimeBar(unsigned int id);
    ZQDialogProgress* GetProgress(unsigned int id);
    ZQDialogGauge* GetGauge(unsigned int id);
    ZQDialogTimeGauge* GetTimeGauge(unsigned int id);
    ZQDialogListBox* GetListBox(unsigned int id);
    ZQDialogEditBox* GetEditBox(unsigned int id);
    ZQDialogNumber* GetNumber(unsigned int id);
    /// Searches every group, without the lock.
    ZQDialogRadioButton* GetRadioButton(unsigned int id);
    ZQDialogAniRadioButton* GetAniRadioButton(unsigned int id);

    /// Statics, list boxes and edit boxes remake their device resources; returns S_OK.
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    void OnLostDevice(void* context);
    /// When visible: statics, time bars, progress bars, gauges, time gauges, list boxes, edit boxes.
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// When visible, everything in the fixed order.
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// When visible: every clickable control sees the report; a left release then selects the radio
    /// button under the point in its group and gives the focus to the edit box under it.
    void OnMouse(bool down, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context);
    /// Tab and Return (when enabled) move the edit-box focus on, also while invisible.
    void OnKeyboard(unsigned int key, bool keyDown, bool altDown, void* context);
    /// When visible, hands the message to the focused edit box; returns msg.
    LRESULT OnMsgProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam, bool* noFurtherProcessing, void* context);

private:
    struct Picture;
    template <typename Radio> void AddToGroup(ZQMapper& groups, unsigned int group, Radio* button, bool select);
    /// False when a transparent pixel under the point ends the routing.
    template <typename Radio> bool ResolveGroups(ZQMapper& groups, int x, int y);
    /// Calls visit with every control that reports through a response (the clickable and timed kinds).
    template <typename Visit> void EachReporting(Visit visit);

    ZQSprite* m_sprite;
    ZQAnimate* m_animate = nullptr;
    ZQSound* m_sound;
    ZQRenderMulti* m_player = nullptr;
    ZQVector m_pictures, m_statics, m_buttons, m_aniButtons, m_timeBars, m_progresses, m_listBoxes, m_gauges,
        m_timeGauges, m_numbers, m_editBoxes, m_checkBoxes, m_aniCheckBoxes;
    ZQMapper m_radioGroups;    ///< group number to an owned ZQVector of ZQDialogRadioButton*
    ZQMapper m_aniRadioGroups; ///< the same for the animated radio buttons
    bool m_visible = true, m_disabled = false, m_returnAdvances = true, m_tabAdvances = true;
    int m_focused = 0;
    ZQCriticalSection m_lock;
};

} // namespace ZQ
