#pragma once

#include "core/string/ZVString.h"
#include "system/library/ZVImages.h"

#include <cstdint>

class CZVThumbGrabber;
class IZVVideoPlayer;
class ZVPropertyMap;

// Makes one still picture for a film: the cover that a file of the MP4 family carries, otherwise a frame.
class CZVVideoThumbHelper
{
public:
    // Makes the picture of a film. The paths are paths of the system; the type is the extension that says what the film is. A
    // frame is that of a time in milliseconds, or one a minute later, and is saved in the format of the picture's extension; a
    // cover is moved there in the format that it has. False, with the reason in the log, when there is no picture to take.
    //
    // True does not say that there is a file: neither a film without video nor a picture that cannot be saved is a failure. The
    // caller looks for the file. Nor does it wait for the one of the metadata, since nobody tells what would be in it yet.
    //
    // May take a minute, for two attempts of half a minute each.
    bool GetThumbnailZV(const ZVString& videoPath, const ZVString& fileType, const ZVString& thumbnailPath,
                        const ZVString& metadataPath, int32_t timeMs);

private:
    // Which of the two files are written.
    struct Written
    {
        bool ThumbnailDone = false;
        bool MetadataDone = false;
    };

    bool IsVideo() const;
    bool GrabThumbnail();
    Written TryCoverArt(const ZVPropertyMap& metadata) const;
    bool CanBeOpened() const;
    bool PlayVideo(const Written& written) const;
    bool CatchFrame(IZVVideoPlayer& player, int32_t stream, CZVThumbGrabber& grabber, ZVImagePointer& image) const;

    ZVString m_fileType;
    ZVString m_videoPath;
    ZVString m_thumbnailPath;
    ZVString m_metadataPath;
    int32_t m_timeMs = 0;
};
