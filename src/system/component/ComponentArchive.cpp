#include "system/component/ComponentArchive.h"

#include "system/component/ZVArchiveLibrary.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVNativePath.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"ComponentArchive"};

constexpr size_t ReadBlockSize = 0x10000;

// No component has a tenth of it; a made-up archive could have millions, each of which costs a block of the disk.
constexpr int32_t MaximumEntries = 100'000;

// Nor does any component come near this many bytes, which a made-up archive of a few megabytes can claim to hold.
constexpr int64_t MaximumSize = int64_t {16} << 30;

void Refuse(const char* path, const char* reason)
{
    Source.Log("The archive is refused: %s: %s", path, reason);
}

// The depth of folders that a relative path leads to, or -1 when it is absolute or leaves its folder on the way.
int32_t GetDepth(std::string_view path, int32_t depth)
{
    if (path.empty() || path.front() == '/')
        return -1;
    while (!path.empty() && depth >= 0)
    {
        const size_t length = path.find('/');
        const std::string_view step = path.substr(0, length);
        path.remove_prefix(length == std::string_view::npos ? path.size() : length + 1);
        if (step == "..")
            --depth;
        else if (!step.empty() && step != ".")
            ++depth;
    }
    return depth;
}

bool HasParentStep(std::string_view path)
{
    for (size_t position = path.find(".."); position != std::string_view::npos; position = path.find("..", position + 1))
        if ((position == 0 || path[position - 1] == '/') && (position + 2 == path.size() || path[position + 2] == '/'))
            return true;
    return false;
}

// True when a link out of a folder of some depth could lead above the root. It may climb only at its beginning: behind a step
// through another link ".." leads to where that one points, which the names do not tell.
bool LeadsOut(std::string_view target, int32_t depth)
{
    if (GetDepth(target, depth) < 0)
        return true;
    while (target.starts_with("../") || target.starts_with("./") || target.starts_with('/'))
        target.remove_prefix(target.find('/') + 1);
    return target != ".." && HasParentStep(target);
}

// An open archive and the entry that is read.
class Reader
{
public:
    Reader(const ZVArchiveLibrary& library, const ZVString& path)
        : m_library(library), m_archive(library.archive_read_new()), m_entry(library.archive_entry_new())
    {
        // Not all that the library knows: for some it runs other programs.
        m_library.archive_read_support_filter_xz(m_archive);
        m_library.archive_read_support_format_tar(m_archive);
        m_library.archive_read_support_format_zip(m_archive);
        m_result = m_library.archive_read_open_filename(m_archive, ZVNativePath(path), ReadBlockSize);
    }
    ~Reader()
    {
        m_library.archive_entry_free(m_entry);
        m_library.archive_read_free(m_archive);
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    // Goes to the next entry; false at the end and at a fault.
    bool Next()
    {
        if (m_result == ARCHIVE_OK)
            m_result = m_library.archive_read_next_header2(m_archive, m_entry);
        return m_result == ARCHIVE_OK;
    }
    // Gives the blocks of the entry to a function of bytes, a count and a position, until it says no. False also at a fault.
    template <class Take>
    bool ReadData(const Take& take)
    {
        const void* bytes = nullptr;
        size_t count = 0;
        int64_t position = 0;
        while ((m_result = m_library.archive_read_data_block(m_archive, &bytes, &count, &position)) == ARCHIVE_OK)
            if (!take(bytes, count, position))
                return false;
        if (m_result != ARCHIVE_EOF)
            return false;
        m_result = ARCHIVE_OK;
        return true;
    }
    // True when all entries were read. A fault is logged.
    bool IsAtEnd() const
    {
        if (m_result != ARCHIVE_EOF)
            Refuse("it is damaged", GetError(m_library.archive_error_string(m_archive)));
        return m_result == ARCHIVE_EOF;
    }
    archive_entry* GetEntry() const { return m_entry; }
    static const char* GetError(const char* text) { return text == nullptr ? "no reason is known" : text; }

private:
    const ZVArchiveLibrary& m_library;
    archive* m_archive;
    archive_entry* m_entry;
    int m_result = ARCHIVE_OK;
};

bool IsAllowed(const ZVArchiveLibrary& library, archive_entry* entry)
{
    const char* const path = library.archive_entry_pathname(entry);
    if (path == nullptr || GetDepth(path, 0) < 0 || HasParentStep(path))
    {
        Refuse(path == nullptr ? "" : path, "the name leaves the folder");
        return false;
    }
    const char* const hardLink = library.archive_entry_hardlink(entry);
    const char* const symbolicLink = library.archive_entry_symlink(entry);
    const auto type = library.archive_entry_filetype(entry);
    if (hardLink == nullptr && type != AE_IFREG && type != AE_IFDIR && type != AE_IFLNK)
    {
        Refuse(path, "it is neither a file nor a folder nor a link");
        return false;
    }
    // A symbolic link starts in the folder that it is in, a hard link in the root of the archive.
    const bool linksOut = (hardLink != nullptr && (GetDepth(hardLink, 0) < 0 || HasParentStep(hardLink))) ||
                          (symbolicLink != nullptr && LeadsOut(symbolicLink, GetDepth(path, 0) - 1));
    if (linksOut)
        Refuse(path, "the link leaves the folder");
    return !linksOut;
}

// The process's working folder is another one while this lives.
class WorkingFolder
{
public:
    explicit WorkingFolder(const ZVString& folder)
        : m_before(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)), m_isThere(m_before != -1 && chdir(ZVNativePath(folder)) == 0)
    {
    }
    ~WorkingFolder()
    {
        if (m_isThere && fchdir(m_before) != 0)
            Source.Log("The working folder is gone");
        if (m_before != -1)
            close(m_before);
    }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

    bool IsThere() const { return m_isThere; }

private:
    int m_before;
    bool m_isThere;
};
}

bool ComponentArchive::Check(const ZVString& path, const ZVString& folder)
{
    const ZVArchiveLibrary* const library = ZVArchiveLibrary::Get();
    if (library == nullptr)
        return false;
    int64_t freeSize = INT64_MAX;
    ZVFileSystem::ZVStatFS(folder, nullptr, nullptr, &freeSize);
    const int64_t maximumSize = std::min(freeSize, MaximumSize);

    Reader reader(*library, path);
    int64_t size = 0;
    int32_t count = 0;
    while (reader.Next())
    {
        if (!IsAllowed(*library, reader.GetEntry()))
            return false;
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

bool ComponentArchive::Unpack(const ZVString& path, const ZVString& folder)
{
    // The permissions are those of the archive within the user's mask: what the product loads is for nobody else to write.
    constexpr int Options = ARCHIVE_EXTRACT_TIME | ARCHIVE_EXTRACT_SECURE_SYMLINKS | ARCHIVE_EXTRACT_SECURE_NODOTDOT |
                            ARCHIVE_EXTRACT_SECURE_NOABSOLUTEPATHS;

    const ZVArchiveLibrary* const library = ZVArchiveLibrary::Get();
    if (library == nullptr)
        return false;
    Reader reader(*library, path);
    // The names stay relative: the library's own tests for what leaves the folder need them so.
    const WorkingFolder workingFolder(folder);
    if (!workingFolder.IsThere())
        return false;
    const std::unique_ptr<archive, decltype(library->archive_write_free)> disk(library->archive_write_disk_new(),
                                                                               library->archive_write_free);
    library->archive_write_disk_set_options(disk.get(), Options);
    while (reader.Next())
    {
        const auto write = [&](const void* bytes, size_t count, int64_t position)
        { return library->archive_write_data_block(disk.get(), bytes, count, position) >= ARCHIVE_OK; };
        if (!IsAllowed(*library, reader.GetEntry()))
            return false;
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
