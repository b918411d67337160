#include "ZQ/dialog/ZQDialogAniRadioButton.h"

#include "src/dialog/ZQDialogClickableMembers.h"

namespace ZQ {

ZQDialogAniRadioButton::ZQDialogAniRadioButton(ZQAnimate* animate, ZQSound* sound, unsigned int id,
                                               unsigned int group, const wchar_t* normal, const wchar_t* selected,
                                               const wchar_t* over, const wchar_t* disabled, ZQRect& rect,
                                               _ZQResponseDialog_tag* response, const wchar_t* maskChunk)
    : m_core(*this, *this, response, animate, sound, id, normal, selected, over, disabled, rect, maskChunk),
      m_group(group) {}

ZQ_CLICKABLE_MEMBERS(ZQDialogAniRadioButton, nullptr)
ZQ_CLICKABLE_SELECTION(ZQDialogAniRadioButton)

} // namespace ZQ
