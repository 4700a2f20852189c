#include "system/component/ZVArchiveLibrary.h"

#include "system/library/ZVRunTimeLibrary.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

namespace
{
constexpr char FileName[] = "libarchive.so.13";
}

const ZVArchiveLibrary* ZVArchiveLibrary::Get()
{
    static ZVArchiveLibrary s_library;
    static const bool s_isLoaded = s_library.Load();
    return s_isLoaded ? &s_library : nullptr;
}

bool ZVArchiveLibrary::Load()
{
    ZVRunTimeLibrary library(FileName);
    library.Bind("archive_read_new", ReadNew);
    library.Bind("archive_read_support_filter_xz", SupportXZ);
    library.Bind("archive_read_support_format_tar", SupportTar);
    library.Bind("archive_read_support_format_zip", SupportZip);
    library.Bind("archive_read_open_filename", OpenFile);
    library.Bind("archive_read_next_header2", NextHeader);
    library.Bind("archive_read_data_block", ReadBlock);
    library.Bind("archive_read_free", ReadFree);
    library.Bind("archive_write_disk_new", DiskNew);
    library.Bind("archive_write_disk_set_options", DiskOptions);
    library.Bind("archive_write_header", WriteHeader);
    library.Bind("archive_write_data_block", WriteBlock);
    library.Bind("archive_write_finish_entry", FinishEntry);
    library.Bind("archive_write_free", WriteFree);
    library.Bind("archive_error_string", GetError);
    library.Bind("archive_entry_new", EntryNew);
    library.Bind("archive_entry_free", EntryFree);
    library.Bind("archive_entry_pathname", GetPath);
    library.Bind("archive_entry_symlink", GetSymbolicLink);
    library.Bind("archive_entry_hardlink", GetHardLink);
    library.Bind("archive_entry_filetype", GetFileType);
    if (!library.IsComplete())
        ZVLog(ZVLogCategory::Network, L"ZVArchiveLibrary", "%s cannot be used, so no archive can be unpacked", FileName);
    return library.IsComplete();
}
