#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/frame/ZQDeviceSettings.h"

namespace ZQ {

/// Base class of one screen. Every operation does nothing by default; override what the screen needs.
/// The frame calls only the current scene. Each callback receives the context registered with the
/// matching function callback of the framework. Overrides must not throw: the library calls them from
/// code that cannot unwind (the scene manager's lock is held around OnCreateDevice and the others).
class ZQ_API ZQScene : public ZQHeapObject {
public:
    ZQScene() = default;
    ZQScene(const ZQScene&) {}
    ZQScene& operator=(const ZQScene&) { return *this; }

    /// Never called by the frame (device selection uses the registered functions); returns true.
    virtual bool IsDeviceAcceptable(D3DCAPS9* caps, D3DFORMAT adapterFormat, D3DFORMAT backBufferFormat,
                                    bool windowed, void* context);
    /// Never called by the frame; returns true.
    virtual bool ModifyDeviceSettings(_ZQDeviceSettings_tag* settings, const D3DCAPS9* caps, void* context);
    /// On becoming current, and at device creation while current. The device may be null. Result ignored.
    virtual HRESULT OnCreateDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    /// After OnCreateDevice and after every device reset. The device may be null. Result ignored.
    virtual HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    /// Before a reset, on leaving and at destruction; must be safe to repeat.
    virtual void OnLostDevice(void* context);
    /// On leaving and at destruction; must be safe to repeat (and to call without a create).
    virtual void OnDestroyDevice(void* context);
    /// Every frame, before the registered frame-move function.
    virtual void OnFrameMove(IDirect3DDevice9* device, double time, float elapsedTime, void* context);
    /// Every frame, also while rendering is paused.
    virtual void OnNetwork(IDirect3DDevice9* device, double time, float elapsedTime, void* context);
    /// Every frame while rendering runs; the scene begins and ends the device scene itself.
    virtual void OnFrameRender(IDirect3DDevice9* device, double time, float elapsedTime, void* context);
    /// Key down and up; altDown is bit 29 of the message's lParam.
    virtual void OnKeyboard(UINT key, bool keyDown, bool altDown, void* context);
    /// buttonDown is true only for the four button-down messages; wheelDelta is 0 but for wheel messages.
    virtual void OnMouse(bool buttonDown, bool leftButton, bool rightButton, bool middleButton, bool sideButton1,
                         bool sideButton2, int wheelDelta, int x, int y, void* context);
    /// Every message of the window; set *noFurtherProcessing to stop default handling.
    /// The default returns the message number (the frame ignores the value).
    virtual LRESULT OnMsgProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam, bool* noFurtherProcessing,
                              void* context);
    virtual ~ZQScene();
};

} // namespace ZQ
