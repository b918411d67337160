#include "ZQ/dialog/ZQDialogAniCheckBox.h"

#include "src/dialog/ZQDialogClickableMembers.h"

namespace ZQ {

ZQDialogAniCheckBox::ZQDialogAniCheckBox(ZQAnimate* animate, ZQSound* sound, unsigned int id, const wchar_t* box,
                                         const wchar_t* mark, const wchar_t* over, const wchar_t* disabled,
                                         ZQRect& rect, _ZQResponseDialog_tag* response, const wchar_t* maskChunk)
    : m_core(*this, *this, response, animate, sound, id, box, mark, over, disabled, rect, maskChunk), m_mark(animate) {}

ZQ_CLICKABLE_MEMBERS(ZQDialogAniCheckBox, &m_mark)
ZQ_CLICKABLE_LOOKS(ZQDialogAniCheckBox)
ZQ_CLICKABLE_MARK(ZQDialogAniCheckBox)

} // namespace ZQ
