#pragma once

#include <sys/stat.h>

// Identifies the file that a path or a descriptor refers to, even after it is renamed. A file that does not exist equals no
// other.
class CFileIdentity
{
public:
    CFileIdentity() = default;

    static CFileIdentity OfPath(const char* path);
    static CFileIdentity OfDescriptor(int descriptor);

    bool Exists() const { return m_exists; }

    friend bool operator==(const CFileIdentity& left, const CFileIdentity& right)
    {
        return left.m_exists && right.m_exists && left.m_device == right.m_device && left.m_inode == right.m_inode;
    }

private:
    explicit CFileIdentity(const struct stat& state) : m_exists(true), m_device(state.st_dev), m_inode(state.st_ino) {}

    bool m_exists = false;
    dev_t m_device = 0;
    ino_t m_inode = 0;
};
