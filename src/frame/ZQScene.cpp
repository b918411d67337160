#include "ZQ/frame/ZQScene.h"

namespace ZQ {

bool ZQScene::IsDeviceAcceptable(D3DCAPS9*, D3DFORMAT, D3DFORMAT, bool, void*) {
    return true;
}

bool ZQScene::ModifyDeviceSettings(_ZQDeviceSettings_tag*, const D3DCAPS9*, void*) {
    return true;
}

HRESULT ZQScene::OnCreateDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {
    return S_OK;
}

HRESULT ZQScene::OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {
    return S_OK;
}

void ZQScene::OnLostDevice(void*) {}

void ZQScene::OnDestroyDevice(void*) {}

void ZQScene::OnFrameMove(IDirect3DDevice9*, double, float, void*) {}

void ZQScene::OnNetwork(IDirect3DDevice9*, double, float, void*) {}

void ZQScene::OnFrameRender(IDirect3DDevice9*, double, float, void*) {}

void ZQScene::OnKeyboard(UINT, bool, bool, void*) {}

void ZQScene::OnMouse(bool, bool, bool, bool, bool, bool, int, int, int, void*) {}

LRESULT ZQScene::OnMsgProc(HWND, UINT msg, WPARAM, LPARAM, bool*, void*) {
    return msg;
}

ZQScene::~ZQScene() = default;

} // namespace ZQ
