#include "ZQ/dialog/ZQDialogTimeBar.h"

namespace ZQ {

ZQDialogTimeBar::ZQDialogTimeBar(ZQSprite* sprite, unsigned int id, const wchar_t* bar, const wchar_t* background,
                                 D3DXVECTOR3& barPosition, D3DXVECTOR3& backgroundPosition, float fTime,
                                 unsigned long direction, _ZQResponseDialog_tag* response)
    : ZQDialogProgress(sprite, id, bar, background, barPosition, backgroundPosition, fTime, direction, response) {}

void ZQDialogTimeBar::OnFrameMove(IDirect3DDevice9*, double, float elapsed, void*) {
    Move(elapsed, true);
}

} // namespace ZQ
