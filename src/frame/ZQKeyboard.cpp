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
template <typename Record> void DisableHotKeysIfOff(Record* record, UINT setAction) {
    if (!record || (record->dwFlags & kFeatureOn))
        return;
    record->dwFlags &= ~kHotKeyBits;
    SystemParametersInfoW(setAction, sizeof(Record), record, 0);
}

template <typename Record> void RestoreRecord(Record* record, UINT setAction) {
    if (record)
        SystemParametersInfoW(setAction, sizeof(Record), record, 0);
}
} // namespace

struct ZQKeyboard::Storage {
    STICKYKEYS stickyKeys;
    TOGGLEKEYS toggleKeys;
    FILTERKEYS filterKeys;
    bool keys[256];
    LONG users;
};

ZQKeyboard::ZQKeyboard()
    : m_storage(new Storage{{sizeof(STICKYKEYS), 0}, {sizeof(TOGGLEKEYS), 0}, {sizeof(FILTERKEYS), 0, 0, 0, 0, 0}, {},
                            1}),
      m_pStartupStickyKeys(&m_storage->stickyKeys), m_pStartupToggleKeys(&m_storage->toggleKeys),
      m_pStartupFilterKeys(&m_storage->filterKeys), m_allowShortcutKeysWhenFullscreen(false),
      m_allowShortcutKeysWhenWindowed(true), m_allowShortcutKeys(false), m_keys(m_storage->keys),
      m_keyboardHook(nullptr) {
    InitializeCriticalSection(&m_lock);
    m_pKeyboard = this;
}

ZQKeyboard::ZQKeyboard(const ZQKeyboard& other) : _ZQResponseKeyboard_tag(other), m_storage(nullptr) {
    InitializeCriticalSection(&m_lock);
    Share(other);
}

ZQKeyboard& ZQKeyboard::operator=(const ZQKeyboard& other) {
    if (this != &other)
        Share(other);
    return *this;
}

void ZQKeyboard::Share(const ZQKeyboard& other) {
    Storage* previous;
    {
        ZQLock theirs(const_cast<CRITICAL_SECTION*>(&other.m_lock));
        ZQLock mine(&m_lock);
        InterlockedIncrement(&other.m_storage->users);
        previous = m_storage;
        m_storage = other.m_storage;
        m_pStartupStickyKeys = other.m_pStartupStickyKeys;
        m_pStartupToggleKeys = other.m_pStartupToggleKeys;
        m_pStartupFilterKeys = other.m_pStartupFilterKeys;
        m_allowShortcutKeysWhenFullscreen = other.m_allowShortcutKeysWhenFullscreen;
        m_allowShortcutKeysWhenWindowed = other.m_allowShortcutKeysWhenWindowed;
        m_allowShortcutKeys = other.m_allowShortcutKeys;
        m_keys = other.m_keys;
        m_keyboardHook = other.m_keyboardHook;
    }
    if (previous && InterlockedDecrement(&previous->users) == 0)
        delete previous;
}

ZQKeyboard::~ZQKeyboard() {
    // Only the keyboard the hook procedure serves removes the hook; a copy merely shares its handle.
    if (m_pKeyboard == this) {
        if (m_keyboardHook)
            UnhookWindowsHookEx(m_keyboardHook);
        m_pKeyboard = nullptr;
    }
    if (InterlockedDecrement(&m_storage->users) == 0)
        delete m_storage;
    DeleteCriticalSection(&m_lock);
}

#define ZQ_KEYBOARD_ACCESSORS(type, name, field)                                                                     \
    void ZQKeyboard::Set##name(type value) {                                                                          \
        ZQLock lock(&m_lock);                                                                                         \
        field = value;                                                                                                \
    }                                                                                                                 \
    type ZQKeyboard::Get##name() {                                                                                    \
        ZQLock lock(&m_lock);                                                                                         \
        return field;                                                                                                 \
    }
ZQ_KEYBOARD_ACCESSORS(STICKYKEYS*, StartupStickyKeys, m_pStartupStickyKeys)
ZQ_KEYBOARD_ACCESSORS(TOGGLEKEYS*, StartupToggleKeys, m_pStartupToggleKeys)
ZQ_KEYBOARD_ACCESSORS(FILTERKEYS*, StartupFilterKeys, m_pStartupFilterKeys)
ZQ_KEYBOARD_ACCESSORS(bool*, Keys, m_keys)
ZQ_KEYBOARD_ACCESSORS(bool, AllowShortcutKeysWhenFullscreen, m_allowShortcutKeysWhenFullscreen)
ZQ_KEYBOARD_ACCESSORS(bool, AllowShortcutKeysWhenWindowed, m_allowShortcutKeysWhenWindowed)
ZQ_KEYBOARD_ACCESSORS(bool, AllowShortcutKeys, m_allowShortcutKeys)
ZQ_KEYBOARD_ACCESSORS(HHOOK, KeyboardHook, m_keyboardHook)
#undef ZQ_KEYBOARD_ACCESSORS

bool ZQKeyboard::IsKeyDown(UINT key) {
    const bool* keys = GetKeys();
    return keys && keys[key & 0xFF];
}

// The lock covers reading the array pointer only.
void ZQKeyboard::RecordKey(UINT key, bool down) {
    if (bool* keys = GetKeys())
        keys[key & 0xFF] = down;
}

void ZQKeyboard::AllowShortcutKeys(bool allow) {
    SetAllowShortcutKeys(allow);
    if (allow) {
        RestoreRecord(GetStartupStickyKeys(), SPI_SETSTICKYKEYS);
        RestoreRecord(GetStartupToggleKeys(), SPI_SETTOGGLEKEYS);
        RestoreRecord(GetStartupFilterKeys(), SPI_SETFILTERKEYS);
        if (HHOOK hook = GetKeyboardHook()) {
            UnhookWindowsHookEx(hook);
            SetKeyboardHook(nullptr);
        }
        return;
    }
    if (!GetKeyboardHook() && HasLowLevelHooks())
        SetKeyboardHook(SetWindowsHookExW(WH_KEYBOARD_LL, LowLevelKeyboardProc, LibraryModule(), 0));
    DisableHotKeysIfOff(GetStartupStickyKeys(), SPI_SETSTICKYKEYS);
    DisableHotKeysIfOff(GetStartupToggleKeys(), SPI_SETTOGGLEKEYS);
    DisableHotKeysIfOff(GetStartupFilterKeys(), SPI_SETFILTERKEYS);
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
