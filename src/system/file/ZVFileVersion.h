#pragma once

#include <sys/stat.h>

// Tells one content of a file from the next, whoever wrote it: which file it is, its size, and when it was changed. The number of a
// file that is gone goes to the next one at once, which may have been written at the same tick of the clock; the time of the last
// change of its status tells when it got its name, too.
class ZVFileVersion
{
public:
    // That of no file.
    ZVFileVersion() = default;
    explicit ZVFileVersion(const struct stat& status) : m_status(status) {}

    bool operator==(const ZVFileVersion& other) const
    {
        return m_status.st_dev == other.m_status.st_dev && m_status.st_ino == other.m_status.st_ino &&
               m_status.st_size == other.m_status.st_size && AreSame(m_status.st_mtim, other.m_status.st_mtim) &&
               AreSame(m_status.st_ctim, other.m_status.st_ctim);
    }

private:
    static bool AreSame(const timespec& first, const timespec& second)
    {
        return first.tv_sec == second.tv_sec && first.tv_nsec == second.tv_nsec;
    }

    struct stat m_status
    {
    };
};
