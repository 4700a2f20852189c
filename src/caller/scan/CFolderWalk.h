#pragma once

#include "caller/catalog/CCatalog.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

// Walks through folders and finds films: files with the extensions of films and sound files, and folders that are discs, which count
// as one. Names are taken as bytes and in their order, hidden ones are passed over. A link to a folder is followed when everything else was
// walked through, and no folder is walked through twice, so loops end.
class CFolderWalk
{
public:
    struct Film
    {
        std::filesystem::path Path;
        CFileIdentity Identity;  // of a disc that of its newest file, with the size of all
    };

    // The function gets what cannot be read, with the reason.
    using ErrorFunction = std::function<void(const std::filesystem::path& path, const std::string& reason)>;

    CFolderWalk(const std::vector<std::filesystem::path>& folders, ErrorFunction onError);

    // Sets the next film. False when there is none any more.
    bool GetNext(Film& film);
    // Whether all folders could be read.
    bool IsComplete() const { return m_isComplete; }

private:
    struct Folder
    {
        std::vector<std::filesystem::path> Entries;  // the next one is the last
    };

    enum class Inside
    {
        Folder,
        Disc,
    };

    void Enter(const std::filesystem::path& folder, Inside what);
    bool Look(const std::filesystem::path& path, Film& film);
    void Report(const std::filesystem::path& path, const std::string& reason);

    ErrorFunction m_onError;
    std::vector<Folder> m_folders;
    std::vector<std::filesystem::path> m_links;         // to folders
    std::set<std::pair<uint64_t, uint64_t>> m_entered;  // device and inode of each folder
    bool m_isComplete = true;
};

// What the film of a path is now, as a walk would see it. Nothing if it is no film any more.
std::optional<CFileIdentity> FindFilm(const std::filesystem::path& path);
