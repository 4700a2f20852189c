#pragma once

#include "system/filename/ZVFilename.h"

#include <cstdint>
#include <sys/stat.h>

// The status of one file or folder, as it was at the moment of the question.
class ZVFileInfo
{
public:
    ZVFileInfo() = default;
    // Asks for the status of a path.
    explicit ZVFileInfo(const ZVString& path) { Load(path); }

    // False if there is no such file; then everything else is empty and errno has the reason. A symbolic link stands for what it
    // leads to, or for itself if it leads nowhere.
    bool Load(const ZVString& path);
    // The same for a path as the system gave it.
    bool LoadNative(const char* path);

    bool IsFound() const { return m_isFound; }
    // The path of a folder ends in "/".
    const ZVFilename& GetFilename() const { return m_filename; }
    const ZVString& GetPath() const { return m_filename.GetPathOnly(); }
    // The name with its extension; that of a folder without the "/".
    ZVString GetName() const;

    bool IsDirectory() const { return S_ISDIR(m_status.st_mode); }
    // In bytes.
    int64_t GetSize() const { return m_status.st_size; }
    // Type and permission bits as the system has them.
    uint32_t GetMode() const { return m_status.st_mode; }
    // Seconds since 1970.
    double GetModificationTime() const;
    const struct stat& GetStatus() const { return m_status; }
    // Whether both are found and are the same file, whatever names and links lead to it.
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
