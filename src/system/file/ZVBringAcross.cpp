#include "system/file/ZVBringAcross.h"

#include "system/file/ZVFileCommand.h"
#include "system/file/ZVFileError.h"
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
constexpr ZVFileCommand Copying {Source, L"cp", L"-a -f"};
}

bool ZVBringAcross(const ZVString& from, const ZVTransferPlace& place)
{
    // mv deletes its source as soon as it has copied it, when the copy has only its hidden name. So it gets a second name of the
    // file to delete. What cannot have one, as a folder and a file on a file system without hard links, is copied as mv copies.
    const ZVTransferPlace second(ZVPathLayout::FolderOf(from));
    if (ZVTransferPlace::IsForbidden(second.GetError()))
    {
        errno = second.GetError();
        ZVLogFileError(Source, "Error %d moving file: %s", from);
        return false;
    }
    if (second.IsReady() && link(ZVNativePath(from), ZVNativePath(second.GetPath())) == 0)
        return Moving.Run(second.GetPath(), place.GetPath());
    return Copying.Run(from, place.GetPath());
}
