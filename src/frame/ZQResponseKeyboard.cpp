#include "ZQ/frame/ZQResponseKeyboard.h"

namespace ZQ {

void _ZQResponseKeyboard_tag::SetStartupStickyKeys(STICKYKEYS*) {}
STICKYKEYS* _ZQResponseKeyboard_tag::GetStartupStickyKeys() { return nullptr; }
void _ZQResponseKeyboard_tag::SetStartupToggleKeys(TOGGLEKEYS*) {}
TOGGLEKEYS* _ZQResponseKeyboard_tag::GetStartupToggleKeys() { return nullptr; }
void _ZQResponseKeyboard_tag::SetStartupFilterKeys(FILTERKEYS*) {}
FILTERKEYS* _ZQResponseKeyboard_tag::GetStartupFilterKeys() { return nullptr; }

} // namespace ZQ
