#pragma once

#include "system/filename/ZVFilename.h"

#include <cstdint>
#include <sys/stat.h>

// The status of one file or folder, as it was when it was asked for.
class ZVFileInfo
{
public:
    ZVFileInfo() = default;
    // Asks for the status of a path.
    explicit ZVFileInfo(const ZVString& path) { Load(path); }

    // False when there is no such file; the rest is then empty, and errno tells why. A symbolic link stands for what it leads to,
    // and for itself when that is nothing.
    bool Load(const ZVString& path);
    // The same for a path as the system gave it.
    bool LoadNative(const char* path);

    bool IsFound() const { return m_isFound; }
    // The path; that of a folder ends in "/".
    const ZVFilename& GetFilename() const { return m_filename; }
    const ZVString& GetPath() const { return m_filename.GetPathOnly(); }
    // The name with its extension, of a folder without the "/".
    ZVString GetName() const;

    bool IsDirectory() const { return S_ISDIR(m_status.st_mode); }
    // In bytes.
    int64_t GetSize() const { return m_status.st_size; }
    // Type and permission bits as the system has them.
    uint32_t GetMode() const { return m_status.st_mode; }
    // Seconds since 1970.
    double GetModificationTime() const;
    const struct stat& GetStatus() const { return m_status; }
    // Whether both are found and are one file, by whatever names and links.
    bool IsSameFile(const ZVFileInfo& other) const
    {
        return m_isFound && other.m_isFound && m_status.st_dev == other.m_status.st_dev &&
               m_status.st_ino == other.m_status.st_ino;
    }

private:
    bool m_isFound = false;
    ZVFilename m_filename;
    struct stat m_status
    {
    };
};
