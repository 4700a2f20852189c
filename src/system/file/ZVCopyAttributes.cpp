#include "system/file/ZVCopyAttributes.h"

#include "system/file/ZVFileError.h"
#include "system/filename/ZVNativePath.h"
#include "system/log/ZVLogCategory.h"

#include <cerrno>
#include <cstring>
#include <linux/limits.h>
#include <set>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVCopyAttributes"};

constexpr std::string_view SecurityStart = "security.";
constexpr mode_t PermissionBits = 07777;

bool Fail(const char* format, const ZVString& path)
{
    ZVLogFileError(Source, format, path);
    return false;
}

// The names of the extended attributes; a file system without such has none.
bool GetNames(const char* path, std::set<std::string>& names)
{
    std::vector<char> list(XATTR_LIST_MAX);
    const ssize_t size = listxattr(path, list.data(), list.size());
    for (const char* name = list.data(); name < list.data() + size; name += strlen(name) + 1)
        names.insert(name);
    return size >= 0 || errno == ENOTSUP;
}

bool Copy(const char* from, const char* to, const std::string& name)
{
    std::vector<char> value(XATTR_SIZE_MAX);
    const ssize_t size = getxattr(from, name.c_str(), value.data(), value.size());
    return size >= 0 && setxattr(to, name.c_str(), value.data(), static_cast<size_t>(size), 0) == 0;
}

// A list of another file, or one that the folder of the file gave it, would let in others than those who may.
bool CopyExtended(const char* from, const char* to)
{
    std::set<std::string> wanted;
    std::set<std::string> present;
    if (!GetNames(from, wanted) || !GetNames(to, present))
        return false;
    for (const std::string& name : wanted)
        if (!Copy(from, to, name) && !name.starts_with(SecurityStart))
            return false;
    for (const std::string& name : present)
        if (!wanted.contains(name) && !name.starts_with(SecurityStart) && removexattr(to, name.c_str()) != 0)
            return false;
    return true;
}
}

bool ZVCopyAttributes(const ZVString& from, const ZVString& to)
{
    const ZVNativePath source(from);
    const ZVNativePath target(to);
    struct stat model;
    struct stat status;
    if (stat(source, &model) != 0 || stat(target, &status) != 0)
        return Fail("Error %d asking for the owner of: %s", from);
    const bool hasOwner = status.st_uid == model.st_uid && status.st_gid == model.st_gid;
    if (!hasOwner && chown(target, model.st_uid, model.st_gid) != 0)
        return Fail("Error %d giving a new file the owner of: %s", from);
    if (!CopyExtended(source, target))
        return Fail("Error %d giving a new file the extended attributes of: %s", from);
    // At the end: a new owner takes bits away, and a list of rights sets those of the group.
    return chmod(target, model.st_mode & PermissionBits) == 0 || Fail("Error %d giving a new file the mode of: %s", from);
}
