#include "siblings/wmfactory/CWMFactory.h"

#include "system/library/ZVToolsBinding.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"
#include "system/thread/ZVBoundedCall.h"

#include <memory>

// Last, since the X headers take names that ours use.
#include "siblings/wmfactory/CX11Library.h"

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"CWMFactory::GetDisplay"};

// libX11 ends the process when this returns.
int OnConnectionLost(Display*)
{
    ZVBoundedCall::GiveUp("the connection broke");
}

// The server's first answers are waited for without a limit within libX11, which gives nobody its socket before.
Display* OpenDisplay()
{
    const CX11Functions* const x11 = CX11Library::Get();
    if (x11 == nullptr)
    {
        Source.Log("There is no display: libX11 is not installed, or too old");
        return nullptr;
    }
    const auto display = std::make_shared<Display*>(nullptr);
    const auto open = [x11, display]
    {
        const XIOErrorHandler handler = x11->XSetIOErrorHandler(OnConnectionLost);
        *display = x11->XOpenDisplay(nullptr);
        x11->XSetIOErrorHandler(handler);
    };
    const char* reason = ZVBoundedCall::Run(open, IZVWMFactory::PatienceMilliseconds);
    if (reason == nullptr && *display == nullptr)
        reason = "it cannot be reached";
    if (reason == nullptr)
        return *display;
    Source.Log("There is no display: the X server is '%s', and %s", x11->XDisplayName(nullptr), reason);
    return nullptr;
}
}

void CWMFactory::Initialize(int32_t)
{
    ZVToolsBinding::Bind();
}

_XDisplay* CWMFactory::GetDisplay()
{
    // It is not closed at the end: that would wait for an answer of the server once more, which may never come.
    static Display* const s_display = OpenDisplay();
    return s_display;
}

ZVScreenRect CWMFactory::ConvertRect(const ZVScreenRect& rect, int32_t) const
{
    return rect;
}
