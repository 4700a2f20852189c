#pragma once

#include "disc/bluray/ZVBlurayHelper.h"
#include "system/filename/ZVFilename.h"

#include <memory>
#include <optional>

// Which file is opened for a film: the file itself or, for a Blu-ray disc, the stream that stands for its main title, with the
// languages that the disc tells. A disc is given by a file in its BDMV folder, by a playlist, or by a name with the type of a
// disc.
class ZVFilmSource
{
public:
    // Looks at the kind of the name, and scans the disc that it names.
    explicit ZVFilmSource(const ZVFilename& file);

    bool IsDisc() const { return m_disc != nullptr; }
    // The path of the file to open; empty for a disc without a title.
    const ZVString& GetPath() const { return m_path; }

    // What the disc says of the language of the stream with a PID, as a name and possibly empty; nothing for a stream that the
    // title does not have, and when there is no disc.
    std::optional<ZVString> FindLanguage(int32_t pid) const;

private:
    std::unique_ptr<ZVBlurayHelper> m_disc;
    ZVString m_path;
};
