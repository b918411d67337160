#include "ZQ/frame/ZQMouse.h"
#include "ZQ/core/ZQLock.h"

namespace ZQ {

ZQMouse::ZQMouse() : m_buttons() {
    InitializeCriticalSection(&m_lock);
}

ZQMouse::~ZQMouse() {
    DeleteCriticalSection(&m_lock);
}

bool ZQMouse::IsButtonDown(Button button) {
    ZQLock lock(&m_lock);
    return m_buttons[button];
}

const bool* ZQMouse::GetMouseButtons() {
    ZQLock lock(&m_lock);
    return m_buttons;
}

void ZQMouse::RecordButtons(WPARAM keyFlags) {
    ZQLock lock(&m_lock);
    m_buttons[Left] = (keyFlags & MK_LBUTTON) != 0;
    m_buttons[Middle] = (keyFlags & MK_MBUTTON) != 0;
    m_buttons[Right] = (keyFlags & MK_RBUTTON) != 0;
    m_buttons[Side1] = (keyFlags & MK_XBUTTON1) != 0;
    m_buttons[Side2] = (keyFlags & MK_XBUTTON2) != 0;
}

} // namespace ZQ
