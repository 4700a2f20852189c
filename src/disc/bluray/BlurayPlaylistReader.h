#pragma once

#include "disc/bluray/BlurayPlaylist.h"
#include "disc/bluray/BlurayStreamReader.h"

// Reads the bytes of an .mpls file into a playlist. Every record is found by the length of the one before it, so that one with
// fields that are not known, or with lists that run past its end, does not shift those after it.
class BlurayPlaylistReader
{
public:
    // The files of the disc that a playlist names.
    struct Files
    {
        const BlurayStreamFileMap& Streams;
        const BlurayClipFileMap& Clips;
    };

    // Playlist, signature and scan outlive the reader.
    BlurayPlaylistReader(BlurayPlaylist& playlist, const Files& files, ZVString& signature, BlurayScan& scan);

    // Reads one file; see BlurayPlaylist::Scan.
    bool Read(const ZVByteSpan& file);

private:
    // What became of an item.
    enum class ItemResult
    {
        Read,
        EndOfItems,  // its clip file is missing, or the budget is spent
        Refused,     // an angle's clip file is missing
    };

    bool ReadItems(const ZVByteSpan& file, int64_t position);
    ItemResult ReadItem(BlurayCursor& cursor);
    ItemResult ReadAngles(BlurayCursor& cursor, const BlurayStreamClip& mainClip);
    ItemResult ReadStreams(BlurayCursor& cursor);
    bool ReadStreamEntries(BlurayCursor& cursor, int32_t count, int64_t skipAfterEach = 0);
    void ReadStreamEntry(BlurayCursor& cursor);
    void ReadMarks(const ZVByteSpan& file, int64_t position);
    void ReadMark(BlurayCursor& cursor);
    ItemResult EndItems(const wchar_t* what) const;
    void UseFiles(BlurayStreamClip& clip, BlurayStreamFile* streamFile, BlurayStreamClipFile* clipFile) const;

    BlurayPlaylist& m_playlist;
    const Files m_files;
    ZVString& m_signature;
    BlurayScan& m_scan;
    ZVArray<BlurayStreamClip*> m_mainClips;
};
