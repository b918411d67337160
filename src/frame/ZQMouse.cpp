#include "ZQ/frame/ZQMouse.h"
#include "ZQ/core/ZQLock.h"

namespace ZQ {

struct ZQMouse::Storage {
    bool buttons[5];
    LONG users;
};

ZQMouse::ZQMouse() : m_storage(new Storage{{}, 1}), m_buttons(m_storage->buttons) {
    InitializeCriticalSection(&m_lock);
}

ZQMouse::ZQMouse(const ZQMouse& other) : m_storage(nullptr), m_buttons(nullptr) {
    InitializeCriticalSection(&m_lock);
    Share(other);
}

ZQMouse& ZQMouse::operator=(const ZQMouse& other) {
    if (this != &other)
        Share(other);
    return *this;
}

void ZQMouse::Share(const ZQMouse& other) {
    Storage* previous;
    {
        ZQLock theirs(const_cast<CRITICAL_SECTION*>(&other.m_lock));
        ZQLock mine(&m_lock);
        InterlockedIncrement(&other.m_storage->users);
        previous = m_storage;
        m_storage = other.m_storage;
        m_buttons = other.m_buttons;
    }
    if (previous && InterlockedDecrement(&previous->users) == 0)
        delete previous;
}

ZQMouse::~ZQMouse() {
    if (InterlockedDecrement(&m_storage->users) == 0)
        delete m_storage;
    DeleteCriticalSection(&m_lock);
}

bool ZQMouse::IsButtonDown(Button button) {
    const bool* buttons = GetMouseButtons();
    return buttons && buttons[button];
}

bool* ZQMouse::GetMouseButtons() {
    ZQLock lock(&m_lock);
    return m_buttons;
}

void ZQMouse::SetMouseButtons(bool* buttons) {
    ZQLock lock(&m_lock);
    m_buttons = buttons;
}

// Readers on other threads may see a partly updated set: the five writes are not under the lock.
void ZQMouse::RecordButtons(WPARAM keyFlags) {
    bool* buttons = GetMouseButtons();
    if (!buttons)
        return;
    buttons[Left] = (keyFlags & MK_LBUTTON) != 0;
    buttons[Middle] = (keyFlags & MK_MBUTTON) != 0;
    buttons[Right] = (keyFlags & MK_RBUTTON) != 0;
    buttons[Side1] = (keyFlags & MK_XBUTTON1) != 0;
    buttons[Side2] = (keyFlags & MK_XBUTTON2) != 0;
}

} // namespace ZQ
