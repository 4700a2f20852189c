#include "devices/monitor/ZVScreenReport.h"

#include "contracts/IZVWMFactory.h"
#include "system/log/ZVLog.h"
#include "system/thread/ZVBoundedCall.h"

#include <algorithm>
#include <span>
#include <utility>

// Last, since the X headers take names that ours use.
#include "devices/monitor/CScreenLibraries.h"

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVScreenReport::Ask"};

// The code of the last error that the server reported to this thread.
thread_local int32_t t_error = 0;

int OnError(Display*, XErrorEvent* event)
{
    t_error = event->error_code;
    return 0;
}

// libX11 ends the process when this returns.
int OnConnectionLost(Display*)
{
    ZVBoundedCall::GiveUp("the connection broke");
}

// Either kind of error ends the process unless somebody handles it. An output can go between two questions.
class ErrorHandlers
{
public:
    explicit ErrorHandlers(const CXlibFunctions& xlib)
        : m_xlib(xlib), m_onError(xlib.XSetErrorHandler(OnError)), m_onConnectionLost(xlib.XSetIOErrorHandler(OnConnectionLost))
    {
    }
    ~ErrorHandlers()
    {
        m_xlib.XSetErrorHandler(m_onError);
        m_xlib.XSetIOErrorHandler(m_onConnectionLost);
    }

    ErrorHandlers(const ErrorHandlers&) = delete;
    ErrorHandlers& operator=(const ErrorHandlers&) = delete;

private:
    const CXlibFunctions& m_xlib;
    const XErrorHandler m_onError;
    const XIOErrorHandler m_onConnectionLost;
};

double GetRefreshRate(const XRRScreenResources& resources, RRMode mode)
{
    const std::span modes(resources.modes, static_cast<size_t>(resources.nmode));
    const auto found = std::ranges::find(modes, mode, &XRRModeInfo::id);
    if (found == modes.end())
        return 0;
    const double pixels = static_cast<double>(found->hTotal) * found->vTotal;
    return pixels == 0 ? 0 : static_cast<double>(found->dotClock) / pixels;
}

class Question
{
public:
    Question(const CScreenLibraries& libraries, Display* display, ZVScreenReport& report)
        : m_x(libraries), m_display(display), m_report(report)
    {
    }

    void Ask()
    {
        const ErrorHandlers handlers(m_x);
        const int screen = m_x.XDefaultScreen(m_display);
        m_report.Width = m_x.XDisplayWidth(m_display, screen);
        m_report.Height = m_x.XDisplayHeight(m_display, screen);
        int firstEvent = 0;
        int firstError = 0;
        if (m_x.XRRQueryExtension(m_display, &firstEvent, &firstError) == 0)
            return;
        m_resources.reset(m_x.XRRGetScreenResourcesCurrent(m_display, m_x.XDefaultRootWindow(m_display)));
        if (m_resources == nullptr)
            return;
        for (const RROutput output : std::span(m_resources->outputs, static_cast<size_t>(m_resources->noutput)))
            AskForOutput(output);
    }

private:
    void AskForOutput(RROutput output)
    {
        const COutputInfoPointer info(m_x.XRRGetOutputInfo(m_display, m_resources.get(), output));
        if (info == nullptr)
            return AddFailure(output);
        // To ask for no controller would be an error.
        if (info->connection != RR_Connected || info->crtc == 0)
            return;
        const CCrtcInfoPointer controller(m_x.XRRGetCrtcInfo(m_display, m_resources.get(), info->crtc));
        if (controller == nullptr)
            return AddFailure(output);
        if (controller->width == 0 || controller->height == 0)
            return;
        m_report.Outputs.push_back({
            .Name = std::string(info->name, static_cast<size_t>(info->nameLen)),
            .X = controller->x,
            .Y = controller->y,
            .Width = static_cast<int32_t>(controller->width),
            .Height = static_cast<int32_t>(controller->height),
            .Mode = static_cast<int32_t>(controller->mode),
            .RefreshRate = GetRefreshRate(*m_resources, controller->mode),
        });
    }

    void AddFailure(RROutput output) { m_report.Failures.push_back({output, std::exchange(t_error, 0)}); }

    const CScreenLibraries& m_x;
    Display* const m_display;
    ZVScreenReport& m_report;
    CScreenResourcesPointer m_resources;
};
}

std::shared_ptr<const ZVScreenReport> ZVScreenReport::Ask(_XDisplay* display)
{
    // The connection that a thread is stuck with, if any.
    static const _XDisplay* s_lost = nullptr;
    if (display == s_lost)
        return nullptr;
    const CScreenLibraries* const libraries = CScreenLibraries::Get();
    if (libraries == nullptr)
    {
        Source.Log("The X server cannot be asked: libX11 or libXrandr is not installed, or too old");
        return nullptr;
    }
    const auto report = std::make_shared<ZVScreenReport>();
    const char* const reason =
        ZVBoundedCall::Run([=] { Question(*libraries, display, *report).Ask(); }, IZVWMFactory::PatienceMilliseconds);
    if (reason == nullptr)
        return report;
    s_lost = display;
    Source.Log("The X server did not tell its screens: %s", reason);
    return nullptr;
}
