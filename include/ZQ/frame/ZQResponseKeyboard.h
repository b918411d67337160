#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// The accessibility-key records saved at start-up, so that they can be restored on exit.
/// The defaults do nothing and return null. Overrides must not throw.
class ZQ_API _ZQResponseKeyboard_tag {
public:
    virtual void SetStartupStickyKeys(STICKYKEYS* keys);
    virtual STICKYKEYS* GetStartupStickyKeys();
    virtual void SetStartupToggleKeys(TOGGLEKEYS* keys);
    virtual TOGGLEKEYS* GetStartupToggleKeys();
    virtual void SetStartupFilterKeys(FILTERKEYS* keys);
    virtual FILTERKEYS* GetStartupFilterKeys();

protected:
    ~_ZQResponseKeyboard_tag() = default;
};

} // namespace ZQ
