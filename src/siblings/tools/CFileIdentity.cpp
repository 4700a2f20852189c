#include "siblings/tools/CFileIdentity.h"

CFileIdentity CFileIdentity::OfPath(const char* path)
{
    struct stat state;
    return stat(path, &state) == 0 ? CFileIdentity(state) : CFileIdentity();
}

CFileIdentity CFileIdentity::OfDescriptor(int descriptor)
{
    struct stat state;
    return fstat(descriptor, &state) == 0 ? CFileIdentity(state) : CFileIdentity();
}
