#include "caller/scan/CFolderWalk.h"

#include "caller/film/FindDiscFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace
{
namespace fs = std::filesystem;
using namespace std::string_view_literals;

// What the worker takes for films and sound, but for the files within discs and "spx", which are other files mostly. In their order.
constexpr std::string_view Extensions[] = {
    "3g2",  "3gp",  "3gp2", "3gpp",  "aac",  "ac3",  "aif",   "aifc", "aiff",   "amr",  "ape", "asf", "au",
    "avi",  "caf",  "dff",  "divx",  "dsf",  "dts",  "dtshd", "dv",   "dvr-ms", "eac3", "ec3", "f4a", "f4b",
    "f4v",  "flac", "flv",  "ismv",  "ivf",  "k3g",  "m1v",   "m2a",  "m2t",    "m2ts", "m2v", "m4a", "m4b",
    "m4p",  "m4r",  "m4v",  "mjpeg", "mk3d", "mka",  "mkv",   "mlp",  "mov",    "mp1",  "mp2", "mp3", "mp4",
    "mp4v", "mpc",  "mpe",  "mpeg",  "mpg",  "mpv",  "mts",   "mxf",  "nut",    "oga",  "ogg", "ogm", "ogv",
    "opus", "qt",   "ra",   "rm",    "rmvb", "rv",   "snd",   "tak",  "thd",    "tp",   "trp", "ts",  "tta",
    "vob",  "w64",  "wav",  "wave",  "weba", "webm", "wm",    "wma",  "wmv",    "wtv",  "wv",  "y4m", "ztv"};
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

// What a disc consists of; whatever else lies in its folder is none of it.
constexpr std::string_view DiscFolders[] = {"AUDIO_TS", "BDMV", "CERTIFICATE", "VIDEO_TS"};

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

CFolderWalk::CFolderWalk(const std::vector<fs::path>& folders, ErrorFunction onError) : m_onError(std::move(onError))
{
    m_folders.push_back({
        {folders.rbegin(), folders.rend()}
    });
}

bool CFolderWalk::GetNext(Film& film)
{
    while (!m_folders.empty() || !m_links.empty())
    {
        if (m_folders.empty())
            m_folders.push_back({std::exchange(m_links, {})});
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
        const int error = errno;
        struct stat link;
        if (lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode))
            Report(path, strerror(error));
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
    const fs::path disc = FindDiscFile(path);
    Enter(path, disc.empty() ? Inside::Folder : Inside::Disc);
    if (disc.empty())
        return false;
    film = {path, GetDiscIdentity(path / disc.parent_path(), status)};
    return true;
}

// Links to folders wait for the end, so that a film has the name that it has without them.
void CFolderWalk::Enter(const fs::path& folder, Inside what)
{
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    {
        const std::string name = entry->path().filename();
        std::error_code ignored;
        if (name.starts_with('.') || (what == Inside::Disc && std::ranges::find(DiscFolders, name) != std::end(DiscFolders)))
            continue;
        if (entry->is_symlink(ignored) && entry->is_directory(ignored))
            m_links.push_back(entry->path());
        else
            entries.push_back(entry->path());
    }
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

std::optional<CFileIdentity> FindFilm(const fs::path& path)
{
    CFolderWalk walk({path}, [](const fs::path&, const std::string&) {});
    CFolderWalk::Film film;
    if (!walk.GetNext(film) || film.Path != path)
        return std::nullopt;
    return film.Identity;
}
