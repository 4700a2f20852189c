#pragma once

#include "core/containers/ZVArray.h"
#include "core/string/ZVString.h"

#include <string_view>

// One file system that the process sees, as the kernel lists it in /proc/self/mountinfo (proc(5)).
struct ZVMount
{
    ZVString Folder;  // where it is mounted; only the root ends in "/"
    ZVString FileSystemType;
    ZVString Device;  // what is mounted: a device path, or any text that the file system has chosen
};

// The file systems that the process sees, in the order in which they were mounted.
class ZVMountTable
{
public:
    // The table of this moment; empty if the kernel gives none.
    static ZVMountTable Load();
    // The table in a text of that form. Incomplete lines are left out.
    static ZVMountTable Parse(std::string_view text);

    const ZVArray<ZVMount>& GetMounts() const { return m_mounts; }
    // The file system that an absolute path without symbolic links is on, or null. Of several on one folder the last hides the
    // others.
    const ZVMount* FindForPath(const ZVString& path) const;

private:
    ZVArray<ZVMount> m_mounts;
};
