#pragma once

#include "core/containers/ZVOwnedPtrArray.h"
#include "disc/bluray/BDROM.h"
#include "system/filename/ZVFilename.h"

#include <cstdint>
#include <memory>

// The door of the disc reader: scans the Blu-ray folder that a name lies in, sorts its titles and settles on one.
class ZVBlurayHelper
{
public:
    ZVBlurayHelper() = default;
    virtual ~ZVBlurayHelper() = default;
    ZVBlurayHelper(const ZVBlurayHelper&) = delete;
    ZVBlurayHelper& operator=(const ZVBlurayHelper&) = delete;

    // Scans the folder of a file name, which is the disc's BDMV folder; a name without a folder means the working folder. The
    // title that the name's property PlaybackInfo or the file disc.inf asks for is selected, otherwise the first. Without a title
    // none is selected.
    void SetFilename(const ZVFilename& filename);

    // The index in Playlists of the first with a bare file name, in any case, or -1.
    int32_t FindPlaylist(const ZVString& fileName) const;

    // Selects a title by its bare file name. When it is not there the selection stays, and the log says why.
    void SelectPlaylist(const ZVString& fileName);

    // The selected title, or null.
    BlurayPlaylist* GetSelected() const;

    std::unique_ptr<BDROM> Disc;
    ZVFilename Filename;
    ZVOwnedPtrArray<BlurayPlaylist> Playlists;  // the titles in their order; the disc owns them
    int32_t SelectedIndex = -1;

private:
    ZVString GetPlaybackInfo() const;
    void LogAbsence(const ZVString& fileName) const;
};
