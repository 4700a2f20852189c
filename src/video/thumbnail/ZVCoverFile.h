#pragma once

#include "core/string/ZVString.h"

// The cover picture of a film, extracted into a temporary file of its own, which is deleted with the object unless it was moved.
class ZVCoverFile
{
public:
    // Extracts the cover of a film of the MP4 family. A film that is damaged, which the log says, or has no cover gives no file.
    ZVCoverFile(const ZVString& videoPath, const ZVString& fileType);
    ~ZVCoverFile();
    ZVCoverFile(const ZVCoverFile&) = delete;
    ZVCoverFile& operator=(const ZVCoverFile&) = delete;

    // Whether there is a file that can be read as a picture, and not only as a placeholder of a few pixels.
    bool IsPicture() const;
    // Has the file, as it is, take the place of another one, or the path of none. False, with the reason in the log, when that
    // fails; the cover is then gone.
    bool MoveTo(const ZVString& path);

private:
    ZVString m_path;
};
