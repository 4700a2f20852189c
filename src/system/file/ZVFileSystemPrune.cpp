// Keeping only the newest files of a folder.

#include "core/containers/ZVOwnedPtrArray.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSearch.h"
#include "system/file/ZVFileSystem.h"
#include "system/thread/ZVQSort.h"

#include <algorithm>
#include <memory>

namespace
{
struct CPruneFile
{
    ZVString Path;
    double ModificationTime;  // seconds since 1970
    int64_t Size;
};

class CNewestFilesFirstSort final : public IZVQSortCompare<CPruneFile*>
{
public:
    int32_t Compare(CPruneFile* const& first, CPruneFile* const& second) override
    {
        return (first->ModificationTime < second->ModificationTime) - (first->ModificationTime > second->ModificationTime);
    }
};

using PruneFiles = ZVOwnedPtrArray<CPruneFile>;

void ListFiles(const ZVString& directory, PruneFiles& files)
{
    ZVFileSearch search(directory);
    for (const ZVString& path : search.GetResults())
    {
        const ZVFileInfo info(path);
        if (!info.IsFound())
            continue;
        std::unique_ptr<CPruneFile> file(new CPruneFile {path, info.GetModificationTime(), info.GetSize()});
        files.Add(file.get());
        file.release();
    }
}

// How many files from the first on have at most so many bytes together.
int32_t CountWithin(const PruneFiles& files, int64_t limit)
{
    int64_t sum = 0;
    int32_t count = 0;
    while (count < files.GetCount() && files[count]->Size <= limit - sum)
        sum += files[count++]->Size;
    return count;
}
}

bool ZVFileSystem::PruneOldFilesFromDirectory(const ZVString& directory, int32_t keepCount, int64_t keepBytes)
{
    PruneFiles files;
    ListFiles(directory, files);
    CNewestFilesFirstSort newestFirst;
    ZVQSort<CPruneFile*>(newestFirst).Sort(files);

    int32_t kept = files.GetCount();
    if (keepCount >= 0)
        kept = std::min(kept, keepCount);
    if (keepBytes >= 0)
        kept = std::min(kept, CountWithin(files, keepBytes));
    bool isDone = true;
    for (int32_t index = kept; index < files.GetCount(); ++index)
        isDone = (DeleteFile(files[index]->Path) || !Exists(files[index]->Path)) && isDone;
    return isDone;
}
