#pragma once
#include "ZQ/core/ZQConfig.h"

namespace ZQ {

/// Callbacks a serial port makes into the application; every one receives the calling ZQRS232 and does
/// nothing by default. ZQRS232 calls three of them:
///   OnClassInit after a successful Open (on the thread that called Open),
///   OnClassSend on every pass of the sender thread (a good place to call send),
///   OnClassRecv on every pass of the receiver thread (a good place to call recv).
/// The other ten are free for the application's own use. Overrides must not throw: they run on the
/// port's threads, which cannot unwind.
class ZQ_API _ZQResponseClass_tag {
public:
    virtual void OnClassClose(void* sender);
    virtual void OnClassCreate(void* sender);
    virtual void OnClassDestroy(void* sender);
    virtual void OnClassDone(void* sender);
    virtual void OnClassError(void* sender);
    virtual void OnClassFail(void* sender);
    virtual void OnClassFault(void* sender);
    virtual void OnClassFinish(void* sender);
    virtual void OnClassInit(void* sender);
    virtual void OnClassProc(void* sender);
    virtual void OnClassRecv(void* sender);
    virtual void OnClassSend(void* sender);
    virtual void OnClassSuccess(void* sender);

protected:
    ~_ZQResponseClass_tag() = default;
};

} // namespace ZQ
