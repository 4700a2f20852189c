#pragma once

#include "core/containers/ZVStringArray.h"
#include "siblings/player/CFilmFacts.h"
#include "system/filename/ZVFilename.h"

#include <cstdint>
#include <optional>
#include <vector>

// What the player reads for a name: the file itself, the reference clip of a Blu-ray disc's main title, the parts of a DVD's largest
// title as one, or the stream of a recording that a stub stands for.
//
// Where there is nothing to read, the log says why.
class CPlayerSource
{
public:
    explicit CPlayerSource(const ZVFilename& file);

    bool IsFound() const { return m_paths.GetCount() > 0; }
    // The files that are read, several as one. None has an internet address, unless the name itself had one.
    const ZVStringArray& GetPaths() const { return m_paths; }
    // The extension, which some rules depend on.
    const ZVString& GetExtension() const { return m_extension; }

    // Whether the time stamps of the film begin anew within it, so that a time is found by its share of the bytes alone.
    bool HasRestartingTimes() const { return m_hasRestartingTimes; }

    // The time of what is read that is shown at a time of the film, in milliseconds; a disc's title is longer than its clip.
    int64_t ToReadTime(int64_t milliseconds) const;

    // Puts what the disc knows of the film in the place of what its files say.
    void Complete(CFilmFacts& facts) const;

private:
    void FindBluray(const ZVFilename& file);
    void FindDVD(const ZVFilename& file);
    void FindStream(const ZVFilename& stub);

    ZVStringArray m_paths;
    ZVString m_extension;
    bool m_hasRestartingTimes = false;
    int64_t m_clipStart = 0;    // of the film, in milliseconds
    int64_t m_clipLength = -1;  // the same; -1 when what is read is the whole film
    int64_t m_duration = 0;     // in milliseconds, 0 when the files tell
    std::vector<CChapterFacts> m_chapters;
};
