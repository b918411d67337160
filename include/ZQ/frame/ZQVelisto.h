#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/frame/ZQWindow.h"

namespace ZQ {

/// The application object: one per process. Derive from it, then Init, CreateWindow, CreateDevice,
/// Entry each scene, Trans to the first and run MainLoop.
class ZQ_API ZQVelisto : public ZQWindow {
public:
    ZQVelisto(const wchar_t* title = L"ZQ-Velisto Window", int width = 640, int height = 480);
    virtual ~ZQVelisto();

    /// Hooks for the host's own derived class; the library never calls them. The framework's own
    /// set-up is Init(parseCommandLine, ...), with four arguments.
    virtual void Create();
    virtual void Init();
    using ZQDirect3d::Init;
};

} // namespace ZQ
