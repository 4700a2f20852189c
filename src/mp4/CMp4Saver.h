#pragma once

#include "core/containers/ZVOwnedPtrArray.h"
#include "mp4/model/CAtom.h"
#include "system/file/ZVFileVersion.h"
#include "system/file/ZVLockedTemporaryFile.h"
#include "system/library/ZVDescriptor.h"

#include <cstdint>
#include <memory>
#include <optional>

class CMp4Layout;

// What the saving needs to know of the film.
struct CFilmToSave
{
    ZVString Path;
    // Of the file that was opened; nothing if it is not one of the disk.
    std::optional<ZVFileVersion> Version;
    int64_t FileSize;
    // Where the last of the atoms ends that were read.
    int64_t AtomsEnd;
    const ZVOwnedPtrArray<CAtom>& Roots;
    bool AllowsMissingFTYP;
};

// Writes a film anew, in the two steps between which the film is closed. A step that fails throws a message; the film on the disk is
// as it was then, its atoms count as they did, and nothing is left of the new one.
class CMp4Saver
{
public:
    explicit CMp4Saver(const CFilmToSave& film);
    ~CMp4Saver();

    // Writes the new file in the folder for temporary files, reads it again and compares it with the film.
    void WriteNewFile();
    // Puts the new file in the place of the film.
    void ReplaceFile();

private:
    void FindTarget();
    void CheckFilm() const;
    void CheckSpace() const;
    void CheckVersion() const;
    void Write(const CMp4Layout& layout);
    void CheckNewFile() const;

    CFilmToSave m_film;
    // Where a symbolic link leads to.
    ZVString m_target;
    // Of the film, against everybody who clears temporary files away.
    ZVDescriptor m_lock;
    std::unique_ptr<ZVLockedTemporaryFile> m_newFile;
    int64_t m_newSize = 0;
};
