#include "ZQ/dialog/ZQDialogAniButton.h"

#include "src/dialog/ZQDialogClickableMembers.h"

namespace ZQ {

ZQDialogAniButton::ZQDialogAniButton(ZQAnimate* animate, ZQSound* sound, unsigned int id, const wchar_t* normal,
                                     const wchar_t* pressed, const wchar_t* over, const wchar_t* disabled,
                                     ZQRect& rect, _ZQResponseDialog_tag* response, const wchar_t* maskChunk)
    : m_core(*this, *this, response, animate, sound, id, normal, pressed, over, disabled, rect, maskChunk) {}

ZQ_CLICKABLE_MEMBERS(ZQDialogAniButton, nullptr)
ZQ_CLICKABLE_LOOKS(ZQDialogAniButton)

} // namespace ZQ
