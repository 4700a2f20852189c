#include "devices/CAnalyzeDevices.h"

#include "core/containers/ZVUniqueList.h"
#include "system/file/ZVFileSystem.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"
#include "system/log/ZVLogScope.h"

namespace
{
constexpr ZVLogSource EnumerateSource {ZVLogCategory::Devices, L"CAnalyzeDevices::EnumerateUSBDevices"};
constexpr ZVLogSource ListSource {ZVLogCategory::Devices, L"CAnalyzeDevices::GetDevices"};

// What only the system's drives know about a device.
constexpr const wchar_t* IdentityKeys[] = {L"DeviceName", L"VendorID",     L"ProductID",    L"FirmwareVersion",
                                           L"DeviceID",   L"SerialNumber", L"FireWireGUID", CDeviceInfo::PhysicalDriveNumber,
                                           L"USBSTOR"};

void CopyIdentity(CDeviceInfo& device, const CAnalyzeDevices::Candidate& candidate)
{
    for (const wchar_t* key : IdentityKeys)
        device.SetString(key, candidate.Device.GetString(key, key == CDeviceInfo::PhysicalDriveNumber ? L"-1" : L""));
    device.SetString(CDeviceInfo::MainDriveLetter, candidate.DrivePaths[candidate.DrivePaths.GetCount() - 1]);
}
}

CAnalyzeDevices::CAnalyzeDevices()
{
    const ZVLogScope scope(ZVLogCategory::Devices, "CAnalyzeDevices::CAnalyzeDevices", true);
}

bool CAnalyzeDevices::EnumerateDevices(const ZVStringArray& ignored)
{
    ZVLogScope scope(ZVLogCategory::Devices, "CAnalyzeDevices::EnumerateDevices", true);
    Devices.RemoveAll();
    Drives.RemoveAll();
    const bool result = EnumerateUSBDevices(ignored);
    scope.Log("RetVal = %d", result);
    scope.SetResult(result);
    return result;
}

bool CAnalyzeDevices::EnumerateUSBDevices(const ZVStringArray&)
{
    CandidateList candidates = GetCandidates();
    ZVUniqueList<int32_t, int32_t> matched;
    for (CDeviceInfo& device : Devices)
    {
        if (candidates.GetCount() == 0 || device.GetInt(CDeviceInfo::IsDrive) == 0)
            continue;
        const int32_t index = FindDrive(candidates, device);
        if (index < 0)
            continue;
        EnumerateSource.Log("WPD <-> MSC device match found for device mapped to drive '%s'",
                            device.GetString(CDeviceInfo::DriveLetter));
        CopyIdentity(device, candidates[index]);
        matched.Add(index);
    }
    for (int32_t index = 0; index < candidates.GetCount(); ++index)
        if (!matched.Contains(index))
            AddUnmatched(candidates[index]);
    return true;
}

CAnalyzeDevices::CandidateList CAnalyzeDevices::GetCandidates() const
{
    CandidateList candidates;
    for (const CDeviceInfo& drive : Drives)
    {
        if (drive.GetInt(CDeviceInfo::IsDrive) == 0)
            continue;
        ZVString path = drive.GetString(CDeviceInfo::DriveLetter);
        if (!path.EndsWith(L'/'))
            path += L'/';
        Candidate candidate;
        candidate.Device = drive;
        candidate.DrivePaths.Add(path);
        candidates.Add(candidate);
    }
    return candidates;
}

void CAnalyzeDevices::AddUnmatched(Candidate& candidate)
{
    const ZVString& path = candidate.DrivePaths[0];
    if (!ZVFileSystem::GetVolumeInformation(path, nullptr, nullptr))
    {
        EnumerateSource.Log("Skipping invalid device mapped to drive '%s' with no WMDM match", path);
        return;
    }
    CDeviceInfo& device = candidate.Device;
    device.SetString(CDeviceInfo::DriveLetter, path);
    device.SetString(CDeviceInfo::MainDriveLetter, path);
    device.SetString(CDeviceInfo::CanonicalName, device.GetString(CDeviceInfo::DeviceUID));
    device.SetInt(CDeviceInfo::IsDrive, 1);
    Devices[Devices.Add(device)].SetDefaults(CDeviceInfo::KeepType);
    EnumerateSource.Log("Adding valid device mapped to drive '%s' with no WMDM match", path);
}

int32_t CAnalyzeDevices::GetDevices(ZVStringArray& out) const
{
    out.RemoveAll();
    for (const CDeviceInfo& device : Devices)
    {
        ZVString text;
        device.ToXML(text, L"XMLPH", false, 1.0);
        out.Add(text);
    }
    ListSource.Log("%d devices found", out.GetCount());
    return out.GetCount();
}

int32_t CAnalyzeDevices::FindDrive(const CandidateList& list, const CDeviceInfo& device)
{
    const ZVString drive = device.GetString(CDeviceInfo::DriveLetter);
    if (drive.IsEmpty())
        return -1;
    for (int32_t index = 0; index < list.GetCount(); ++index)
        if (list[index].DrivePaths.FindText(drive, false) >= 0)
            return index;
    return -1;
}
