#include "disc/bluray/BlurayFile.h"

#include "system/loader/CFileLoader.h"

bool BlurayFile::Load(const ZVString& path, ZVBuffer& bytes)
{
    CFileLoader loader;
    loader.SetStreaming(false);
    loader.SetAllowInternet(false);
    loader.SetLimits(MaximumSize, true);
    return loader.Load(ZVFilename::FromPath(path), bytes);
}
