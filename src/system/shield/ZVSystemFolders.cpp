#include "system/shield/ZVSystemFolders.h"

#include "system/filename/ZVPathLayout.h"
#include "system/library/ZVNativeBytes.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <link.h>
#include <pwd.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace
{
struct SystemPath
{
    const char* Path;
    ZVShieldAccess Access;
};

using enum ZVShieldAccess;

// Those of a system that are not there are left out.
constexpr SystemPath SystemPaths[] = {
    {"/usr/lib",                Read },
    {"/usr/lib64",              Read },
    {"/usr/share",              Read },
    {"/usr/local/lib",          Read },
    {"/usr/local/share",        Read },
    {"/lib",                    Read },
    {"/lib64",                  Read },
    {"/etc/ld.so.cache",        Read },
    {"/etc/ld.so.preload",      Read },
    {"/etc/localtime",          Read },
    {"/proc/cpuinfo",           Read },
    {"/sys/devices/system/cpu", Read },
    {"/dev/null",               Write},
    {"/dev/urandom",            Read },
};

constexpr std::wstring_view SharedFolders[] = {
    L"/",      L"/dev/", L"/etc/", L"/home/", L"/media/", L"/mnt/", L"/proc/",
    L"/root/", L"/run/", L"/sys/", L"/tmp/",  L"/usr/",   L"/var/", L"/var/tmp/",
};

constexpr std::wstring_view HomeFolders = L"/home/";

// The folder of a file's path, without its "/".
std::string FolderOf(std::string_view path)
{
    return std::string(path.substr(0, path.rfind('/')));
}

bool IsInSystem(const std::string& folder)
{
    for (const SystemPath& path : SystemPaths)
        if (path.Access == Read && (folder + '/').starts_with(std::string(path.Path) + '/'))
            return true;
    return false;
}

using Function = std::function<void(const char* path, ZVShieldAccess access)>;

// What was last told, so that the libraries of one folder cost one call.
struct LoadedFolders
{
    const Function& Tell;
    std::string Last;

    void Add(const std::string& folder)
    {
        if (folder == Last || IsInSystem(folder) || ZVSystemFolders::IsShared(ZVNativeBytes::ToText(folder.c_str()) + L"/"))
            return;
        Last = folder;
        Tell(folder.c_str(), Read);
    }
};

int AddLoaded(dl_phdr_info* library, size_t, void* data)
{
    if (library->dlpi_name != nullptr && library->dlpi_name[0] == '/')
        static_cast<LoadedFolders*>(data)->Add(FolderOf(library->dlpi_name));
    return 0;
}

// Whether a folder stands right below that of the home folders: root works for all users.
bool IsHomeOfSomebody(const ZVString& folder)
{
    return folder.View().starts_with(HomeFolders) && folder.View().find(L'/', HomeFolders.size()) == folder.View().size() - 1;
}

// Without the variable it is the one of the user's account.
ZVString FindHome()
{
    const char* home = getenv("HOME");
    if (home == nullptr || *home == '\0')
    {
        const passwd* const account = getpwuid(getuid());
        home = account == nullptr ? "" : account->pw_dir;
    }
    char resolved[PATH_MAX];
    if (realpath(home, resolved) == nullptr)
        return {};
    return ZVPathLayout::WithClosingSlash(ZVNativeBytes::ToText(resolved));
}
}

void ZVSystemFolders::ForEach(const Function& function)
{
    for (const SystemPath& path : SystemPaths)
        function(path.Path, path.Access);
    LoadedFolders folders {function, {}};
    dl_iterate_phdr(AddLoaded, &folders);
    const char* const libraryPath = getenv("LD_LIBRARY_PATH");
    std::string_view rest = libraryPath == nullptr ? "" : libraryPath;
    while (!rest.empty())
    {
        const std::string_view folder = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
        if (folder.starts_with('/'))
            folders.Add(std::string(folder.substr(0, folder.find_last_not_of('/') + 1)));
    }
}

bool ZVSystemFolders::IsShared(const ZVString& folder)
{
    for (const std::wstring_view shared : SharedFolders)
        if (folder.View() == shared)
            return true;
    return IsHomeOfSomebody(folder) || FindHome().StartsWith(folder);
}
