#include "ZQ/dialog/ZQDialogRadioButton.h"

#include "src/dialog/ZQDialogClickableMembers.h"

namespace ZQ {

ZQDialogRadioButton::ZQDialogRadioButton(ZQSprite* sprite, ZQSound* sound, unsigned int id, unsigned int group,
                                         const wchar_t* normal, const wchar_t* selected, const wchar_t* over,
                                         const wchar_t* disabled, D3DXVECTOR3& position,
                                         _ZQResponseDialog_tag* response, bool pixelExact)
    : m_core(*this, *this, response, sprite, sound, id, normal, selected, over, disabled, position, pixelExact),
      m_group(group) {}

ZQ_CLICKABLE_MEMBERS(ZQDialogRadioButton, nullptr)
ZQ_CLICKABLE_SELECTION(ZQDialogRadioButton)

} // namespace ZQ
