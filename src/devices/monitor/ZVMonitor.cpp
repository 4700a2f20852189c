#include "devices/monitor/ZVMonitor.h"

#include "devices/monitor/ZVScreenReport.h"
#include "system/library/ZVWindowManager.h"
#include "system/log/ZVLogScope.h"

namespace
{
constexpr wchar_t DefaultName[] = L"Default Screen";
}

ZVMonitor::ZVMonitor(int32_t index)
{
    UpdateInfo();
    SetMonitor(index);
}

bool ZVMonitor::UpdateInfo()
{
    Current = 0;
    Indexes.RemoveAll();
    Monitors.RemoveAll();
    const ZVLogScope scope(ZVLogCategory::General, "ZVMonitor::UpdateInfo", true);
    _XDisplay* const display = ZVWindowManager::GetDisplay();
    const auto report = display == nullptr ? nullptr : ZVScreenReport::Ask(display);
    if (report == nullptr)
        return false;
    for (const ZVScreenFailure& failure : report->Failures)
        scope.Log("Output %d is skipped: X error %d", failure.Output, failure.ErrorCode);
    for (const ZVScreenOutput& output : report->Outputs)
    {
        const ZVString name = ZVString::FromUTF8(output.Name.c_str());
        Add({
            {output.X, output.Y, output.X + output.Width, output.Y + output.Height},
            name, name, output.RefreshRate
        });
        scope.Log("Screen width = %d height = %d x = %d, y = %d, rrmode = %d", output.Width, output.Height, output.X, output.Y,
                  output.Mode);
    }
    if (Monitors.IsEmpty())
    {
        Add({
            {0, 0, report->Width, report->Height},
            DefaultName, DefaultName, 0
        });
        scope.Log("Screen width = %d height = %d x = %d, y = %d, rrmode = 0", report->Width, report->Height, 0, 0);
    }
    scope.Log("%d non-zero size screens found", Monitors.GetCount());
    return true;
}

void ZVMonitor::Add(const sMonitorInfo& monitor)
{
    Indexes.Add(Monitors.GetCount());
    Monitors.Add(monitor);
}

bool ZVMonitor::SetMonitor(int32_t index)
{
    if (index < 0 || index >= Monitors.GetCount())
        return false;
    Current = index;
    return true;
}

ZVRect ZVMonitor::GetRect() const
{
    return ZVWindowManager::ConvertRect(HasCurrent() ? Monitors[Current].Rect : ZVRect(), IZVWMFactory::ModeMonitor);
}

void ZVMonitor::GetNames(ZVString& name, ZVString& id) const
{
    name = HasCurrent() ? Monitors[Current].Name : ZVString();
    id = HasCurrent() ? Monitors[Current].Id : ZVString();
    if (name.IsEmpty())
        name = ZVFormat(L"Monitor #%d", Current);
    if (id.IsEmpty())
        id = ZVFormat(L"UUID-Monitor-%d", Current);
}
