#pragma once

#include "core/containers/ZVStringMap.h"
#include "disc/bluray/BlurayDirectoryList.h"
#include "disc/bluray/BlurayPlaylist.h"
#include "system/thread/IZVQSortCompare.h"

#include <memory>

// A Blu-ray folder: its playlists, clip information and stream files, and the order of its titles, the main title first.
class BDROM : public IZVQSortCompare<BlurayPlaylist*>
{
public:
    // Lists the folders of a disc; path is the one that holds PLAYLIST and STREAM. Nothing is read yet.
    explicit BDROM(const ZVString& path);
    BDROM(const BDROM&) = delete;
    BDROM& operator=(const BDROM&) = delete;

    // The order of titles, see ComparePlaylists.
    int32_t Compare(BlurayPlaylist* const& first, BlurayPlaylist* const& second) override
    {
        return ComparePlaylists(*first, *second);
    }

    // Reads clips and playlists, and leaves of the playlists that show the same the first by name.
    void Scan();

    // Replaces the array, which does not own them, by the playlists that may be a title, in their order: longer than a count of
    // whole seconds, with sound and picture, and without loops.
    void GetSortedPlaylists(ZVOwnedPtrArray<BlurayPlaylist>& playlists, int32_t minimumSeconds);

    // Below 0 when the first title comes before the second, 0 when they are equal, otherwise above. Titles of nearly the same
    // length go by their sounds, others by their lengths, and the episodes of a series by their names. The answers do not always
    // agree with each other.
    static int32_t ComparePlaylists(const BlurayPlaylist& first, const BlurayPlaylist& second);

    // Why a name is not among the sorted playlists, in words for the log.
    ZVString GetReasonOfAbsence(const ZVString& fileName, int32_t minimumSeconds) const;

    BlurayFileMap<BlurayPlaylist> Playlists;
    BlurayClipFileMap StreamClipFiles;
    BlurayStreamFileMap StreamFiles;
    BlurayFileMap<BlurayInterleavedFile> InterleavedFiles;
    std::unique_ptr<BlurayDirectoryList> RootList;
    std::unique_ptr<BlurayDirectoryList> UnusedList;
    std::unique_ptr<BlurayDirectoryList> BdjoList;
    std::unique_ptr<BlurayDirectoryList> ClipList;
    std::unique_ptr<BlurayDirectoryList> PlaylistList;
    std::unique_ptr<BlurayDirectoryList> SnpList;
    std::unique_ptr<BlurayDirectoryList> SsifList;
    std::unique_ptr<BlurayDirectoryList> StreamList;
    ZVString VolumeLabel;
    bool HasVmFolder = false;   // a folder of a copy protection that runs programs
    bool HasBdjo = false;       // menus in Java
    bool HasFilmIndex = false;  // the index of a recorder
    bool HasSnp = false;        // a recorder's thumbnails
    bool HasSsif = false;       // streams with both views of a 3D title

private:
    void FindInterleavedFiles();
    void ScanPlaylists();

    ZVStringMap<ZVString, false, ZVString> m_duplicates;  // the names that went, and those that they are the same as
};
