#include "worker/ZVProgramFiles.h"

#include "system/filename/ZVNativePath.h"

#include <bit>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <link.h>
#include <string>
#include <string_view>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
// Where programs are looked for without a PATH, as execvp does it.
constexpr char DefaultFolders[] = "/bin:/usr/bin";
}

ZVString ZVProgramFiles::Find(const char* name)
{
    const char* const folders = getenv("PATH");
    std::string_view rest = folders == nullptr ? DefaultFolders : folders;
    while (!rest.empty())
    {
        const std::string_view folder = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
        const std::string path = std::string(folder) + "/" + name;
        char resolved[PATH_MAX];
        if (folder.starts_with('/') && access(path.c_str(), X_OK) == 0 && realpath(path.c_str(), resolved) != nullptr)
            return ZVNativePath::ToText(resolved);
    }
    return {};
}

ZVString ZVProgramFiles::GetInterpreter()
{
    const auto* const headers = std::bit_cast<const ElfW(Phdr)*>(getauxval(AT_PHDR));
    const unsigned long count = headers == nullptr ? 0 : getauxval(AT_PHNUM);
    ElfW(Addr) base = 0;
    for (unsigned long index = 0; index < count; ++index)
        if (headers[index].p_type == PT_PHDR)
            base = std::bit_cast<ElfW(Addr)>(headers) - headers[index].p_vaddr;
    for (unsigned long index = 0; index < count; ++index)
        if (headers[index].p_type == PT_INTERP)
            return ZVNativePath::ToText(std::bit_cast<const char*>(base + headers[index].p_vaddr));
    return {};
}

bool ZVProgramFiles::AreOnOneMount(const ZVString& folder, const ZVString& other)
{
    struct statx left;
    struct statx right;
    const auto ask = [](const ZVString& path, struct statx& status)
    { return statx(AT_FDCWD, ZVNativePath(path), 0, STATX_MNT_ID, &status) == 0 && (status.stx_mask & STATX_MNT_ID) != 0; };
    return ask(folder, left) && ask(other, right) && left.stx_mnt_id == right.stx_mnt_id &&
           left.stx_dev_major == right.stx_dev_major && left.stx_dev_minor == right.stx_dev_minor;
}
