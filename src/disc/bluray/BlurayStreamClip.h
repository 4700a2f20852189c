#pragma once

#include "core/containers/ZVArray.h"
#include "disc/bluray/BDFile.h"
#include "disc/bluray/BlurayStream.h"
#include "disc/bluray/BlurayStreamClipFile.h"

#include <cstdint>

// A piece of a transport stream that a playlist plays. Times are in seconds.
class BlurayStreamClip : public BlurayStream
{
public:
    // The name and the codec tag of the play item, "12345.M2TS"; of an angle the full path of its stream file.
    ZVString Name;
    int32_t AngleIndex = 0;  // 0 for the main clip, 1 and up for further angles
    double TimeIn = 0.0;
    double TimeOut = 0.0;
    double RelativeTimeIn = 0.0;  // on the time line of the playlist
    double RelativeTimeOut = 0.0;
    double Length = 0.0;
    int64_t FileSize = 0;  // in bytes, of the interleaved file; 0 without one
    // Sizes of readers that go through the streams themselves, which this one does not.
    int64_t PayloadSize = 0;
    int64_t PacketSize = 0;
    ZVArray<double> Chapters;                        // the accepted marks, on the time line of the clip
    BlurayStreamFile* StreamFile = nullptr;          // null when the disc has no such file; not owned
    BlurayStreamClipFile* StreamClipFile = nullptr;  // never null in a playlist; not owned
    bool IsScanned = false;
};
