#include "system/filename/ZVNativePath.h"

#include "system/filename/ZVFilename.h"

namespace
{
ZVString InFileSystemStyle(ZVString path)
{
    ZVFilename::MakeFileSystemPath(path);
    return path;
}
}

ZVNativePath::ZVNativePath(const ZVString& path) : ZVNativeBytes(InFileSystemStyle(path)) {}
