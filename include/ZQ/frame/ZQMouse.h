#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// Mouse-button state of the application object, in the order left, middle, right, side 1, side 2.
class ZQ_API ZQMouse : public ZQHeapObject {
public:
    enum Button { Left = 0, Middle = 1, Right = 2, Side1 = 3, Side2 = 4 };
    ZQMouse();
    /// A copy shares the button array (not its contents); each keeps its own lock.
    ZQMouse(const ZQMouse& other);
    ZQMouse& operator=(const ZQMouse& other);
    virtual ~ZQMouse();

    bool IsButtonDown(Button button);
    /// The five states, in the order of Button.
    bool* GetMouseButtons();
    /// Stores the caller's array of five states in place of the current one (null: buttons are not recorded).
    void SetMouseButtons(bool* buttons);

protected:
    /// Takes the five states from a mouse message's MK_ flags.
    void RecordButtons(WPARAM keyFlags);

private:
    struct Storage;
    void Share(const ZQMouse& other);

    // The array this mouse allocated, shared with its copies and freed with the last of them.
    Storage* m_storage;
    CRITICAL_SECTION m_lock;
    bool* m_buttons; ///< MouseButtons: left, middle, right, side 1, side 2
};

} // namespace ZQ
