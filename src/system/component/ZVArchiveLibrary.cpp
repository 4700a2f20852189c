#include "system/component/ZVArchiveLibrary.h"

#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <dlfcn.h>

namespace
{
constexpr char FileName[] = "libarchive.so.13";

template <class Function>
bool Bind(void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}
}

const ZVArchiveLibrary* ZVArchiveLibrary::Get()
{
    static ZVArchiveLibrary s_library;
    static const bool s_isLoaded = s_library.Load();
    return s_isLoaded ? &s_library : nullptr;
}

bool ZVArchiveLibrary::Load()
{
    void* const library = dlopen(FileName, RTLD_NOW | RTLD_LOCAL);
    const bool isLoaded =
        library != nullptr && Bind(library, "archive_read_new", ReadNew) &&
        Bind(library, "archive_read_support_filter_all", SupportFilters) && Bind(library, "archive_read_support_format_tar", SupportTar) &&
        Bind(library, "archive_read_support_format_zip", SupportZip) && Bind(library, "archive_read_open_filename", OpenFile) &&
        Bind(library, "archive_read_next_header2", NextHeader) && Bind(library, "archive_read_data_block", ReadBlock) &&
        Bind(library, "archive_read_free", ReadFree) && Bind(library, "archive_write_disk_new", DiskNew) &&
        Bind(library, "archive_write_disk_set_options", DiskOptions) && Bind(library, "archive_write_header", WriteHeader) &&
        Bind(library, "archive_write_data_block", WriteBlock) && Bind(library, "archive_write_finish_entry", FinishEntry) &&
        Bind(library, "archive_write_free", WriteFree) && Bind(library, "archive_error_string", GetError) &&
        Bind(library, "archive_entry_new", EntryNew) && Bind(library, "archive_entry_free", EntryFree) &&
        Bind(library, "archive_entry_pathname", GetPath) && Bind(library, "archive_entry_symlink", GetSymbolicLink) &&
        Bind(library, "archive_entry_hardlink", GetHardLink) && Bind(library, "archive_entry_filetype", GetFileType);
    if (!isLoaded)
        ZVLog(ZVLogCategory::Network, L"ZVArchiveLibrary", "%s cannot be used, so no archive can be unpacked", FileName);
    return isLoaded;
}
