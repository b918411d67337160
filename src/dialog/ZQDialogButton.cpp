#include "ZQ/dialog/ZQDialogButton.h"

#include "src/dialog/ZQDialogClickableMembers.h"

namespace ZQ {

ZQDialogButton::ZQDialogButton(ZQSprite* sprite, ZQSound* sound, unsigned int id, const wchar_t* normal,
                               const wchar_t* pressed, const wchar_t* over, const wchar_t* disabled,
                               D3DXVECTOR3& position, _ZQResponseDialog_tag* response, bool pixelExact)
    : m_core(*this, *this, response, sprite, sound, id, normal, pressed, over, disabled, position, pixelExact) {}

ZQ_CLICKABLE_MEMBERS(ZQDialogButton, nullptr)
ZQ_CLICKABLE_LOOKS(ZQDialogButton)

} // namespace ZQ
