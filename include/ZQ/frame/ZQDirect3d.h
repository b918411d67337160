#pragma once
#include "ZQ/core/ZQArray.h"
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQTimer.h"
#include "ZQ/frame/ZQD3DEnumeration.h"
#include "ZQ/frame/ZQDeviceSettings.h"
#include "ZQ/frame/ZQErrors.h"
#include "ZQ/frame/ZQKeyboard.h"
#include "ZQ/frame/ZQMouse.h"
#include "ZQ/frame/ZQResponseWindow.h"
#include "ZQ/frame/ZQSceneManager.h"

namespace ZQ {

// The host's function callbacks; each receives the context registered beside it.
typedef bool(CALLBACK* ZQCallbackIsDeviceAcceptable)(D3DCAPS9* caps, D3DFORMAT adapterFormat,
                                                     D3DFORMAT backBufferFormat, bool windowed, void* context);
typedef bool(CALLBACK* ZQCallbackModifyDeviceSettings)(_ZQDeviceSettings_tag* settings, const D3DCAPS9* caps,
                                                       void* context);
typedef HRESULT(CALLBACK* ZQCallbackDeviceCreated)(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer,
                                                   void* context);
typedef HRESULT(CALLBACK* ZQCallbackDeviceReset)(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer,
                                                 void* context);
typedef void(CALLBACK* ZQCallbackDeviceLost)(void* context);
typedef void(CALLBACK* ZQCallbackDeviceDestroyed)(void* context);
typedef void(CALLBACK* ZQCallbackFrameMove)(IDirect3DDevice9* device, double time, float elapsedTime, void* context);
typedef void(CALLBACK* ZQCallbackFrameRender)(IDirect3DDevice9* device, double time, float elapsedTime,
                                              void* context);
typedef void(CALLBACK* ZQCallbackKeyboard)(UINT key, bool keyDown, bool altDown, void* context);
typedef void(CALLBACK* ZQCallbackMouse)(bool buttonDown, bool leftButton, bool rightButton, bool middleButton,
                                        bool sideButton1, bool sideButton2, int wheelDelta, int x, int y,
                                        void* context);
typedef LRESULT(CALLBACK* ZQCallbackMsgProc)(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam,
                                             bool* noFurtherProcessing, void* context);
/// A timer of the timer list fires with its id and context.
typedef void(CALLBACK* ZQCallbackTimer)(UINT id, void* context);

/// One timer of the frame's timer list, serviced once per frame.
struct _ZQTimerList_tag {
    ZQCallbackTimer callback;
    void* context;
    float timeoutInSecs;
    float countdown;
    bool enabled;
    UINT id;
};
typedef ZQArray<_ZQTimerList_tag> ZQTimerArray;

// Every field of the framework state, with its type and default: X(type, Name, default). Each has a
// GetName/SetName pair (GetFPS, SetFPS, ...); the context of each callback is the field named after it
// with UserContext appended (FrameMoveFuncUserContext).
#define ZQ_DIRECT3D_STATE(X)                                                                                          \
    X(bool, InitCalled, false)                                                                                        \
    X(bool, Inited, false)                                                                                            \
    X(bool, ShowMsgBoxOnError, true)                                                                                  \
    X(bool, HandleDefaultHotkeys, true)                                                                               \
    X(bool, HandleAltEnter, true)                                                                                     \
    X(bool, OverrideWindowed, false)                                                                                  \
    X(bool, OverrideFullScreen, false)                                                                                \
    X(bool, OverrideForceHAL, false)                                                                                  \
    X(bool, OverrideForceREF, false)                                                                                  \
    X(bool, OverrideForcePureHWVP, false)                                                                             \
    X(bool, OverrideForceHWVP, false)                                                                                 \
    X(bool, OverrideForceSWVP, false)                                                                                 \
    X(bool, OverrideConstantFrameTime, false)                                                                         \
    X(bool, ConstantFrameTime, false)                                                                                 \
    X(bool, NoStats, false)                                                                                           \
    X(bool, OverrideRelaunchMCE, false)                                                                               \
    X(bool, Automation, false)                                                                                        \
    X(bool, InsideDeviceCallback, false)                                                                              \
    X(bool, DeviceLost, false)                                                                                        \
    X(bool, DeviceObjectsCreated, false)                                                                              \
    X(bool, DeviceObjectsReset, false)                                                                                \
    X(bool, DeviceCreateCalled, false)                                                                                \
    X(bool, RenderingPaused, false)                                                                                   \
    X(bool, TimePaused, false)                                                                                        \
    X(bool, IgnoreSizeChange, false)                                                                                  \
    X(bool, TopmostWhileWindowed, false)                                                                              \
    X(bool, DeviceCreated, false)                                                                                     \
    X(bool, InsideMainloop, false)                                                                                    \
    X(bool, AutoChangeAdapter, false)                                                                                 \
    X(bool, WireframeMode, false)                                                                                     \
    X(bool, Shutdown, false)                                                                                          \
    X(int, ExitCode, 0)                                                                                               \
    X(int, OverrideForceVsync, -1)                                                                                    \
    X(int, OverrideAdapterOrdinal, -1)                                                                                \
    X(int, OverrideWidth, 0)                                                                                          \
    X(int, OverrideHeight, 0)                                                                                         \
    X(int, OverrideStartX, -1)                                                                                        \
    X(int, OverrideStartY, -1)                                                                                        \
    X(int, OverrideQuitAfterFrame, 0)                                                                                 \
    X(int, PauseTimeCount, 0)                                                                                         \
    X(int, PauseRenderingCount, 0)                                                                                    \
    X(int, CurrentFrameNumber, 0)                                                                                     \
    X(UINT, FullScreenBackBufferWidthAtModeChange, 0)                                                                 \
    X(UINT, FullScreenBackBufferHeightAtModeChange, 0)                                                                \
    X(UINT, WindowBackBufferWidthAtModeChange, 0)                                                                     \
    X(UINT, WindowBackBufferHeightAtModeChange, 0)                                                                    \
    X(DWORD, WindowedStyleAtModeChange, 0)                                                                            \
    X(DWORD, LastStatsUpdateFrames, 0)                                                                                \
    X(HMONITOR, AdapterMonitor, nullptr)                                                                              \
    X(float, OverrideConstantTimePerFrame, 0.0f)                                                                      \
    X(float, TimePerFrame, 0.0f)                                                                                      \
    X(float, ElapsedTime, 0.0f)                                                                                       \
    X(float, FPS, 0.0f)                                                                                               \
    X(double, Time, 0.0)                                                                                              \
    X(double, LastStatsUpdateTime, 0.0)                                                                               \
    X(ZQCallbackIsDeviceAcceptable, IsDeviceAcceptableFunc, nullptr)                                                  \
    X(ZQCallbackModifyDeviceSettings, ModifyDeviceSettingsFunc, nullptr)                                              \
    X(ZQCallbackDeviceCreated, DeviceCreatedFunc, nullptr)                                                            \
    X(ZQCallbackDeviceReset, DeviceResetFunc, nullptr)                                                                \
    X(ZQCallbackDeviceLost, DeviceLostFunc, nullptr)                                                                  \
    X(ZQCallbackDeviceDestroyed, DeviceDestroyedFunc, nullptr)                                                        \
    X(ZQCallbackFrameMove, FrameMoveFunc, nullptr)                                                                    \
    X(ZQCallbackFrameRender, FrameRenderFunc, nullptr)                                                                \
    X(ZQCallbackKeyboard, KeyboardFunc, nullptr)                                                                      \
    X(ZQCallbackMouse, MouseFunc, nullptr)                                                                            \
    X(ZQCallbackMsgProc, WindowMsgFunc, nullptr)                                                                      \
    X(void*, IsDeviceAcceptableFuncUserContext, nullptr)                                                              \
    X(void*, ModifyDeviceSettingsFuncUserContext, nullptr)                                                            \
    X(void*, DeviceCreatedFuncUserContext, nullptr)                                                                   \
    X(void*, DeviceResetFuncUserContext, nullptr)                                                                     \
    X(void*, DeviceLostFuncUserContext, nullptr)                                                                      \
    X(void*, DeviceDestroyedFuncUserContext, nullptr)                                                                 \
    X(void*, FrameMoveFuncUserContext, nullptr)                                                                       \
    X(void*, FrameRenderFuncUserContext, nullptr)                                                                     \
    X(void*, KeyboardFuncUserContext, nullptr)                                                                        \
    X(void*, MouseFuncUserContext, nullptr)                                                                           \
    X(void*, WindowMsgFuncUserContext, nullptr)                                                                       \
    X(IDirect3D9*, D3D, nullptr)                                                                                      \
    X(IDirect3DDevice9*, D3DDevice, nullptr)                                                                          \
    X(WINDOWPLACEMENT*, WindowedPlacement, nullptr)                                                                   \
    X(D3DSURFACE_DESC*, BackBufferSurfaceDesc, nullptr)                                                               \
    X(D3DCAPS9*, Caps, nullptr)                                                                                       \
    X(_ZQDeviceSettings_tag*, CurrentDeviceSettings, nullptr)                                                         \
    X(ZQTimer*, Timer, nullptr)                                                                                       \
    X(ZQD3DEnumeration*, D3DEnumeration, nullptr)                                                                     \
    X(ZQTimerArray*, TimerList, nullptr)

// The statistics texts the framework writes, with their capacities: X(Name, capacity).
#define ZQ_DIRECT3D_TEXTS(X) X(DeviceStats, 256) X(StaticFrameStats, 256) X(FPSStats, 64)

/// The device framework under the application object: one state record under one lock (every field
/// has Get<Name> and Set<Name>), the host's callbacks, device creation, reset and loss, the frame,
/// the timer list, the error report and the statistics texts. Callbacks never run under the lock.
/// The records (placement, back-buffer description, caps, settings, timer, enumeration, timer list)
/// are exchanged as pointers: what the framework allocated stays its own and is freed at destruction,
/// a pointer the caller sets stays the caller's and must outlive its use; null switches the record off.
class ZQ_API ZQDirect3d : public ZQKeyboard, public ZQMouse, public ZQSceneManager, public _ZQResponseWindow_tag {
public:
    ZQDirect3d();
    virtual ~ZQDirect3d();
    ZQDirect3d(const ZQDirect3d&) = delete;
    ZQDirect3d& operator=(const ZQDirect3d&) = delete;

#define ZQ_DECLARE_ACCESSORS(type, name, initial)                                                                   \
    type Get##name();                                                                                                 \
    void Set##name(type value);
    ZQ_DIRECT3D_STATE(ZQ_DECLARE_ACCESSORS)
#undef ZQ_DECLARE_ACCESSORS

    /// Timer resolution, command line (when parseCommandLine), D3DX version check, Direct3D object.
    /// The other three arguments are ignored. Returns 0, ZQ_E_NO_DIRECT3D or ZQ_E_INCORRECT_VERSION.
    HRESULT Init(bool parseCommandLine, bool showMsgBoxOnError, bool handleDefaultHotkeys, bool handleAltEnter);
    /// Creates the device (and the window and Init if they are missing). width and height 0 take the
    /// window's client size (windowed) or the desktop's (full screen); command-line overrides win.
    HRESULT CreateDevice(UINT adapter = 0, bool windowed = true, int width = 0, int height = 0,
                         ZQCallbackIsDeviceAcceptable isDeviceAcceptable = nullptr,
                         ZQCallbackModifyDeviceSettings modifyDeviceSettings = nullptr, void* context = nullptr);
    /// As CreateDevice, from whole wanted settings matched under options (null: the defaults), for
    /// what the short form cannot ask for: multisampling, formats, refresh rate, depth buffer. Values
    /// the command line forces are kept exactly, whatever the options say.
    HRESULT CreateDeviceFromSettings(const _ZQDeviceSettings_tag* wanted, const _ZQMatchOptions_tag* options = nullptr,
                                     ZQCallbackIsDeviceAcceptable isDeviceAcceptable = nullptr,
                                     ZQCallbackModifyDeviceSettings modifyDeviceSettings = nullptr,
                                     void* context = nullptr);
    /// Runs until the quit message; E_FAIL when called from a device callback or inside the loop.
    HRESULT MainLoop(HACCEL accelerators = nullptr);
    /// One frame: recovery, time, deferred shutdown, timers, callbacks, present.
    void Render3DEnvironment();
    /// Nested pause counts: true adds one, false takes one away (not below 0).
    void Pause(bool pauseTime, bool pauseRendering);
    /// A command line that asked for constant frame time wins over the arguments.
    void ConstantFrameTime(bool enabled, float timePerFrame = 0.0333f);
    /// Requests shutdown; the next frame carries it out.
    void Shutdown();

    /// Adds a timer that fires every timeoutInSecs; its id goes to *id when id is not null.
    HRESULT AddTimer(ZQCallbackTimer callback, float timeoutInSecs, UINT* id = nullptr, void* context = nullptr);
    /// Gives a timer a new timeout and restarts its countdown; E_INVALIDARG for an unknown id.
    HRESULT ChangeTimer(UINT id, float timeoutInSecs);
    /// Removes a timer (also from inside its own callback); E_INVALIDARG for an unknown id.
    HRESULT RemoveTimer(UINT id);

    bool IsWindowed();
    bool IsActive();
    bool IsRenderingPaused();
    bool IsTimePaused();
    IDirect3D9* GetD3DObject() { return GetD3D(); }
    IDirect3DDevice9* GetDevice() { return GetD3DDevice(); }
    /// The live device's caps (the Caps record).
    D3DCAPS9* GetDeviceCaps() { return GetCaps(); }
    /// A copy of the live device's settings (zeroed without a device).
    _ZQDeviceSettings_tag GetDeviceSettings();
    /// The enumeration object, built on first use and read again when enumerate is true; null
    /// without a Direct3D object.
    ZQD3DEnumeration* PrepareEnumerationObject(bool enumerate = false);

    /// Counts a frame; once a second sets FPS and the "%0.2f fps" text. Nothing with NoStats.
    void UpdateFrameStats();
    /// "<fps text> <settings text>"; the fps part empty when showFPS is false.
    const wchar_t* GetFrameStats(bool showFPS = true);
    /// Describes the current settings (vsync, size, formats, multisampling). Nothing with NoStats.
    void UpdateStaticFrameStats();
    /// The statistics texts; GetDeviceStats holds device type, vertex processing and adapter, written
    /// when a device is created. The setters copy the text into the framework's buffer, cut to fit.
#define ZQ_DECLARE_TEXT_ACCESSORS(name, capacity)                                                                   \
    wchar_t* Get##name();                                                                                             \
    void Set##name(const wchar_t* text);
    ZQ_DIRECT3D_TEXTS(ZQ_DECLARE_TEXT_ACCESSORS)
#undef ZQ_DECLARE_TEXT_ACCESSORS

    /// Fills valid with the settings closest to wanted that the system supports and the acceptance
    /// callback accepts, under the default match options; ZQ_E_NO_COMPATIBLE_DEVICES when there are none.
    HRESULT FindValidDeviceSettings(_ZQDeviceSettings_tag* valid, const _ZQDeviceSettings_tag* wanted);
    /// As above under options (null: the defaults). Every enumerated combination that keeps the values
    /// marked ZQ_MATCH_PRESERVE is ranked: adapter, device type and window state first, then formats
    /// (the desktop's when not wanted), vertex processing, full-screen size and refresh rate (the
    /// desktop's when not wanted), multisampling, depth-stencil format and presentation interval. When no
    /// combination qualifies the message names the requirement none meets.
    HRESULT FindValidDeviceSettings(_ZQDeviceSettings_tag* valid, const _ZQDeviceSettings_tag* wanted,
                                    const _ZQMatchOptions_tag* options);
    /// Creates the device for settings, or resets device when it can serve them, running the
    /// modification and device-event callbacks.
    HRESULT ChangeDevice(const _ZQDeviceSettings_tag* settings, IDirect3DDevice9* device, bool forceRecreate,
                         bool clipWindowToSingleAdapter);
    /// Switches between windowed and full screen, keeping each mode's last size.
    HRESULT ToggleFullScreen();
    /// Switches between the hardware and the reference device.
    HRESULT ToggleREF();
    /// Runs the lost and destroyed callbacks as needed and releases the device.
    void Cleanup3DEnvironment(bool releaseSettings = true);

    /// The one framework object of the process.
    static ZQDirect3d* m_pDirect3d;

protected:
    void ParseCommandLine();
    /// Runs Init(true, ...) unless it ran already; E_FAIL when an earlier Init failed.
    HRESULT EnsureInited();
    /// Sets the exit code and shows the code's text (unless message boxes are off).
    void DisplayErrorMessage(HRESULT code);
    void HandleTimers();
    void Shutdown(int exitCode);
    HRESULT Reset3DEnvironment();
    /// Repaints with the last frame's time values (WM_PAINT while paused).
    void RenderPausedFrame();
    /// Routes one keyboard or mouse message to the registered function and the scene.
    void RouteInput(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam);

private:
    /// Options for settings derived from the live device's (a toggle, a changed desktop): everything as
    /// close as offered, the window state kept, the formats left to the new mode.
    static _ZQMatchOptions_tag KeepingOptions();
    /// Writes what the command line forces into wanted and marks it to be kept exactly.
    void ApplyCommandLine(_ZQDeviceSettings_tag* wanted, _ZQMatchOptions_tag* options);
    HRESULT CreateDeviceMatching(_ZQDeviceSettings_tag wanted, _ZQMatchOptions_tag options,
                                 ZQCallbackIsDeviceAcceptable isDeviceAcceptable,
                                 ZQCallbackModifyDeviceSettings modifyDeviceSettings, void* context);
    HRESULT Create3DEnvironment(const _ZQDeviceSettings_tag& settings);
    HRESULT RunDeviceCallbacks(ZQCallbackDeviceCreated function, void* context,
                               HRESULT (ZQScene::*sceneCallback)(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*),
                               HRESULT objectsFailure);
    HRESULT RunCreatedCallbacks();
    HRESULT RunResetCallbacks();
    void RunLostCallbacks();
    void RunDestroyedCallbacks();
    bool DeviceGone();
    /// The one place the Direct3D object is released.
    void ReleaseD3D();
    void UpdateBackBufferDescription(IDirect3DDevice9* device);
    void UpdateDeviceStats();
    /// A copy of the back-buffer description (zeroed when the record is switched off).
    D3DSURFACE_DESC BackBufferCopy();
    void AdjustWindowToBackBuffer(const _ZQDeviceSettings_tag& settings);

#define ZQ_DECLARE_FIELD(type, name, initial) type m_##name = initial;
    ZQ_DIRECT3D_STATE(ZQ_DECLARE_FIELD)
#undef ZQ_DECLARE_FIELD
    // What the record pointers above point to until the host sets its own.
    WINDOWPLACEMENT m_ownWindowedPlacement;
    D3DSURFACE_DESC m_ownBackBufferSurfaceDesc;
    D3DCAPS9 m_ownCaps;
    _ZQDeviceSettings_tag m_ownDeviceSettings;
    ZQTimer m_ownTimer;
    ZQTimerArray m_ownTimerList;
    ZQD3DEnumeration* m_ownEnumeration;
#define ZQ_DECLARE_TEXT(name, capacity) wchar_t m_##name[capacity] = {};
    ZQ_DIRECT3D_TEXTS(ZQ_DECLARE_TEXT)
#undef ZQ_DECLARE_TEXT
    wchar_t m_frameStats[256];
    UINT m_nextTimerId;
    CRITICAL_SECTION m_stateLock;
};

} // namespace ZQ
