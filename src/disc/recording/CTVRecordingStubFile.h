#pragma once

#include "core/string/ZVString.h"
#include "system/filename/ZVFilename.h"
#include "system/loader/ZVReaders.h"

#include <cstdint>

// The stub of a television recording: a small file with the extension "ztv" that stands for the recording in the library and names
// the files that it is made of.
class CTVRecordingStubFile
{
public:
    // The start of the file. Its numbers are in the byte order of the machine.
    struct Header
    {
        char Magic[4] = {'Z', 'T', 'V', 'S'};  // not tested when a stub is read
        int32_t Version = 1;                   // 1, or 2 for a recorded transport stream
        int64_t MinimumTime = 0;
        int64_t MinimumBytes = 0;
        int64_t MaximumTime = 0;
        int64_t MaximumBytes = 0;
    };

    CTVRecordingStubFile() = default;
    virtual ~CTVRecordingStubFile() = default;
    CTVRecordingStubFile(const CTVRecordingStubFile&) = delete;
    CTVRecordingStubFile& operator=(const CTVRecordingStubFile&) = delete;

    // Reads a stub, from a path or an internet address. False without a log line of its own when it cannot be read or is too
    // short; the paths are empty then.
    //
    // The paths of a stub that comes from an address are taken as they stand. Those of a local stub are made absolute against
    // its folder, so that a stub which was moved together with its recording still finds it. Each of them is empty or begins
    // with "/", so a local stub never leads to an address.
    bool Read(const ZVFilename& path);
    // Reads a stub of that path through a closed reader. Null fails.
    bool Read(const ZVFilename& path, ZVReaderPointer reader);

    Header Head;

    // The files of the recording, or empty. A stub of an even version names the stream alone.
    ZVString FirstPath;
    ZVString SecondPath;
    ZVString ThirdPath;
    ZVString StreamPath;

private:
    bool ReadHeader();
    bool ReadPaths(const ZVFilename& path);

    ZVReaderPointer m_reader;
};
