#include "video/thumbnail/CZVVideoThumbHelper.h"

#include "core/property/ZVPropertyMap.h"
#include "system/file/ZVFile.h"
#include "system/file/ZVFileInfo.h"
#include "system/library/ZVFileTypes.h"
#include "system/library/ZVPlayers.h"
#include "system/log/ZVLogScope.h"
#include "video/thumbnail/CZVThumbGrabber.h"
#include "video/thumbnail/WriteThumbnailMetadata.h"
#include "video/thumbnail/ZVCoverFile.h"

namespace
{
constexpr wchar_t LogName[] = L"CZVVideoThumbHelper::GetThumbnailZV";
constexpr ZVLogSource Source {ZVLogCategory::Media, LogName};

constexpr wchar_t MediaTypeProperty[] = L"MediaType";
constexpr wchar_t VideoMediaType[] = L"Video";
constexpr wchar_t PlaybackTypeField[] = L"Playback Type";

constexpr int32_t OpenReserved = -10'000;
constexpr int32_t Opaque = 255;

// Turns a picture as the film wants to be shown, and makes it opaque: the fourth byte of a frame's pixels has no meaning.
void Finish(IZVVideoPlayer& player, int32_t stream, IZVImage& image)
{
    ZVStreamInfo info;
    if (player.GetStreamInfo(stream, info) && info.Kind == ZVStreamInfo::KindVideo && info.Rotation != 0 &&
        !image.Rotate(info.Rotation, 100, 0))
        Source.Log("The picture cannot be turned by %d degrees", info.Rotation);
    if (!image.SetAlphaFill(Opaque, 0, 0))
        Source.Log("The picture cannot be made opaque");
}
}

bool CZVVideoThumbHelper::GetThumbnailZV(const ZVString& videoPath, const ZVString& fileType, const ZVString& thumbnailPath,
                                         const ZVString& metadataPath, int32_t timeMs)
{
    m_fileType = fileType;
    m_videoPath = videoPath;
    m_thumbnailPath = thumbnailPath;
    m_metadataPath = metadataPath;
    m_timeMs = timeMs;
    return IsVideo() && GrabThumbnail();
}

bool CZVVideoThumbHelper::IsVideo() const
{
    IZVFileTypes* const fileTypes = ZVFileTypes::Find();
    if (fileTypes == nullptr)
    {
        Source.Log("There is no registry of file types, so nothing is known of: %s", m_videoPath);
        return false;
    }
    ZVFilename video = ZVFilename::FromPath(m_videoPath);
    video.SetProperty(ZVFilename::FileTypeProperty, m_fileType);
    video.SetProperty(MediaTypeProperty, VideoMediaType);
    const IZVFileTypeRecord& record = *fileTypes->GetFileInfo(video.GetSerialized(), 1, 1, 0, 0);
    if (record.GetInt(PlaybackTypeField, 0) == IZVFileTypes::PlaybackVideo)
        return true;
    Source.Log("Files of the type '%s' are not played as video: %s", m_fileType, m_videoPath);
    return false;
}

bool CZVVideoThumbHelper::GrabThumbnail()
{
    const ZVLogScope scope(Source, true);
    const ZVPropertyMap metadata;
    const Written written = ZVFileTypes::IsInClass(m_fileType, IZVFileTypes::ClassMp4) ? TryCoverArt(metadata) : Written();
    if (written.ThumbnailDone && written.MetadataDone)
        return true;
    // The caller may be copying the film at this moment, so that is what a film that cannot be opened is taken for.
    if (!CanBeOpened())
    {
        scope.Log("File in use: %s", m_videoPath);
        return false;
    }
    return PlayVideo(written);
}

// Nobody puts anything into the map yet. Once somebody does, the caller gets it here.
CZVVideoThumbHelper::Written CZVVideoThumbHelper::TryCoverArt(const ZVPropertyMap& metadata) const
{
    ZVCoverFile cover(m_videoPath, m_fileType);
    const bool thumbnailDone = cover.IsPicture() && cover.MoveTo(m_thumbnailPath);
    return {thumbnailDone, WriteThumbnailMetadata(metadata, m_metadataPath)};
}

bool CZVVideoThumbHelper::CanBeOpened() const
{
    // Opening a pipe waits for its other side.
    const ZVFileInfo info(m_videoPath);
    if (info.IsFound() && S_ISFIFO(info.GetMode()))
    {
        Source.Log("A pipe is no film: %s", m_videoPath);
        return false;
    }
    ZVFile file;
    return file.Open(ZVFilename::FromPath(m_videoPath), ZVFileAccess::Read, ZVFileShare::Write);
}

// Also plays a film whose cover is taken, but then catches no frame: callers rely on a film that cannot be played being a failure,
// and on one without video being none.
bool CZVVideoThumbHelper::PlayVideo(const Written& written) const
{
    const ZVVideoPlayerPointer player = ZVPlayers::CreateVideoPlayer();
    if (player == nullptr)
    {
        Source.Log("There is no player library to open: %s", m_videoPath);
        return false;
    }
    if (!player->Open(m_videoPath, OpenReserved))
    {
        Source.Log("Unable to open video file: %s", m_videoPath);
        return false;
    }
    CZVThumbGrabber grabber(*player);
    ZVImagePointer image;
    const int32_t stream = player->GetStreamIndex(ZVStreamInfo::KindVideo);
    const bool result = written.ThumbnailDone || stream < 0 || CatchFrame(*player, stream, grabber, image);
    player->Close();
    return result;
}

bool CZVVideoThumbHelper::CatchFrame(IZVVideoPlayer& player, int32_t stream, CZVThumbGrabber& grabber,
                                     ZVImagePointer& image) const
{
    // Without the library every frame would come in vain.
    if (ZVImages::Create() == nullptr)
    {
        Source.Log("There is no image library to take a picture of: %s", m_videoPath);
        return false;
    }
    if (!grabber.Grab(m_timeMs, image))
    {
        Source.Log("There is nothing to see in: %s", m_videoPath);
        return false;
    }
    Finish(player, stream, *image);
    // The image library says why it cannot be saved. Callers rely on this being no failure: they look for the file.
    image->Save(m_thumbnailPath);
    return true;
}
