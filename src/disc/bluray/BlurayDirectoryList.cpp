#include "disc/bluray/BlurayDirectoryList.h"

#include "system/file/ZVFileSearch.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVFilename.h"
#include "system/filename/ZVPathLayout.h"

#include <algorithm>

namespace
{
ZVString WithoutLeadingSlashes(ZVString folder)
{
    folder.TrimLeft(L'/');
    return folder;
}
}

BlurayDirectoryList::BlurayDirectoryList(const ZVString& path, const ZVString& subFolder, const ZVString& extension)
    : Path(ZVPathLayout::WithClosingSlash(path)), SubFolder(WithoutLeadingSlashes(subFolder))
{
    ZVFileSearch search(Path + SubFolder, extension);
    search.GetResults(Files);
    TotalSize = search.GetTotalSize();
}

int64_t BlurayDirectoryList::GetDirectorySize(const ZVString& extension) const
{
    if (extension.IsEmpty())
        return TotalSize;
    int64_t size = 0;
    for (const ZVString& file : Files)
        if (ZVFilename::FromPath(file).GetExtension().IsEqual(extension, false))
            size += std::max<int64_t>(ZVFileSystem::GetFileSize(file), 0);
    return size;
}
