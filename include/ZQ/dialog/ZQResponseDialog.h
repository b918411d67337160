#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// What the application implements to hear from dialog controls. The default does nothing. Overrides
/// must not throw: the library calls them from code that cannot unwind.
class ZQ_API _ZQResponseDialog_tag {
public:
    /// A control reports: clicks carry the release position (a, b); bars and gauges reaching their end
    /// send (0, 0). Called with the control's own lock released, the dialog's still held.
    virtual void __stdcall OnEvent(unsigned int id, int a, int b);

protected:
    ~_ZQResponseDialog_tag() = default;
};

/// Holds the callback of a control or dialog (null by default: no events are sent).
class ZQ_API ZQDialogResponseEvent : public ZQHeapObject {
public:
    ZQDialogResponseEvent() = default;
    ZQDialogResponseEvent(const ZQDialogResponseEvent&) = default;
    ZQDialogResponseEvent& operator=(const ZQDialogResponseEvent&) = default;
    virtual ~ZQDialogResponseEvent();
    /// Stores the pointer.
    virtual void SetResponse(_ZQResponseDialog_tag* response);
    virtual _ZQResponseDialog_tag* GetResponse();

private:
    _ZQResponseDialog_tag* m_response = nullptr;
};

} // namespace ZQ
