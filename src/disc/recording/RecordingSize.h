#pragma once

#include "system/filename/ZVFilename.h"

#include <cstdint>

// How large a television recording is with all the files that it is made of, in bytes.
//
// The files of a recording in a time-shift folder have its name ("zts") with another last letter; those of a finished one are named
// in its stub ("ztv"). To both belong the chunk files beside the stream. A folder's chunks count for each recording in
// it, and a part that is not there adds nothing. 0 for a file that does not exist, and for every other extension; the extensions
// count only in lower case.
int64_t GetRecordingSize(const ZVFilename& path);

// The size of a media file: that of the whole recording for "zts" and "ztv", otherwise that of the file, which is -1 when it has
// none.
int64_t GetMediaFileSize(const ZVFilename& name);
