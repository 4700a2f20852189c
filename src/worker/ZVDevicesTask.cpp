#include "worker/ZVDevicesTask.h"

#include "devices/CAnalyzeDevices.h"
#include "system/library/ZVStandardOutput.h"
#include "system/log/ZVLogScope.h"
#include "worker/ZVWorkerCommand.h"

namespace
{
constexpr wchar_t RootName[] = L"XMLPH";
constexpr double Version = 1.0;

// The devices that the caller does not want. If anything is wrong with the file of variables, no device is left out.
void ReadIgnoredDevices(const ZVString& path, ZVStringArray& ignored)
{
    ZVString text;
    ZVPropertyMap variables;
    if (text.LoadFromFile(path) && variables.FromXML(text, RootName, Version))
        ignored.SetSplit(variables.GetString(L"IgnoredDevices"), L';');
}

void PrintDevices(const ZVStringArray& devices)
{
    ZVStandardOutput::PrintFormat(L"Found %d devices (devices will be listed below)\n\n", devices.GetCount());
    for (int32_t index = 0; index < devices.GetCount(); ++index)
    {
        ZVStandardOutput::PrintFormat(L"Device %d:\n", index);
        // As it stands: a percent sign in the name of a device starts no conversion.
        ZVStandardOutput::Print(devices[index]);
        ZVStandardOutput::Print(L"\n\n");
    }
}

ZVString JoinDevices(const ZVStringArray& devices)
{
    ZVString list;
    for (const ZVString& device : devices)
        list.AppendLengthPrefixed(device);
    return list;
}
}

bool RunDevicesTask(const ZVWorkerRequest& request, ZVPropertyMap& result)
{
    ZVStringArray ignored;
    ReadIgnoredDevices(request.Match.GetPath(0), ignored);

    request.Scope.Log("Calling EnumerateDevices...");
    CAnalyzeDevices analysis;
    if (!analysis.EnumerateDevices(ignored))
    {
        request.Scope.Log("EnumerateDevices failed...");
        return false;
    }
    request.Scope.Log("EnumerateDevices succeeded...");

    ZVStringArray devices;
    analysis.GetDevices(devices);
    PrintDevices(devices);
    result.SetString(L"Devices", JoinDevices(devices));
    return true;
}
