#include "system/component/ZVComponentArchive.h"

#include "system/component/ZVArchiveLibrary.h"
#include "system/component/ZVArchiveNames.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVNativePath.h"
#include "system/log/ZVLog.h"

#include <algorithm>
#include <clocale>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <system_error>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"ZVComponentArchive"};

constexpr size_t ReadBlockSize = 0x10000;

// No component has a tenth as many entries. A made-up archive could have millions, each of which costs a block of the disk.
constexpr int32_t MaximumEntries = 100'000;

// No component comes near this many bytes, but a made-up archive of a few megabytes can unpack to them.
constexpr int64_t MaximumSize = int64_t {16} << 30;

void Refuse(const char* path, const char* reason)
{
    Source.Log("The archive is refused: %s: %s", path, reason);
}

// libarchive converts names to the locale of the thread, which in the locale "C" fails for all but ASCII.
class UTF8Locale
{
public:
    UTF8Locale() : m_locale(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)), m_before(uselocale(m_locale)) {}
    ~UTF8Locale()
    {
        uselocale(m_before);
        if (m_locale != nullptr)
            freelocale(m_locale);
    }
    UTF8Locale(const UTF8Locale&) = delete;
    UTF8Locale& operator=(const UTF8Locale&) = delete;

private:
    locale_t m_locale;
    locale_t m_before;
};

template <class Object>
using ArchivePointer = std::unique_ptr<Object, decltype(&archive_read_free)>;
using EntryPointer = std::unique_ptr<archive_entry, decltype(&archive_entry_free)>;

// An open archive and the entry that is being read.
class Reader
{
public:
    Reader(const ZVArchiveLibrary& library, const ZVString& path)
        : m_library(library),
          m_archive(library.archive_read_new(), library.archive_read_free),
          m_entry(library.archive_entry_new(), library.archive_entry_free)
    {
        // Only the formats that components come in: for some others libarchive runs programs. A zip file is read through the
        // directory at its end, so that a file that is cut does not pass for a shorter one.
        m_library.archive_read_support_filter_xz(m_archive.get());
        m_library.archive_read_support_format_tar(m_archive.get());
        m_library.archive_read_support_format_zip_seekable(m_archive.get());
        m_result = m_library.archive_read_open_filename(m_archive.get(), ZVNativePath(path), ReadBlockSize);
    }

    // Goes to the next entry. False at the end, after a fault, and at an entry that is not allowed, which is logged.
    bool Next()
    {
        if (m_result == ARCHIVE_OK)
            m_result = m_library.archive_read_next_header2(m_archive.get(), m_entry.get());
        if (m_result != ARCHIVE_OK)
            return false;
        const char* const path = m_library.archive_entry_pathname(m_entry.get());
        const char* const reason = m_names.Add(Describe(path));
        if (reason != nullptr)
        {
            Refuse(path == nullptr ? "" : path, reason);
            m_result = ARCHIVE_FAILED;
            m_isRefused = true;
        }
        return reason == nullptr;
    }
    // Passes the blocks of the entry to take(bytes, count, position) until that returns false. False also after a fault.
    template <class Take>
    bool ReadData(const Take& take)
    {
        const void* bytes = nullptr;
        size_t count = 0;
        int64_t position = 0;
        while ((m_result = m_library.archive_read_data_block(m_archive.get(), &bytes, &count, &position)) == ARCHIVE_OK)
            if (!take(bytes, count, position))
                return false;
        if (m_result != ARCHIVE_EOF)
            return false;
        m_result = ARCHIVE_OK;
        return true;
    }
    // True when all entries were read. Logs a fault.
    bool IsAtEnd() const
    {
        if (m_result != ARCHIVE_EOF && !m_isRefused)
            Refuse("it is damaged", GetError(m_library.archive_error_string(m_archive.get())));
        return m_result == ARCHIVE_EOF;
    }
    archive_entry* GetEntry() const { return m_entry.get(); }
    static const char* GetError(const char* text) { return text == nullptr ? "no reason is known" : text; }

private:
    ZVArchiveEntry Describe(const char* path) const
    {
        if (const char* target = m_library.archive_entry_hardlink(m_entry.get()))
            return {ZVArchiveEntryKind::HardLink, path, target};
        switch (m_library.archive_entry_filetype(m_entry.get()))
        {
        case AE_IFREG:
            return {ZVArchiveEntryKind::File, path};
        case AE_IFDIR:
            return {ZVArchiveEntryKind::Folder, path};
        case AE_IFLNK:
            return {ZVArchiveEntryKind::SymbolicLink, path, m_library.archive_entry_symlink(m_entry.get())};
        default:
            return {ZVArchiveEntryKind::Other, path};
        }
    }

    const UTF8Locale m_locale;
    const ZVArchiveLibrary& m_library;
    const ArchivePointer<archive> m_archive;
    const EntryPointer m_entry;
    ZVArchiveNames m_names;
    int m_result = ARCHIVE_OK;
    bool m_isRefused = false;
};

// Prepares an entry for the folder that it is unpacked into: its names become absolute.
void MoveInto(const ZVArchiveLibrary& library, const std::string& folder, archive_entry* entry)
{
    const std::string path = folder + "/" + library.archive_entry_pathname(entry);
    library.archive_entry_copy_pathname(entry, path.c_str());
    if (const char* target = library.archive_entry_hardlink(entry))
        library.archive_entry_copy_hardlink(entry, (folder + "/" + target).c_str());
    // A folder in which its owner may not delete anything would stay for ever.
    if (library.archive_entry_filetype(entry) == AE_IFDIR)
        library.archive_entry_set_perm(entry, library.archive_entry_perm(entry) | S_IRWXU);
}
}

bool ZVComponentArchive::Check(const ZVString& archive, const ZVString& folder)
{
    const ZVArchiveLibrary* const library = ZVArchiveLibrary::Get();
    if (library == nullptr)
        return false;
    int64_t freeSize = INT64_MAX;
    ZVFileSystem::ZVStatFS(folder, nullptr, nullptr, &freeSize);
    const int64_t maximumSize = std::min(freeSize, MaximumSize);

    Reader reader(*library, archive);
    int64_t size = 0;
    int32_t count = 0;
    while (reader.Next())
    {
        const auto fits = [&size, maximumSize](const void*, size_t bytes, int64_t)
        {
            size += static_cast<int64_t>(bytes);
            return size <= maximumSize;
        };
        const bool isRead = reader.ReadData(fits);
        if (size > maximumSize || ++count > MaximumEntries)
        {
            Refuse("it is too large", size > freeSize ? "the disk has no room for it" : "no component is as large");
            return false;
        }
        if (!isRead)
            break;
    }
    if (!reader.IsAtEnd())
        return false;
    if (count == 0)
        Refuse("it is empty", "there is nothing to unpack");
    return count > 0;
}

bool ZVComponentArchive::Unpack(const ZVString& archive, const std::filesystem::path& folder)
{
    // The permissions are those of the archive within the user's mask: nobody else may write to what the product loads.
    constexpr int Options = ARCHIVE_EXTRACT_TIME | ARCHIVE_EXTRACT_SECURE_SYMLINKS | ARCHIVE_EXTRACT_SECURE_NODOTDOT;

    const ZVArchiveLibrary* const library = ZVArchiveLibrary::Get();
    // Without links, because libarchive refuses to unpack through one.
    std::error_code error;
    const std::string root = std::filesystem::canonical(folder, error);
    if (library == nullptr || error)
        return false;
    Reader reader(*library, archive);
    const ArchivePointer<::archive> disk(library->archive_write_disk_new(), library->archive_write_free);
    library->archive_write_disk_set_options(disk.get(), Options);
    while (reader.Next())
    {
        const auto write = [&](const void* bytes, size_t count, int64_t position)
        { return library->archive_write_data_block(disk.get(), bytes, count, position) >= ARCHIVE_OK; };
        MoveInto(*library, root, reader.GetEntry());
        // A file system that keeps no times is a warning.
        if (library->archive_write_header(disk.get(), reader.GetEntry()) < ARCHIVE_WARN || !reader.ReadData(write) ||
            library->archive_write_finish_entry(disk.get()) < ARCHIVE_WARN)
        {
            Source.Log("Unpacking %s failed: %s", library->archive_entry_pathname(reader.GetEntry()),
                       Reader::GetError(library->archive_error_string(disk.get())));
            return false;
        }
    }
    return reader.IsAtEnd();
}
