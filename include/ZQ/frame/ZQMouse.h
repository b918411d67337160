#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// Mouse-button state of the application object, in the order left, middle, right, side 1, side 2.
class ZQ_API ZQMouse {
public:
    enum Button { Left = 0, Middle = 1, Right = 2, Side1 = 3, Side2 = 4 };
    ZQMouse();
    ZQMouse(const ZQMouse&) = delete;
    ZQMouse& operator=(const ZQMouse&) = delete;
    virtual ~ZQMouse();

    bool IsButtonDown(Button button);
    /// The five states, in the order of Button.
    const bool* GetMouseButtons();

protected:
    /// Takes the five states from a mouse message's MK_ flags.
    void RecordButtons(WPARAM keyFlags);

private:
    CRITICAL_SECTION m_lock;
    bool m_buttons[5];
};

} // namespace ZQ
