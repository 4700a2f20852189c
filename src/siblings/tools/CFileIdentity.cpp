#include "siblings/tools/CFileIdentity.h"

#include <sys/stat.h>

CFileIdentity CFileIdentity::OfPath(const char* path)
{
    CFileIdentity identity;
    struct stat state;
    if (stat(path, &state) == 0)
    {
        identity.m_exists = true;
        identity.m_device = state.st_dev;
        identity.m_inode = state.st_ino;
    }
    return identity;
}

CFileIdentity CFileIdentity::OfDescriptor(int descriptor)
{
    CFileIdentity identity;
    struct stat state;
    if (fstat(descriptor, &state) == 0)
    {
        identity.m_exists = true;
        identity.m_device = state.st_dev;
        identity.m_inode = state.st_ino;
    }
    return identity;
}
