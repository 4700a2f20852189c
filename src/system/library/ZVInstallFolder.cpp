#include "system/library/ZVInstallFolder.h"

#include "system/library/ZVNativeBytes.h"
#include "system/library/ZVSiblingTable.h"

#include <bit>
#include <climits>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
// Where packages put the product's folders.
constexpr wchar_t ProductsFolder[] = L"/usr/lib/zivora/";

ZVString GetFolder(const char* file)
{
    const ZVString path = ZVNativeBytes::ToText(file);
    return path.Left(path.ReverseFind(L'/') + 1);
}

// The folder of the path that the program was started by, or empty when that path is relative or a link. It is in memory already;
// asking the system costs a fiftieth of a whole start, as it would be the first thing that the process needs of /proc.
ZVString GetStartedProgramFolder()
{
    const char* const path = std::bit_cast<const char*>(getauxval(AT_EXECFN));
    struct stat status
    {
    };
    if (path == nullptr || *path != '/' || lstat(path, &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    return GetFolder(path);
}

// The folder of the running program by what the system says, or empty.
ZVString GetProgramFolder()
{
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
    if (length < 1)
        return {};
    path[length] = '\0';
    return GetFolder(path);
}

bool HoldsToolsLibrary(const ZVString& folder)
{
    return !folder.IsEmpty() && access(ZVNativeBytes(folder + GetSiblingLibrary(ZVSibling::Tools).File), F_OK) == 0;
}
}

ZVString ZVInstallFolder::Find(const ZVString& productName)
{
    ZVString folder = GetStartedProgramFolder();
    if (HoldsToolsLibrary(folder))
        return folder;
    folder = GetProgramFolder();
    if (HoldsToolsLibrary(folder))
        return folder;
    if (productName.IsEmpty())
        return {};
    folder = ZVFormat(L"%s%s/", ProductsFolder, productName);
    return HoldsToolsLibrary(folder) ? folder : ZVString();
}
