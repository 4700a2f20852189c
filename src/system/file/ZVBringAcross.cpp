#include "system/file/ZVBringAcross.h"

#include "system/file/ZVFileCommand.h"
#include "system/file/ZVFileError.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVTransferPlace.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"
#include "system/log/ZVLogCategory.h"

#include <cerrno>
#include <unistd.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVFileSystem::MoveFile"};
constexpr ZVFileCommand Moving {Source, L"mv", L"-f"};
constexpr ZVFileCommand Linking {Source, L"cp", L"-a -l"};
// Owner and mode are left out, since a file system that cannot hold them would make the command fail; mv only warns.
constexpr ZVFileCommand Copying {Source, L"cp", L"-R -d -f --preserve=timestamps,links"};

// Gives a file a second name; a folder gets a second tree, with second names of all that is in it.
bool MakeSecondName(const ZVString& from, const ZVString& second)
{
    return link(ZVNativePath(from), ZVNativePath(second)) == 0 || (ZVFileSystem::IsDirectory(from) && Linking.Run(from, second));
}
}

bool ZVBringAcross(const ZVString& from, const ZVTransferPlace& place)
{
    const ZVTransferPlace second(ZVPathLayout::FolderOf(from));
    if (ZVTransferPlace::IsForbidden(second.GetError()))
    {
        errno = second.GetError();
        ZVLogFileError(Source, "Error %d moving file: %s", from);
        return false;
    }
    // mv deletes its source as soon as it has copied it, when the copy has only its hidden name. So it gets the second name to
    // delete. Some file systems have no second names: there it has to be a copy.
    if (second.IsReady() && MakeSecondName(from, second.GetPath()))
        return Moving.Run(second.GetPath(), place.GetPath());
    return Copying.Run(from, place.GetPath());
}
