#include "video/thumbnail/ZVCoverFile.h"

#include "mp4/CMp4File.h"
#include "mp4/OpenMp4File.h"
#include "system/file/ZVFileSystem.h"
#include "system/library/ZVImages.h"
#include "system/log/ZVLog.h"

#include <cstdint>
#include <utility>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"ZVCoverFile"};

// The cover is only looked at, so a large one need not be read in full size.
constexpr ZVImageSize LargestSize {400, 400};
// Some programs write a cover of one pixel into films that have none.
constexpr int64_t PlaceholderPixels = 15;

// The path of the new file; empty without one.
ZVString Extract(const ZVString& videoPath, const ZVString& fileType)
{
    CMp4File film;
    if (!OpenMp4File(film, ZVFilename::FromPath(videoPath), fileType))
    {
        Source.Log("No cover is read from %s: %s", videoPath, film.GetLastError());
        return {};
    }
    ZVFilename cover;
    return film.GetImageFile(cover) ? cover.GetFilename() : ZVString();
}
}

ZVCoverFile::ZVCoverFile(const ZVString& videoPath, const ZVString& fileType) : m_path(Extract(videoPath, fileType)) {}

ZVCoverFile::~ZVCoverFile()
{
    if (!m_path.IsEmpty())
        ZVFileSystem::DeleteFile(m_path);
}

bool ZVCoverFile::IsPicture() const
{
    if (m_path.IsEmpty() || !ZVFileSystem::Exists(m_path))
        return false;
    const ZVImagePointer image = ZVImages::Create();
    if (image == nullptr)
        return false;
    image->SetKind(IZVImage::KindCover);
    return image->Load(m_path, LargestSize, 1, -1, 0, 0, 0, 1, 0) &&
           int64_t {image->GetWidth()} * image->GetHeight() > PlaceholderPixels;
}

bool ZVCoverFile::MoveTo(const ZVString& path)
{
    // The replacement deletes what it cannot move. Whichever way it ends, another process may by now have a cover of that name.
    const ZVString cover = std::exchange(m_path, {});
    if (!ZVFileSystem::SafeReplaceFile(path, cover, 0))
        return false;
    ZVFileSystem::SetFileAttributes(path, ZVFileSystem::AttributesNormal);
    return true;
}
