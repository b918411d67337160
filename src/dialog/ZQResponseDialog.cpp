#include "ZQ/dialog/ZQResponseDialog.h"

namespace ZQ {

void __stdcall _ZQResponseDialog_tag::OnEvent(unsigned int, int, int) {}

ZQDialogResponseEvent::~ZQDialogResponseEvent() = default;

void ZQDialogResponseEvent::SetResponse(_ZQResponseDialog_tag* response) {
    m_response = response;
}

_ZQResponseDialog_tag* ZQDialogResponseEvent::GetResponse() {
    return m_response;
}

} // namespace ZQ
