#pragma once

#include "system/library/ZVFunctionTable.h"

#include <archive.h>
#include <archive_entry.h>

// clang-format off
#define ZV_ARCHIVE_FUNCTIONS(function)                 \
    function(archive_read_new)                         \
    function(archive_read_support_filter_xz)           \
    function(archive_read_support_format_tar)          \
    function(archive_read_support_format_zip_seekable) \
    function(archive_read_open_filename)               \
    function(archive_read_next_header2)                \
    function(archive_read_data_block)                  \
    function(archive_read_free)                        \
    function(archive_write_disk_new)                   \
    function(archive_write_disk_set_options)           \
    function(archive_write_header)                     \
    function(archive_write_data_block)                 \
    function(archive_write_finish_entry)               \
    function(archive_write_free)                       \
    function(archive_error_string)                     \
    function(archive_entry_new)                        \
    function(archive_entry_free)                       \
    function(archive_entry_pathname)                   \
    function(archive_entry_symlink)                    \
    function(archive_entry_hardlink)                   \
    function(archive_entry_filetype)                   \
    function(archive_entry_perm)                       \
    function(archive_entry_set_perm)                   \
    function(archive_entry_copy_pathname)              \
    function(archive_entry_copy_hardlink)
// clang-format on
ZV_DEFINE_FUNCTION_TABLE(ZVArchiveFunctions, ZV_ARCHIVE_FUNCTIONS);

// The functions of libarchive that unpacking needs. The first archive binds them: months pass between two archives, and no start
// should pay for the library.
struct ZVArchiveLibrary : ZVArchiveFunctions
{
    // The library; null when it is not installed or lacks a function, which is logged. It is never closed.
    static const ZVArchiveLibrary* Get();

private:
    bool Load();
};
