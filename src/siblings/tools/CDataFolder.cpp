#include "siblings/tools/CDataFolder.h"

#include "system/library/ZVNativeBytes.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sys/stat.h>

namespace
{
constexpr mode_t FolderMode = 0777;
}

ZVString CDataFolder::WithClosingSlash(const ZVString& directory)
{
    ZVString path = directory;
    if (!path.IsEmpty() && !path.EndsWith(L'/'))
        path += L'/';
    return path;
}

ZVString CDataFolder::Find(const wchar_t* dataDirectory)
{
    if (*dataDirectory != L'\0')
        return WithClosingSlash(dataDirectory);
    const ZVString home = WithClosingSlash(ZVNativeBytes::ToText(getenv("HOME")));
    return home.IsEmpty() ? home : home + L".zivora/Generic/";
}

bool CDataFolder::MakeFoldersOf(const char* filePath)
{
    const size_t size = strlen(filePath) + 1;
    const std::unique_ptr<char[]> path(new char[size]);
    memcpy(path.get(), filePath, size);
    char* const firstName = path.get() + strspn(path.get(), "/");
    for (char* slash = strchr(firstName, '/'); slash != nullptr; slash = strchr(slash + 1, '/'))
    {
        *slash = '\0';
        if (mkdir(path.get(), FolderMode) != 0 && errno != EEXIST)
            return false;
        *slash = '/';
    }
    return true;
}
