#pragma once

#include <archive.h>
#include <archive_entry.h>

// The functions of libarchive that unpacking needs, bound by the first archive: the worker unpacks one in months and should not
// pay for the library at every start.
struct ZVArchiveLibrary
{
    // The bound library; null when it is not there or lacks a function, which is logged. It is never closed.
    static const ZVArchiveLibrary* Get();

    decltype(&archive_read_new) ReadNew = nullptr;
    decltype(&archive_read_support_filter_xz) SupportXZ = nullptr;
    decltype(&archive_read_support_format_tar) SupportTar = nullptr;
    decltype(&archive_read_support_format_zip) SupportZip = nullptr;
    decltype(&archive_read_open_filename) OpenFile = nullptr;
    decltype(&archive_read_next_header2) NextHeader = nullptr;
    decltype(&archive_read_data_block) ReadBlock = nullptr;
    decltype(&archive_read_free) ReadFree = nullptr;
    decltype(&archive_write_disk_new) DiskNew = nullptr;
    decltype(&archive_write_disk_set_options) DiskOptions = nullptr;
    decltype(&archive_write_header) WriteHeader = nullptr;
    decltype(&archive_write_data_block) WriteBlock = nullptr;
    decltype(&archive_write_finish_entry) FinishEntry = nullptr;
    decltype(&archive_write_free) WriteFree = nullptr;
    decltype(&archive_error_string) GetError = nullptr;
    decltype(&archive_entry_new) EntryNew = nullptr;
    decltype(&archive_entry_free) EntryFree = nullptr;
    decltype(&archive_entry_pathname) GetPath = nullptr;
    decltype(&archive_entry_symlink) GetSymbolicLink = nullptr;
    decltype(&archive_entry_hardlink) GetHardLink = nullptr;
    decltype(&archive_entry_filetype) GetFileType = nullptr;

private:
    bool Load();
};
