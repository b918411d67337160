#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/frame/ZQResponseKeyboard.h"

namespace ZQ {

/// Keyboard state of the application object: the down state of every virtual key, the
/// accessibility records saved at start-up and the hook that blocks the Windows keys while
/// shortcut keys are not allowed.
class ZQ_API ZQKeyboard : public _ZQResponseKeyboard_tag, public ZQHeapObject {
public:
    ZQKeyboard();
    /// A copy shares the records and the key array (not their contents); each keeps its own lock.
    ZQKeyboard(const ZQKeyboard& other);
    ZQKeyboard& operator=(const ZQKeyboard& other);

    /// The setters store the caller's pointer (which must outlive its use; null switches the record off);
    /// the getters return the record in use, where Init saves the system's settings.
    void SetStartupStickyKeys(STICKYKEYS* keys) override;
    STICKYKEYS* GetStartupStickyKeys() override;
    void SetStartupToggleKeys(TOGGLEKEYS* keys) override;
    TOGGLEKEYS* GetStartupToggleKeys() override;
    void SetStartupFilterKeys(FILTERKEYS* keys) override;
    FILTERKEYS* GetStartupFilterKeys() override;
    virtual ~ZQKeyboard();

    /// The 256 down states by virtual-key code.
    bool* GetKeys();
    /// Stores the caller's array of 256 states in place of the current one (null: keys are not recorded).
    void SetKeys(bool* keys);
    /// True while the key (low 8 bits of the code) is down.
    bool IsKeyDown(UINT key);

    /// The hook procedure: swallows the two Windows keys while shortcut keys are not allowed.
    static LRESULT CALLBACK LowLevelKeyboardProc(int code, WPARAM wParam, LPARAM lParam);

protected:
    /// true: restores the saved records and removes the hook. false: installs the hook and switches
    /// off the accessibility hot keys of features that are off (changing the saved records too).
    void AllowShortcutKeys(bool allow);
    /// Records a key message's down state at the low 8 bits of the key code.
    void RecordKey(UINT key, bool down);

    void SetAllowShortcutKeysWhenFullscreen(bool allow);
    bool GetAllowShortcutKeysWhenFullscreen();
    void SetAllowShortcutKeysWhenWindowed(bool allow);
    bool GetAllowShortcutKeysWhenWindowed();
    void SetAllowShortcutKeys(bool allow);
    bool GetAllowShortcutKeys();
    void SetKeyboardHook(HHOOK hook);
    HHOOK GetKeyboardHook();

    static ZQKeyboard* m_pKeyboard;

private:
    struct Storage;
    void Share(const ZQKeyboard& other);

    // What this keyboard allocated, shared with its copies and freed with the last of them.
    Storage* m_storage;
    CRITICAL_SECTION m_lock;
    STICKYKEYS* m_pStartupStickyKeys;
    TOGGLEKEYS* m_pStartupToggleKeys;
    FILTERKEYS* m_pStartupFilterKeys;
    bool m_allowShortcutKeysWhenFullscreen;
    bool m_allowShortcutKeysWhenWindowed;
    bool m_allowShortcutKeys;
    bool* m_keys;
    HHOOK m_keyboardHook;
};

} // namespace ZQ
