#include "siblings/image/CImage.h"

#include "siblings/image/CImageFile.h"
#include "siblings/image/IsBlankPicture.h"
#include "siblings/image/RotatePixels.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <cstdlib>
#include <new>

namespace
{
constexpr ZVLogSource CopySource {ZVLogCategory::Image, L"CImage::CopyFrom"};
constexpr ZVLogSource BlankSource {ZVLogCategory::Image, L"CImage::IsBlank"};
constexpr ZVLogSource RotateSource {ZVLogCategory::Image, L"CImage::Rotate"};
constexpr ZVLogSource AlphaSource {ZVLogCategory::Image, L"CImage::SetAlphaFill"};
constexpr ZVLogSource SaveSource {ZVLogCategory::Image, L"CImage::Save"};
constexpr ZVLogSource LoadSource {ZVLogCategory::Image, L"CImage::Load"};

constexpr int32_t FullTurn = 360;
constexpr int32_t QuarterTurn = 90;

// Runs an operation, from which no exception gets out.
template <class Operation>
bool Guard(const ZVLogSource& source, Operation operation)
{
    try
    {
        return operation();
    }
    catch (const std::bad_alloc&)
    {
        source.Log("There is not enough memory");
        return false;
    }
}
}

bool CImage::SetFromPixels(const void* pixels, int32_t width, int32_t height, int32_t stride, int32_t)
{
    if (pixels == nullptr || width < 1 || height < 1 || width > CPixels::MaximumWidth)
        return false;
    if (std::abs(int64_t {stride}) < int64_t {width} * CPixelView::PixelSize)
        return false;
    m_own = CPixels();
    m_view = {static_cast<const uint8_t*>(pixels), width, height, stride};
    return true;
}

bool CImage::CopyFrom(const IZVImage& other)
{
    const CPixelView source {static_cast<const uint8_t*>(other.GetPixels()), other.GetWidth(), other.GetHeight(),
                             other.GetStride()};
    return source.First != nullptr && Guard(CopySource, [&] { return Take(CPixels(source)); });
}

bool CImage::IsBlank(int32_t)
{
    // A frame that cannot be looked at is no reason to go without a picture.
    return !HasPixels() || Guard(BlankSource, [&] { return IsBlankPicture(m_view); });
}

bool CImage::Rotate(int32_t degrees, int32_t, int32_t)
{
    if (!HasPixels() || degrees % QuarterTurn != 0)
        return false;
    const int32_t turns = (degrees % FullTurn + FullTurn) % FullTurn / QuarterTurn;
    // The rows of what has been a column would be too long.
    if (turns % 2 != 0 && m_view.Height > CPixels::MaximumWidth)
        return false;
    return turns == 0 || Guard(RotateSource, [&] { return Take(RotatePixels(m_view, turns)); });
}

bool CImage::SetAlphaFill(int32_t alpha, int32_t, int32_t)
{
    if (!HasPixels() || alpha < 0 || alpha > CPixelView::Opaque)
        return false;
    return Guard(AlphaSource,
                 [&]
                 {
                     if (m_own.IsEmpty())
                         Take(CPixels(m_view));
                     m_own.FillAlpha(static_cast<uint8_t>(alpha));
                     return true;
                 });
}

bool CImage::Save(const wchar_t* path)
{
    return HasPixels() && Guard(SaveSource, [&] { return CImageFile::Save(m_view, path); });
}

bool CImage::Load(const wchar_t* path, const ZVImageSize& maximumSize, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t,
                  int32_t)
{
    return Guard(LoadSource,
                 [&]
                 {
                     CPixels pixels;
                     return CImageFile::Load(path, maximumSize, pixels) && Take(std::move(pixels));
                 });
}

bool CImage::Take(CPixels&& pixels)
{
    m_own = std::move(pixels);
    m_view = m_own.View();
    return true;
}
