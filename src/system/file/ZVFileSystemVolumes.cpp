// Volumes, the devices that they are on and the folders that they are mounted on.

#include "core/containers/ZVStringArray.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVMountTable.h"
#include "system/file/ZVShellWord.h"
#include "system/file/ZVVolumeLabels.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"
#include "system/library/RunProgram.h"
#include "system/log/ZVLogCategory.h"
#include "system/log/ZVLogScope.h"

#include <climits>
#include <cstdlib>

namespace
{
constexpr ZVLogSource GetVolumeInformationSource {ZVLogCategory::General, L"ZVFileSystem::GetVolumeInformation"};
constexpr ZVLogSource GetMountpointFromDeviceSource {ZVLogCategory::General, L"ZVFileSystem::GetMountpointFromDevice"};

constexpr wchar_t DeviceFolder[] = L"/dev/";
constexpr wchar_t BlockFolder[] = L"/sys/class/block/";
constexpr int64_t SectorSize = 512;  // the kernel counts block devices in such sectors, whatever their own are

struct FileSystemKind
{
    const wchar_t* Type;
    ZVFileSystem::DriveType Drive;
};

constexpr FileSystemKind FileSystemKinds[] = {
    {L"9p",         ZVFileSystem::DriveType::Network},
    {L"afs",        ZVFileSystem::DriveType::Network},
    {L"ceph",       ZVFileSystem::DriveType::Network},
    {L"cifs",       ZVFileSystem::DriveType::Network},
    {L"fuse.sshfs", ZVFileSystem::DriveType::Network},
    {L"nfs",        ZVFileSystem::DriveType::Network},
    {L"nfs4",       ZVFileSystem::DriveType::Network},
    {L"smb3",       ZVFileSystem::DriveType::Network},
    {L"iso9660",    ZVFileSystem::DriveType::Optical},
    {L"udf",        ZVFileSystem::DriveType::Optical},
    {L"ramfs",      ZVFileSystem::DriveType::Memory },
    {L"tmpfs",      ZVFileSystem::DriveType::Memory },
};

// The path without symbolic links; empty if nothing is there.
ZVString Resolve(const ZVString& path)
{
    char resolved[PATH_MAX];
    return realpath(ZVNativePath(path), resolved) == nullptr ? ZVString() : ZVNativePath::ToText(resolved);
}

// What a command prints; empty if it fails.
ZVString Ask(const ZVString& program, const ZVString& options, const ZVString& path)
{
    ZVStringArray parameters;
    if (!options.IsEmpty())
        parameters.Add(options);
    parameters.Add(ZVShellWord(path));
    ZVString output;
    int32_t exitCode = -1;
    return RunProgram(program, parameters, &output, ZVRunMode::Blocking, &exitCode) && exitCode == 0 ? output : ZVString();
}

// The device that a path is on, or that it names, without symbolic links; empty if there is none.
ZVString FindDevice(const ZVString& path)
{
    const ZVString resolved = Resolve(path);
    if (resolved.IsEmpty() || S_ISBLK(ZVFileInfo(resolved).GetMode()))
        return resolved;
    const ZVMountTable table = ZVMountTable::Load();
    const ZVMount* mount = table.FindForPath(resolved);
    return mount != nullptr && mount->Device.StartsWith(DeviceFolder) ? Resolve(mount->Device) : ZVString();
}

ZVString GetBlockFile(const ZVString& device, const wchar_t* file)
{
    return BlockFolder + device.GetAfterLast(L"/", true) + file;
}

int64_t GetDeviceSize(const ZVString& device)
{
    const ZVString file = GetBlockFile(device, L"/size");
    return ZVFileSystem::Exists(file) ? Ask(L"cat", L"", file).ToInt64() * SectorSize : 0;
}

// A partition is removable if its disk is. In the kernel's tree a partition's folder is within its disk's.
bool IsRemovable(const ZVString& device)
{
    const ZVString folder = Resolve(GetBlockFile(device, L""));
    for (const wchar_t* file : {L"/removable", L"/../removable"})
        if (!folder.IsEmpty() && ZVFileSystem::Exists(folder + file))
            return Ask(L"cat", L"", folder + file).ToInt() == 1;
    return false;
}
}

bool ZVFileSystem::GetVolumeInformation(const ZVString& path, ZVString* label, int64_t* size)
{
    const ZVLogScope scope(GetVolumeInformationSource, false);
    const ZVString device = FindDevice(path);
    const ZVString foundLabel = device.IsEmpty() ? ZVString() : ZVVolumeLabels::Find(device);
    if (!foundLabel.IsEmpty())
        scope.Log("Found Volume Label %s for %s", foundLabel, path);
    if (label != nullptr)
        *label = foundLabel;
    if (size != nullptr)
        *size = device.IsEmpty() ? 0 : GetDeviceSize(device);
    return !device.IsEmpty();
}

ZVString ZVFileSystem::GetMountpointFromDevice(const ZVString& device)
{
    const ZVLogScope scope(GetMountpointFromDeviceSource, true);
    const ZVString output = Ask(L"findmnt", L"-u -f -o TARGET -n ", device);
    return output.GetBefore(L"\n", true);
}

ZVFileSystem::DriveType ZVFileSystem::GetDriveType(const ZVString& path)
{
    const ZVMountTable table = ZVMountTable::Load();
    const ZVString resolved = Resolve(path);
    const ZVMount* mount = resolved.IsEmpty() ? nullptr : table.FindForPath(resolved);
    if (mount == nullptr)
        return DriveType::Unknown;
    for (const FileSystemKind& kind : FileSystemKinds)
        if (mount->FileSystemType == kind.Type)
            return kind.Drive;
    if (!mount->Device.StartsWith(DeviceFolder))
        return DriveType::Unknown;
    return IsRemovable(Resolve(mount->Device)) ? DriveType::Removable : DriveType::Fixed;
}

void ZVFileSystem::GetAvailableDrives(ZVStringArray& drives)
{
    drives.RemoveAll();
    const ZVMountTable table = ZVMountTable::Load();
    for (const ZVMount& mount : table.GetMounts())
    {
        const ZVString folder = ZVPathLayout::WithClosingSlash(mount.Folder);
        if (mount.Device.StartsWith(DeviceFolder) && IsDirectory(folder) && drives.FindText(folder) == -1)
            drives.Add(folder);
    }
}
