#include "caller/scan/CFolderWalk.h"

#include "caller/film/FindDiscFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;
using namespace std::string_view_literals;

// In their order.
constexpr std::string_view Extensions[] = {
    "3g2", "3gp", "aac",  "ac3",  "aif", "aiff", "ape", "asf", "avi", "divx", "dsf",  "dts", "dv",   "dvr-ms", "f4v", "flac",
    "flv", "m1v", "m2ts", "m2v",  "m4a", "m4b",  "m4v", "mka", "mkv", "mov",  "mp3",  "mp4", "mpeg", "mpg",    "mts", "mxf",
    "ogg", "ogm", "ogv",  "opus", "rm",  "rmvb", "ts",  "tta", "vob", "wav",  "webm", "wma", "wmv",  "wtv",    "wv",
};
static_assert(std::ranges::is_sorted(Extensions));

bool IsFilmName(const fs::path& path)
{
    std::string extension = path.extension();
    if (extension.size() < 2)
        return false;
    std::ranges::transform(extension, extension.begin(), [](unsigned char letter) { return static_cast<char>(tolower(letter)); });
    return std::ranges::binary_search(Extensions, std::string_view(extension).substr(1));
}

CFileIdentity GetIdentity(const struct stat& status)
{
    return {status.st_size, status.st_mtim.tv_sec * int64_t {1'000'000'000} + status.st_mtim.tv_nsec,
            static_cast<int64_t>(status.st_ino)};
}

// Of a disc: the size of all its files, and the time of the newest.
CFileIdentity GetDiscIdentity(const fs::path& folder, const struct stat& status)
{
    CFileIdentity identity = GetIdentity(status);
    identity.Size = 0;
    std::error_code error;
    for (fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error), end;
         !error && entry != end; entry.increment(error))
    {
        struct stat file;
        if (lstat(entry->path().c_str(), &file) != 0 || !S_ISREG(file.st_mode))
            continue;
        identity.Size += file.st_size;
        identity.ModificationTime = std::max(identity.ModificationTime, GetIdentity(file).ModificationTime);
    }
    return identity;
}
}

CFolderWalk::CFolderWalk(const fs::path& folder, ErrorFunction onError) : m_onError(std::move(onError))
{
    m_folders.push_back({{folder}});
}

bool CFolderWalk::GetNext(Film& film)
{
    while (!m_folders.empty())
    {
        std::vector<fs::path>& entries = m_folders.back().Entries;
        if (entries.empty())
        {
            m_folders.pop_back();
            continue;
        }
        const fs::path path = std::move(entries.back());
        entries.pop_back();
        if (Look(path, film))
            return true;
    }
    return false;
}

// True for a film; a folder is entered.
bool CFolderWalk::Look(const fs::path& path, Film& film)
{
    struct stat status;
    if (stat(path.c_str(), &status) != 0)
    {
        // A link that leads nowhere, or into itself, is no film.
        struct stat link;
        if (lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode))
            Report(path, strerror(errno));
        return false;
    }
    if (S_ISREG(status.st_mode))
    {
        if (!IsFilmName(path))
            return false;
        film = {path, GetIdentity(status)};
        return true;
    }
    if (!S_ISDIR(status.st_mode) || !m_entered.emplace(status.st_dev, status.st_ino).second)
        return false;
    if (!FindDiscFile(path).empty())
    {
        film = {path, GetDiscIdentity(path, status)};
        return true;
    }
    Enter(path);
    return false;
}

void CFolderWalk::Enter(const fs::path& folder)
{
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (!entry->path().filename().native().starts_with('.'))
            entries.push_back(entry->path());
    if (error)
        Report(folder, error.message());
    std::ranges::sort(entries, std::ranges::greater(), &fs::path::native);
    m_folders.push_back({std::move(entries)});
}

void CFolderWalk::Report(const fs::path& path, const std::string& reason)
{
    m_isComplete = false;
    m_onError(path, reason);
}
