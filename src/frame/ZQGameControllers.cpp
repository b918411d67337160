#include "ZQ/frame/ZQGameControllers.h"
#include "ZQ/core/ZQPlatform.h"

#include <xinput.h>

namespace ZQ {

namespace {
typedef DWORD(WINAPI* SetStateFunction)(DWORD, XINPUT_VIBRATION*);

// Loaded on first use and kept: the controller library runs a thread of its own, and unloading the
// library under it crashes the process. Newest library first.
SetStateFunction LoadSetState() {
    const wchar_t* const libraries[] = {L"xinput1_4.dll", L"xinput1_3.dll", L"xinput9_1_0.dll"};
    for (const wchar_t* name : libraries)
        if (HMODULE library = LoadLibraryW(name))
            return reinterpret_cast<SetStateFunction>(reinterpret_cast<void*>(GetProcAddress(library, "XInputSetState")));
    return nullptr;
}
} // namespace

void ZQStopRumbleOnAllControllers() {
    static const SetStateFunction setState = LoadSetState();
    if (!setState)
        return;
    for (DWORD user = 0; user < XUSER_MAX_COUNT; ++user) {
        XINPUT_VIBRATION still = {0, 0};
        setState(user, &still);
    }
}

} // namespace ZQ
