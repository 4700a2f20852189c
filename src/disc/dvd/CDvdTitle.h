#pragma once

#include "core/containers/ZVArray.h"
#include "core/string/ZVString.h"
#include "system/filename/ZVFilename.h"

#include <cstdint>

// The film on a DVD: the title set whose parts are the largest together.
class CDvdTitle
{
public:
    // A part of the film: a file VTS_nn_1.VOB to VTS_nn_9.VOB that has bytes.
    struct Part
    {
        ZVString Path;
        int64_t Size = 0;  // in bytes
    };

    // The folder VIDEO_TS that a name of the product stands for, with a "/" at its end: the folder itself, the one that it is in,
    // or a file in it. A name that says of itself that it is a DVD needs no VIDEO_TS.IFO. Empty for every other name and for an
    // address. As always when a DVD is looked for, a lost VIDEO_TS.IFO is restored.
    static ZVString FindFolder(const ZVFilename& name);

    // Finds the film in a folder VIDEO_TS, or in that of any file in it. Of two sets of the same size it is the one of the lower
    // number. False when no set has a part with bytes.
    bool Open(const ZVString& path);

    // The size of all parts, in bytes.
    int64_t GetSize() const;

    int32_t Number = 0;   // of the title set, 1 to 99
    ZVArray<Part> Parts;  // in the order in which they play, one directly after the other

    // Both in milliseconds; 0 and none when the set's information can be read neither from its file nor from the backup.
    int64_t Duration = 0;
    ZVArray<int64_t> Chapters;  // where each starts
};
