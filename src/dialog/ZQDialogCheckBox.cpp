#include "ZQ/dialog/ZQDialogCheckBox.h"

#include "src/dialog/ZQDialogClickableMembers.h"

namespace ZQ {

ZQDialogCheckBox::ZQDialogCheckBox(ZQSprite* sprite, ZQSound* sound, unsigned int id, const wchar_t* box,
                                   const wchar_t* mark, const wchar_t* over, const wchar_t* disabled,
                                   D3DXVECTOR3& position, _ZQResponseDialog_tag* response, bool pixelExact)
    : m_core(*this, *this, response, sprite, sound, id, box, mark, over, disabled, position, pixelExact) {}

ZQ_CLICKABLE_MEMBERS(ZQDialogCheckBox, &m_mark)
ZQ_CLICKABLE_LOOKS(ZQDialogCheckBox)
ZQ_CLICKABLE_MARK(ZQDialogCheckBox)

} // namespace ZQ
