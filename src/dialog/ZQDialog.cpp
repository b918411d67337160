#include "ZQ/dialog/ZQDialog.h"

#include "ZQ/core/ZQLock.h"
#include "src/core/ZQLockedAccessors.h"
#include "src/dialog/ZQDialogSupport.h"

#include <new>

namespace ZQ {

struct ZQDialog::Picture {
    ZQString name;
    D3DXVECTOR3 position;
    D3DXCOLOR colour;
};

namespace {

// Calls f on every non-null entry of a list of T*.
template <typename T, typename F> void Each(const ZQVector& list, F f) {
    for (unsigned int i = 0; i < list.size(); ++i)
        if (T* item = static_cast<T*>(list[static_cast<int>(i)]))
            f(item);
}

template <typename T> void DeleteAll(ZQVector& list) {
    Each<T>(list, [](T* item) { delete item; });
    list.clear();
}

template <typename T> T* FindId(const ZQVector& list, unsigned int id) {
    for (unsigned int i = 0; i < list.size(); ++i) {
        T* item = static_cast<T*>(list[static_cast<int>(i)]);
        if (item && item->GetId() == id)
            return item;
    }
    return nullptr;
}

template <typename T, typename F> void EachInGroups(const ZQMapper& groups, F f) {
    for (ZQMapper::iterator it = groups.begin(); it != groups.end(); ++it)
        if (ZQVector* group = static_cast<ZQVector*>(it->value))
            Each<T>(*group, f);
}

template <typename T> T* FindInGroups(const ZQMapper& groups, unsigned int id) {
    for (ZQMapper::iterator it = groups.begin(); it != groups.end(); ++it)
        if (T* found = FindId<T>(*static_cast<ZQVector*>(it->value), id))
            return found;
    return nullptr;
}

template <typename T> void DeleteGroups(ZQMapper& groups) {
    for (ZQMapper::iterator it = groups.begin(); it != groups.end(); ++it) {
        ZQVector* group = static_cast<ZQVector*>(it->value);
        DeleteAll<T>(*group);
        delete group;
    }
    groups.clear();
}

template <typename Radio> void SelectOnly(ZQVector& group, Radio* selected) {
    Each<Radio>(group, [](Radio* member) { member->SetSelect(false); });
    selected->SetSelect(true);
}

// Appends a control made with new (nothing when the allocation failed).
template <typename T> void Append(ZQVector& list, T* item) {
    if (item)
        list.push_back(item);
}

// An animated control exists only in an animation dialog.
template <typename Control, typename... Arguments>
void AppendAnimated(ZQVector& list, ZQAnimate* animate, Arguments... arguments) {
    if (animate)
        Append(list, new (std::nothrow) Control(animate, arguments...));
}

// The animation form in an animation dialog, the sprite form otherwise.
template <typename Gauge>
Gauge* NewGauge(ZQAnimate* animate, ZQSprite* sprite, unsigned int id, const wchar_t* marker,
                const wchar_t* background, ZQRect& rect, float range, _ZQResponseDialog_tag* response) {
    if (animate)
        return new (std::nothrow) Gauge(animate, id, marker, background, rect, range, response);
    return new (std::nothrow) Gauge(sprite, id, marker, background, rect, range, response);
}

} // namespace

ZQDialog::ZQDialog(ZQSprite* sprite, ZQSound* sound, _ZQResponseDialog_tag* response)
    : m_sprite(sprite), m_sound(sound) {
    ZQDialogResponseEvent::SetResponse(response);
}

ZQDialog::ZQDialog(ZQAnimate* animate, ZQSound* sound, _ZQResponseDialog_tag* response)
    : m_sprite(animate ? animate->GetSprite() : nullptr), m_animate(animate), m_sound(sound),
      m_player(animate ? new (std::nothrow) ZQRenderMulti(animate) : nullptr) {
    ZQDialogResponseEvent::SetResponse(response);
}

ZQDialog::~ZQDialog() {
    DeleteAll<Picture>(m_pictures);
    DeleteAll<ZQDialogStatic>(m_statics);
    DeleteAll<ZQDialogButton>(m_buttons);
    DeleteAll<ZQDialogAniButton>(m_aniButtons);
    DeleteAll<ZQDialogTimeBar>(m_timeBars);
    DeleteAll<ZQDialogProgress>(m_progresses);
    DeleteAll<ZQDialogListBox>(m_listBoxes);
    DeleteAll<ZQDialogGauge>(m_gauges);
    DeleteAll<ZQDialogTimeGauge>(m_timeGauges);
    DeleteAll<ZQDialogNumber>(m_numbers);
    DeleteAll<ZQDialogEditBox>(m_editBoxes);
    DeleteAll<ZQDialogCheckBox>(m_checkBoxes);
    DeleteAll<ZQDialogAniCheckBox>(m_aniCheckBoxes);
    DeleteGroups<ZQDialogRadioButton>(m_radioGroups);
    DeleteGroups<ZQDialogAniRadioButton>(m_aniRadioGroups);
    delete m_player;
}

template <typename Visit> void ZQDialog::EachReporting(Visit visit) {
    Each<ZQDialogButton>(m_buttons, visit);
    Each<ZQDialogAniButton>(m_aniButtons, visit);
    Each<ZQDialogTimeBar>(m_timeBars, visit);
    Each<ZQDialogProgress>(m_progresses, visit);
    Each<ZQDialogGauge>(m_gauges, visit);
    Each<ZQDialogTimeGauge>(m_timeGauges, visit);
    EachInGroups<ZQDialogRadioButton>(m_radioGroups, visit);
    EachInGroups<ZQDialogAniRadioButton>(m_aniRadioGroups, visit);
    Each<ZQDialogCheckBox>(m_checkBoxes, visit);
    Each<ZQDialogAniCheckBox>(m_aniCheckBoxes, visit);
}

void ZQDialog::SetResponse(_ZQResponseDialog_tag* response) {
    ZQLock lock(m_lock);
    ZQDialogResponseEvent::SetResponse(response);
    EachReporting([&](ZQDialogResponseEvent* control) { control->SetResponse(response); });
}

ZQSprite* ZQDialog::GetSprite() {
    return m_sprite;
}

ZQAnimate* ZQDialog::GetAnimate() {
    return m_animate;
}

ZQSound* ZQDialog::GetSound() {
    return m_sound;
}

ZQ_LOCKED_ACCESSORS(ZQDialog, bool, Visible, m_visible)

void ZQDialog::SetDisable(bool disable) {
    ZQLock lock(m_lock);
    m_disabled = disable;
    auto set = [&](auto* control) { control->SetDisable(disable); };
    Each<ZQDialogStatic>(m_statics, set);
    Each<ZQDialogNumber>(m_numbers, set);
    Each<ZQDialogListBox>(m_listBoxes, set);
    Each<ZQDialogEditBox>(m_editBoxes, set);
    EachReporting(set);
}

bool ZQDialog::GetDisable() {
    return m_lock.Read(m_disabled);
}

ZQ_LOCKED_ACCESSORS(ZQDialog, bool, Return, m_returnAdvances)

ZQ_LOCKED_ACCESSORS(ZQDialog, bool, Tab, m_tabAdvances)

void ZQDialog::SetSprite(const wchar_t* name, D3DXVECTOR3& pos, D3DXCOLOR& colour) {
    ZQLock lock(m_lock);
    Picture* picture = new (std::nothrow) Picture;
    if (!picture)
        return;
    picture->name = name;
    picture->position = pos;
    picture->colour = colour;
    m_pictures.push_back(picture);
}

void ZQDialog::SetSprite(unsigned int index, const wchar_t* name, D3DXVECTOR3& pos, D3DXCOLOR& colour) {
    ZQLock lock(m_lock);
    if (index >= m_pictures.size())
        return;
    Picture* picture = static_cast<Picture*>(m_pictures[static_cast<int>(index)]);
    picture->name.clear();
    picture->name = name;
    picture->position = pos;
    picture->colour = colour;
}

void ZQDialog::SetAnimate(const wchar_t* name, D3DXVECTOR3& pos, bool loop, int count) {
    ZQLock lock(m_lock);
    if (m_player)
        m_player->Entry(name, pos, loop, count);
}

void ZQDialog::AddStatic(unsigned int id, ID3DXFont* font, const wchar_t* text, ZQRect& rect, D3DXCOLOR& colour,
                         unsigned long format) {
    ZQLock lock(m_lock);
    Append(m_statics, new (std::nothrow) ZQDialogStatic(m_sprite, id, font, text, rect, colour, format));
}

void ZQDialog::AddButton(unsigned int id, const wchar_t* normal, const wchar_t* pressed, const wchar_t* over,
                         const wchar_t* disabled, D3DXVECTOR3& position, bool pixelExact) {
    ZQLock lock(m_lock);
    Append(m_buttons, new (std::nothrow) ZQDialogButton(m_sprite, m_sound, id, normal, pressed, over, disabled,
                                                        position, GetResponse(), pixelExact));
}

void ZQDialog::AddCheckBox(unsigned int id, const wchar_t* box, const wchar_t* mark, const wchar_t* over,
                           const wchar_t* disabled, D3DXVECTOR3& position, bool pixelExact) {
    ZQLock lock(m_lock);
    Append(m_checkBoxes, new (std::nothrow) ZQDialogCheckBox(m_sprite, m_sound, id, box, mark, over, disabled,
                                                             position, GetResponse(), pixelExact));
}

template <typename Radio> void ZQDialog::AddToGroup(ZQMapper& groups, unsigned int group, Radio* button, bool select) {
    if (!button)
        return;
    ZQVector* members = static_cast<ZQVector*>(groups.find_key(group));
    // A group never starts without a selection.
    if (!members) {
        members = new (std::nothrow) ZQVector;
        if (!members) {
            delete button;
            return;
        }
        groups.insert(group, members);
        button->SetSelect(true);
    } else if (select) {
        SelectOnly(*members, button);
    }
    members->push_back(button);
}

template <typename Radio> bool ZQDialog::ResolveGroups(ZQMapper& groups, int x, int y) {
    for (ZQMapper::iterator it = groups.begin(); it != groups.end(); ++it) {
        ZQVector* group = static_cast<ZQVector*>(it->value);
        for (unsigned int i = 0; i < group->size(); ++i) {
            Radio* hit = static_cast<Radio*>((*group)[static_cast<int>(i)]);
            if (!hit || hit->GetDisable() || !hit->GetShow() || !IsOver(hit->GetRect(), x, y))
                continue;
            if (hit->GetMask() && !hit->check(x, y))
                return false;
            SelectOnly(*group, hit);
        }
    }
    return true;
}

void ZQDialog::AddRadioButton(unsigned int id, unsigned int group, const wchar_t* normal, const wchar_t* selected,
                              const wchar_t* over, const wchar_t* disabled, D3DXVECTOR3& position, bool select,
                              bool pixelExact) {
    ZQLock lock(m_lock);
    AddToGroup(m_radioGroups, group,
               new (std::nothrow) ZQDialogRadioButton(m_sprite, m_sound, id, group, normal, selected, over, disabled,
                                                      position, GetResponse(), pixelExact),
               select);
}

void ZQDialog::AddAniButton(unsigned int id, const wchar_t* normal, const wchar_t* pressed, const wchar_t* over,
                            const wchar_t* disabled, ZQRect& rect, const wchar_t* maskChunk) {
    ZQLock lock(m_lock);
    AppendAnimated<ZQDialogAniButton>(m_aniButtons, m_animate, m_sound, id, normal, pressed, over, disabled,
                                      rect, GetResponse(), maskChunk);
}

void ZQDialog::AddAniCheckBox(unsigned int id, const wchar_t* box, const wchar_t* mark, const wchar_t* over,
                              const wchar_t* disabled, ZQRect& rect, const wchar_t* maskChunk) {
    ZQLock lock(m_lock);
    AppendAnimated<ZQDialogAniCheckBox>(m_aniCheckBoxes, m_animate, m_sound, id, box, mark, over, disabled,
                                        rect, GetResponse(), maskChunk);
}

void ZQDialog::AddAniRadioButton(unsigned int id, unsigned int group, const wchar_t* normal, const wchar_t* selected,
                                 const wchar_t* over, const wchar_t* disabled, ZQRect& rect, bool select,
                                 const wchar_t* maskChunk) {
    ZQLock lock(m_lock);
    if (m_animate)
        AddToGroup(m_aniRadioGroups, group,
                   new (std::nothrow) ZQDialogAniRadioButton(m_animate, m_sound, id, group, normal, selected, over,
                                                             disabled, rect, GetResponse(), maskChunk),
                   select);
}

void ZQDialog::AddListBox(unsigned int id, ID3DXFont* font, ZQRect& rect) {
    ZQLock lock(m_lock);
    Append(m_listBoxes, new (std::nothrow) ZQDialogListBox(m_sprite, id, font, rect));
}

void ZQDialog::AddEditBox(unsigned int id, ID3DXFont* font, ZQRect& rect, D3DXCOLOR& colour, unsigned long format) {
    ZQLock lock(m_lock);
    ZQDialogEditBox* box = new (std::nothrow) ZQDialogEditBox(m_sprite, id, font, rect, colour, format);
    if (!box)
        return;
    if (m_editBoxes.empty())
        box->SetAcquire(true);
    m_editBoxes.push_back(box);
}

void ZQDialog::AddNumber(unsigned int id, const wchar_t* prefix, D3DXVECTOR3& position, float spacing,
                         unsigned long alignment) {
    ZQLock lock(m_lock);
    Append(m_numbers, new (std::nothrow) ZQDialogNumber(m_sprite, id, prefix, position, spacing, alignment));
}

// The bar and gauge Adds deliberately take no lock.
void ZQDialog::AddTimeBar(unsigned int id, const wchar_t* bar, D3DXVECTOR3& position, float fTime,
                          unsigned long direction) {
    D3DXVECTOR3 none(0.0f, 0.0f, 0.0f);
    AddTimeBar(id, bar, nullptr, position, none, fTime, direction);
}

void ZQDialog::AddTimeBar(unsigned int id, const wchar_t* bar, const wchar_t* background, D3DXVECTOR3& barPosition,
                          D3DXVECTOR3& backgroundPosition, float fTime, unsigned long direction) {
    Append(m_timeBars, new (std::nothrow) ZQDialogTimeBar(m_sprite, id, bar, background, barPosition,
                                                          backgroundPosition, fTime, direction, GetResponse()));
}

void ZQDialog::AddProgress(unsigned int id, const wchar_t* bar, D3DXVECTOR3& position, float range,
                           unsigned long direction) {
    D3DXVECTOR3 none(0.0f, 0.0f, 0.0f);
    AddProgress(id, bar, nullptr, position, none, range, direction);
}

void ZQDialog::AddProgress(unsigned int id, const wchar_t* bar, const wchar_t* background,
                           D3DXVECTOR3& barPosition, D3DXVECTOR3& backgroundPosition, float range,
                           unsigned long direction) {
    Append(m_progresses, new (std::nothrow) ZQDialogProgress(m_sprite, id, bar, background, barPosition,
                                                             backgroundPosition, range, direction, GetResponse()));
}

void ZQDialog::AddGauge(unsigned int id, const wchar_t* marker, ZQRect& rect, float range) {
    AddGauge(id, marker, nullptr, rect, range);
}

void ZQDialog::AddTimeGauge(unsigned int id, const wchar_t* marker, ZQRect& rect, float range) {
    AddTimeGauge(id, marker, nullptr, rect, range);
}

void ZQDialog::AddGauge(unsigned int id, const wchar_t* marker, const wchar_t* background, ZQRect& rect,
                        float range) {
    Append(m_gauges,
           NewGauge<ZQDialogGauge>(m_animate, m_sprite, id, marker, background, rect, range, GetResponse()));
}

void ZQDialog::AddTimeGauge(unsigned int id, const wchar_t* marker, const wchar_t* background, ZQRect& rect,
                            float range) {
    Append(m_timeGauges,
           NewGauge<ZQDialogTimeGauge>(m_animate, m_sprite, id, marker, background, rect, range, GetResponse()));
}

ZQDialogStatic* ZQDialog::GetStatic(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogStatic>(m_statics, id);
}

ZQDialogButton* ZQDialog::GetButton(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogButton>(m_buttons, id);
}

ZQDialogAniButton* ZQDialog::GetAniButton(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogAniButton>(m_aniButtons, id);
}

ZQDialogAniCheckBox* ZQDialog::GetAniCheckBox(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogAniCheckBox>(m_aniCheckBoxes, id);
}

ZQDialogCheckBox* ZQDialog::GetCheckBox(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogCheckBox>(m_checkBoxes, id);
}

ZQDialogTimeBar* ZQDialog::GetTimeBar(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogTimeBar>(m_timeBars, id);
}

ZQDialogProgress* ZQDialog::GetProgress(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogProgress>(m_progresses, id);
}

ZQDialogGauge* ZQDialog::GetGauge(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogGauge>(m_gauges, id);
}

ZQDialogTimeGauge* ZQDialog::GetTimeGauge(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogTimeGauge>(m_timeGauges, id);
}

ZQDialogListBox* ZQDialog::GetListBox(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogListBox>(m_listBoxes, id);
}

ZQDialogEditBox* ZQDialog::GetEditBox(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogEditBox>(m_editBoxes, id);
}

ZQDialogNumber* ZQDialog::GetNumber(unsigned int id) {
    ZQLock lock(m_lock);
    return FindId<ZQDialogNumber>(m_numbers, id);
}

ZQDialogRadioButton* ZQDialog::GetRadioButton(unsigned int id) {
    return FindInGroups<ZQDialogRadioButton>(m_radioGroups, id);
}

ZQDialogAniRadioButton* ZQDialog::GetAniRadioButton(unsigned int id) {
    return FindInGroups<ZQDialogAniRadioButton>(m_aniRadioGroups, id);
}

HRESULT ZQDialog::OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context) {
    ZQLock lock(m_lock);
    Each<ZQDialogStatic>(m_statics, [&](ZQDialogStatic* c) { c->OnResetDevice(device, backBuffer, context); });
    Each<ZQDialogListBox>(m_listBoxes, [&](ZQDialogListBox* c) { c->OnResetDevice(device, backBuffer, context); });
    Each<ZQDialogEditBox>(m_editBoxes, [&](ZQDialogEditBox* c) { c->OnResetDevice(device, backBuffer, context); });
    return S_OK;
}

void ZQDialog::OnLostDevice(void* context) {
    ZQLock lock(m_lock);
    Each<ZQDialogStatic>(m_statics, [&](ZQDialogStatic* c) { c->OnLostDevice(context); });
    Each<ZQDialogListBox>(m_listBoxes, [&](ZQDialogListBox* c) { c->OnLostDevice(context); });
    Each<ZQDialogEditBox>(m_editBoxes, [&](ZQDialogEditBox* c) { c->OnLostDevice(context); });
}

void ZQDialog::OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    ZQLock lock(m_lock);
    if (!m_visible)
        return;
    auto move = [&](auto* control) { control->OnFrameMove(device, time, elapsed, context); };
    Each<ZQDialogStatic>(m_statics, move);
    Each<ZQDialogTimeBar>(m_timeBars, move);
    Each<ZQDialogProgress>(m_progresses, move);
    Each<ZQDialogGauge>(m_gauges, move);
    Each<ZQDialogTimeGauge>(m_timeGauges, move);
    Each<ZQDialogListBox>(m_listBoxes, move);
    Each<ZQDialogEditBox>(m_editBoxes, move);
}

void ZQDialog::OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    ZQLock lock(m_lock);
    if (!m_visible)
        return;
    Each<Picture>(m_pictures, [&](Picture* picture) {
        if (!m_sprite)
            return;
        // Disabling fades the picture for the draw only.
        D3DXCOLOR colour = picture->colour;
        if (m_disabled)
            colour.a = 0.5f;
        m_sprite->Render(picture->name, picture->position, colour, 0);
    });
    if (m_player)
        m_player->OnFrameRender(device, time, elapsed, context);
    auto render = [&](auto* control) { control->OnFrameRender(device, time, elapsed, context); };
    Each<ZQDialogStatic>(m_statics, render);
    Each<ZQDialogButton>(m_buttons, render);
    Each<ZQDialogAniButton>(m_aniButtons, render);
    Each<ZQDialogTimeBar>(m_timeBars, render);
    Each<ZQDialogProgress>(m_progresses, render);
    Each<ZQDialogGauge>(m_gauges, render);
    Each<ZQDialogTimeGauge>(m_timeGauges, render);
    Each<ZQDialogListBox>(m_listBoxes, render);
    Each<ZQDialogEditBox>(m_editBoxes, render);
    Each<ZQDialogCheckBox>(m_checkBoxes, render);
    Each<ZQDialogAniCheckBox>(m_aniCheckBoxes, render);
    Each<ZQDialogNumber>(m_numbers, render);
    EachInGroups<ZQDialogRadioButton>(m_radioGroups, render);
    EachInGroups<ZQDialogAniRadioButton>(m_aniRadioGroups, render);
}

void ZQDialog::OnMouse(bool down, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                       void* context) {
    ZQLock lock(m_lock);
    if (!m_visible)
        return;
    auto forward = [&](auto* control) {
        control->OnMouse(down, left, right, middle, side1, side2, wheel, x, y, context);
    };
    Each<ZQDialogButton>(m_buttons, forward);
    Each<ZQDialogAniButton>(m_aniButtons, forward);
    EachInGroups<ZQDialogRadioButton>(m_radioGroups, forward);
    EachInGroups<ZQDialogAniRadioButton>(m_aniRadioGroups, forward);
    Each<ZQDialogCheckBox>(m_checkBoxes, forward);
    Each<ZQDialogAniCheckBox>(m_aniCheckBoxes, forward);
    if (down || !left)
        return;

    // The release moves each group's selection to the member under the point, after the members have
    // sent their click events; a transparent pixel ends the whole routing of this report.
    if (!ResolveGroups<ZQDialogRadioButton>(m_radioGroups, x, y) ||
        !ResolveGroups<ZQDialogAniRadioButton>(m_aniRadioGroups, x, y))
        return;

    for (unsigned int i = 0; i < m_editBoxes.size(); ++i) {
        ZQDialogEditBox* hit = static_cast<ZQDialogEditBox*>(m_editBoxes[static_cast<int>(i)]);
        if (!hit || !hit->GetRect().isOverlap(static_cast<float>(x), static_cast<float>(y)))
            continue;
        Each<ZQDialogEditBox>(m_editBoxes, [](ZQDialogEditBox* box) { box->SetAcquire(false); });
        hit->SetAcquire(true);
        m_focused = static_cast<int>(i);
        break;
    }
}

void ZQDialog::OnKeyboard(unsigned int key, bool keyDown, bool, void*) {
    ZQLock lock(m_lock);
    if (!keyDown || m_editBoxes.empty())
        return;
    if (!((key == VK_TAB && m_tabAdvances) || (key == VK_RETURN && m_returnAdvances)))
        return;
    const int count = static_cast<int>(m_editBoxes.size());
    if (m_focused < 0 || m_focused >= count)
        m_focused = 0;
    if (ZQDialogEditBox* focused = static_cast<ZQDialogEditBox*>(m_editBoxes[m_focused]))
        focused->SetAcquire(false);
    m_focused = (m_focused + 1) % count;
    if (ZQDialogEditBox* next = static_cast<ZQDialogEditBox*>(m_editBoxes[m_focused]))
        next->SetAcquire(true);
}

LRESULT ZQDialog::OnMsgProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam, bool* noFurtherProcessing,
                            void* context) {
    ZQLock lock(m_lock);
    if (!m_visible || m_editBoxes.empty() || m_focused < 0 || m_focused >= static_cast<int>(m_editBoxes.size()))
        return msg;
    if (ZQDialogEditBox* focused = static_cast<ZQDialogEditBox*>(m_editBoxes[m_focused]))
        focused->OnMsgProc(hWnd, msg, wParam, lParam, noFurtherProcessing, context);
    return msg;
}

} // namespace ZQ
