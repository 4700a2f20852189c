#pragma once

#include "disc/bluray/ZVBlurayHelper.h"
#include "system/filename/ZVFilename.h"

#include <memory>
#include <optional>

// Which file is opened for a film: the file itself or, for a Blu-ray disc, the stream that stands for its main title, with the
// languages that the disc tells. A disc is given by a file in its BDMV folder, by a playlist, or by a name with the type of a
// disc. Disc images and the folders of DVDs are refused.
//
// The log says which stream of a disc is taken, or why there is nothing to open.
class ZVFilmSource
{
public:
    // Looks at the kind of the name, and scans the disc that it names.
    explicit ZVFilmSource(const ZVFilename& file);

    // Whether there is something to open.
    bool IsFound() const { return m_isFound; }
    const ZVString& GetPath() const { return m_path; }
    // The title of the disc that is shown; null when the name is not that of a Blu-ray disc or the disc has none.
    const BlurayPlaylist* GetTitle() const { return m_disc == nullptr ? nullptr : m_disc->GetSelected(); }

    // What the disc says of the language of the stream with a PID, as a name and possibly empty; nothing for a stream that the
    // title does not have, and when there is no disc.
    std::optional<ZVString> FindLanguage(int32_t pid) const;

private:
    void ChooseTitle(const ZVFilename& file, const ZVString& extension);

    std::unique_ptr<ZVBlurayHelper> m_disc;
    ZVString m_path;
    bool m_isFound = true;
};
