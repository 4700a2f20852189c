#pragma once

#include "core/containers/ZVArray.h"
#include "core/containers/ZVOwnedPtrArray.h"
#include "core/containers/ZVStringToOwnedPtrMap.h"
#include "disc/bluray/BDFile.h"
#include "disc/bluray/BlurayScan.h"
#include "disc/bluray/BlurayStreamClip.h"
#include "system/filename/ZVFilename.h"

#include <cstdint>

class ZVByteSpan;

// Files of a disc by their names, in any case, owned.
template <class File>
using BlurayFileMap = ZVStringToOwnedPtrMap<ZVString, false, File>;

using BlurayStreamFileMap = BlurayFileMap<BlurayStreamFile>;
using BlurayClipFileMap = BlurayFileMap<BlurayStreamClipFile>;

// A title of a disc, an .mpls file: the pieces of transport stream that it plays, their streams and the marks of its chapters.
class BlurayPlaylist : public BDFile
{
public:
    using AngleMap = ZVMap<double, double, BlurayStreamClip*, BlurayStreamClip*, true>;

    using BDFile::BDFile;

    // Reads the file with the help of the disc's stream files and clip files, which outlive the playlist, and tells its
    // signature: playlists with the same one show the same. False for a file that is none, and when an angle's clip file is
    // missing; what was read before then stands.
    bool Scan(const BlurayStreamFileMap& streamFiles, const BlurayClipFileMap& clipFiles, ZVString& signature, BlurayScan& scan);

    // What follows once the playlist is read: looks for loops, sorts the clips by angles, and takes up the streams that stand in
    // the clip file of the reference clip alone.
    void Initialize(BlurayScan& scan);

    // The length of the main clips together, in seconds.
    double GetTotalLength() const { return m_totalLength; }
    // The clip that stands for the title; null in an empty playlist.
    BlurayStreamClip* GetReferenceClip() const;
    // The stream of a PID, or null.
    BlurayStream* FindStream(uint16_t pid) const { return PlaylistStreams.Get(pid); }

    ZVFilename Filename;
    ZVString Title;
    bool Initialized = false;
    bool HasHiddenStreams = false;
    bool HasLoops = false;  // a clip is played twice from the same place
    bool IsCustom = false;
    int32_t AngleCount = 0;        // the largest count of further angles of an item
    int32_t AudioStreamCount = 0;  // the largest count of primary sounds of an item
    int32_t VideoStreamCount = 0;  // the same for pictures
    BlurayStreamMap PlaylistStreams;
    ZVOwnedPtrArray<BlurayStreamClip> Clips;  // in the order of the file, each main clip followed by its angles
    ZVArray<double> Chapters;                 // the accepted marks, in seconds on the time line of the playlist
    BlurayStreamMap Streams;
    ZVOwnedPtrArray<AngleMap> AngleClips;  // for each further angle its clips by their times
    ZVArray<BlurayStream*> SortedStreams;
    // The streams that stand in the reference clip's clip file and in no table of the playlist, by their kinds; owned by
    // PlaylistStreams.
    ZVArray<BlurayStream*> VideoStreams;
    ZVArray<BlurayStream*> AudioStreams;
    ZVArray<BlurayStream*> TextStreams;
    ZVArray<BlurayStream*> GraphicsStreams;

private:
    friend class BlurayPlaylistReader;

    void AddClip(std::unique_ptr<BlurayStreamClip> clip);
    void LoadStreamClips(BlurayScan& scan);
    void LoadAngleClips(BlurayScan& scan);
    void LoadClipFileStreams(const BlurayStreamMap& streams);
    ZVArray<BlurayStream*>* FindList(const BlurayStream& stream);
    void FindLoops();

    // Of the main clips in their order: the same double as that of a sum over them.
    double m_totalLength = 0.0;
};
