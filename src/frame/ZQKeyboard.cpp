#include "ZQ/frame/ZQKeyboard.h"
#include "ZQ/core/ZQLock.h"

namespace ZQ {

ZQKeyboard* ZQKeyboard::m_pKeyboard = nullptr;

namespace {
// Bits of the accessibility records' flags.
const DWORD kFeatureOn = 0x1;
const DWORD kHotKeyBits = 0xC; // hot-key active, confirm hot key
const DWORD kLeftWindowsKey = 91;
const DWORD kRightWindowsKey = 92;

// The low-level hook needs the NT family from version 5 on.
bool HasLowLevelHooks() {
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    GetVersionExW(&version);
#pragma GCC diagnostic pop
    return version.dwPlatformId == VER_PLATFORM_WIN32_NT && version.dwMajorVersion >= 5;
}

HMODULE LibraryModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&ZQKeyboard::LowLevelKeyboardProc), &module);
    return module;
}

// Switches a feature's accessibility hot keys off (in the saved record too) when the feature is off.
template <typename Record> void DisableHotKeysIfOff(Record& record, UINT setAction) {
    if (record.dwFlags & kFeatureOn)
        return;
    record.dwFlags &= ~kHotKeyBits;
    SystemParametersInfoW(setAction, sizeof(Record), &record, 0);
}
} // namespace

ZQKeyboard::ZQKeyboard()
    : m_startupStickyKeys{sizeof(STICKYKEYS), 0}, m_startupToggleKeys{sizeof(TOGGLEKEYS), 0},
      m_startupFilterKeys{sizeof(FILTERKEYS), 0, 0, 0, 0, 0}, m_allowShortcutKeysWhenFullscreen(false),
      m_allowShortcutKeysWhenWindowed(true), m_allowShortcutKeys(false), m_keys(), m_keyboardHook(nullptr) {
    InitializeCriticalSection(&m_lock);
    m_pKeyboard = this;
}

ZQKeyboard::~ZQKeyboard() {
    if (m_keyboardHook)
        UnhookWindowsHookEx(m_keyboardHook);
    if (m_pKeyboard == this)
        m_pKeyboard = nullptr;
    DeleteCriticalSection(&m_lock);
}

void ZQKeyboard::SetStartupStickyKeys(STICKYKEYS* keys) {
    ZQLock lock(&m_lock);
    if (keys)
        m_startupStickyKeys = *keys;
}

STICKYKEYS* ZQKeyboard::GetStartupStickyKeys() {
    ZQLock lock(&m_lock);
    return &m_startupStickyKeys;
}

void ZQKeyboard::SetStartupToggleKeys(TOGGLEKEYS* keys) {
    ZQLock lock(&m_lock);
    if (keys)
        m_startupToggleKeys = *keys;
}

TOGGLEKEYS* ZQKeyboard::GetStartupToggleKeys() {
    ZQLock lock(&m_lock);
    return &m_startupToggleKeys;
}

void ZQKeyboard::SetStartupFilterKeys(FILTERKEYS* keys) {
    ZQLock lock(&m_lock);
    if (keys)
        m_startupFilterKeys = *keys;
}

FILTERKEYS* ZQKeyboard::GetStartupFilterKeys() {
    ZQLock lock(&m_lock);
    return &m_startupFilterKeys;
}

bool ZQKeyboard::IsKeyDown(UINT key) {
    ZQLock lock(&m_lock);
    return m_keys[key & 0xFF];
}

void ZQKeyboard::RecordKey(UINT key, bool down) {
    ZQLock lock(&m_lock);
    m_keys[key & 0xFF] = down;
}

void ZQKeyboard::SetAllowShortcutKeysWhenFullscreen(bool allow) {
    ZQLock lock(&m_lock);
    m_allowShortcutKeysWhenFullscreen = allow;
}

bool ZQKeyboard::GetAllowShortcutKeysWhenFullscreen() {
    ZQLock lock(&m_lock);
    return m_allowShortcutKeysWhenFullscreen;
}

void ZQKeyboard::SetAllowShortcutKeysWhenWindowed(bool allow) {
    ZQLock lock(&m_lock);
    m_allowShortcutKeysWhenWindowed = allow;
}

bool ZQKeyboard::GetAllowShortcutKeysWhenWindowed() {
    ZQLock lock(&m_lock);
    return m_allowShortcutKeysWhenWindowed;
}

void ZQKeyboard::SetAllowShortcutKeys(bool allow) {
    ZQLock lock(&m_lock);
    m_allowShortcutKeys = allow;
}

bool ZQKeyboard::GetAllowShortcutKeys() {
    ZQLock lock(&m_lock);
    return m_allowShortcutKeys;
}

void ZQKeyboard::SetKeyboardHook(HHOOK hook) {
    ZQLock lock(&m_lock);
    m_keyboardHook = hook;
}

HHOOK ZQKeyboard::GetKeyboardHook() {
    ZQLock lock(&m_lock);
    return m_keyboardHook;
}

void ZQKeyboard::AllowShortcutKeys(bool allow) {
    SetAllowShortcutKeys(allow);
    if (allow) {
        SystemParametersInfoW(SPI_SETSTICKYKEYS, sizeof(STICKYKEYS), GetStartupStickyKeys(), 0);
        SystemParametersInfoW(SPI_SETTOGGLEKEYS, sizeof(TOGGLEKEYS), GetStartupToggleKeys(), 0);
        SystemParametersInfoW(SPI_SETFILTERKEYS, sizeof(FILTERKEYS), GetStartupFilterKeys(), 0);
        if (HHOOK hook = GetKeyboardHook()) {
            UnhookWindowsHookEx(hook);
            SetKeyboardHook(nullptr);
        }
        return;
    }
    if (!GetKeyboardHook() && HasLowLevelHooks())
        SetKeyboardHook(SetWindowsHookExW(WH_KEYBOARD_LL, LowLevelKeyboardProc, LibraryModule(), 0));
    DisableHotKeysIfOff(*GetStartupStickyKeys(), SPI_SETSTICKYKEYS);
    DisableHotKeysIfOff(*GetStartupToggleKeys(), SPI_SETTOGGLEKEYS);
    DisableHotKeysIfOff(*GetStartupFilterKeys(), SPI_SETFILTERKEYS);
}

LRESULT CALLBACK ZQKeyboard::LowLevelKeyboardProc(int code, WPARAM wParam, LPARAM lParam) {
    ZQKeyboard* keyboard = m_pKeyboard;
    if (code == HC_ACTION && keyboard && (wParam == WM_KEYDOWN || wParam == WM_KEYUP) &&
        !keyboard->GetAllowShortcutKeys()) {
        const KBDLLHOOKSTRUCT* event = reinterpret_cast<const KBDLLHOOKSTRUCT*>(lParam);
        if (event->vkCode == kLeftWindowsKey || event->vkCode == kRightWindowsKey)
            return 1;
    }
    return CallNextHookEx(keyboard ? keyboard->GetKeyboardHook() : nullptr, code, wParam, lParam);
}

} // namespace ZQ
