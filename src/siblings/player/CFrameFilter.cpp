#include "siblings/player/CFrameFilter.h"

#include "system/log/ZVLog.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"CFrameFilter::Write"};

// What is brought to square pixels by a larger factor is damaged, and so is a picture with longer sides.
constexpr double MaximumAspect = 8;
constexpr int MaximumSide = 16384;

// From this height on, pictures that do not say otherwise have the colours of HD.
constexpr int HDHeight = 720;

// What HDR films are made for when they do not tell.
constexpr int32_t UsualPeakNits = 1000;
// The brightest light that the PQ curve can name.
constexpr int32_t MaximumPeakNits = 10000;

// Fills in the colours that a frame leaves open. That of a matrix that is for RGB alone is open too.
void FillColors(AVFrame& frame, bool isRGB)
{
    const bool isHDR = CFrameLook::IsHDR(frame.color_trc);
    const bool isHD = frame.height >= HDHeight;
    if (isRGB)
        frame.colorspace = AVCOL_SPC_RGB;
    else if (frame.colorspace == AVCOL_SPC_UNSPECIFIED || frame.colorspace == AVCOL_SPC_RGB ||
             frame.colorspace == AVCOL_SPC_RESERVED)
        frame.colorspace = isHDR ? AVCOL_SPC_BT2020_NCL : isHD ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
    if (frame.color_primaries == AVCOL_PRI_UNSPECIFIED || frame.color_primaries == AVCOL_PRI_RESERVED)
        frame.color_primaries = isHDR ? AVCOL_PRI_BT2020 : AVCOL_PRI_BT709;
    if (frame.color_range == AVCOL_RANGE_UNSPECIFIED)
        frame.color_range = isRGB ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
}

struct FullRangeFormat
{
    AVPixelFormat Format;
    AVPixelFormat Plain;
};

// The formats whose name says that they have the full range, and those in which the frame says it.
constexpr FullRangeFormat FullRangeFormats[] = {
    {AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUV420P},
    {AV_PIX_FMT_YUVJ422P, AV_PIX_FMT_YUV422P},
    {AV_PIX_FMT_YUVJ444P, AV_PIX_FMT_YUV444P},
    {AV_PIX_FMT_YUVJ440P, AV_PIX_FMT_YUV440P},
    {AV_PIX_FMT_YUVJ411P, AV_PIX_FMT_YUV411P},
};

void UsePlainFormat(AVFrame& frame)
{
    for (const FullRangeFormat& format : FullRangeFormats)
        if (format.Format == frame.format)
        {
            frame.format = format.Plain;
            frame.color_range = AVCOL_RANGE_JPEG;
        }
}

int32_t ToSide(double length)
{
    return length > MaximumSide ? MaximumSide + 1 : static_cast<int32_t>(std::lround(length));
}

// Pixels become square by making the picture wider or higher, so that nothing of it is lost.
void SetScreenSize(CFrameLook& look, double pixelAspect)
{
    look.ScreenWidth = look.Width;
    look.ScreenHeight = look.Height;
    if (!(pixelAspect >= 1 / MaximumAspect && pixelAspect <= MaximumAspect))
        return;
    const int32_t width = pixelAspect > 1 ? ToSide(look.Width * pixelAspect) : look.Width;
    const int32_t height = pixelAspect < 1 ? ToSide(look.Height / pixelAspect) : look.Height;
    if (width > MaximumSide || height > MaximumSide)
        return;
    look.ScreenWidth = width;
    look.ScreenHeight = height;
}
}

bool CFrameFilter::MakeFrames()
{
    for (ZVFramePointer* const frame : {&m_input, &m_output})
        if (*frame == nullptr)
            *frame = ZVFramePointer(m_codec.av_frame_alloc(), {m_codec.av_frame_free});
    return m_input != nullptr && m_output != nullptr;
}

bool CFrameFilter::Write(const AVFrame& frame, const Presentation& presentation)
{
    const bool areMade = MakeFrames();
    if (areMade)
        m_codec.av_frame_unref(m_input.get());
    if (!areMade || m_codec.av_frame_ref(m_input.get(), &frame) < 0)
    {
        Source.Log("There is not enough memory for a frame");
        return false;
    }
    m_input->pts = frame.best_effort_timestamp;
    const AVPixFmtDescriptor* const format = m_codec.av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    const bool isRGB = format != nullptr && (format->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) != 0;
    UsePlainFormat(*m_input);
    FillColors(*m_input, isRGB);
    CFrameLook look = GetLook(*m_input, presentation);
    look.IsRGB = isRGB;
    look.IsGray = !isRGB && format != nullptr && format->nb_components <= 2;
    // One interlaced frame makes the whole stream so; the filter passes those that are not.
    look.IsInterlaced = look.IsInterlaced || (m_chain.IsBuilt() && m_look.IsInterlaced);
    if (!(m_chain.IsBuilt() && look == m_look) && !Build(look))
        return false;
    const int result = m_chain.Write(m_input.get());
    if (result < 0)
        Source.Log("The filters do not take a frame (%d)", result);
    return result >= 0;
}

void CFrameFilter::End()
{
    if (m_chain.IsBuilt())
        m_chain.Write(nullptr);
}

void CFrameFilter::Restart()
{
    m_chain.Reset();
    m_isPlain = false;
    m_hasFailed = false;
}

const AVFrame* CFrameFilter::Read()
{
    int result = ReadOutput();
    // Some filters find out with the first frame that they do not take it.
    if (result < 0 && result != AVERROR(EAGAIN) && result != AVERROR_EOF && !m_isPlain)
    {
        Source.Log("The filters '%s' do not take a frame (%d)", CFrameFilterText::Get(m_look).c_str(), result);
        m_isPlain = true;
        result = BuildFrom(CFrameFilterText::PlainText) ? m_chain.Write(m_input.get()) : AVERROR_FILTER_NOT_FOUND;
        if (result >= 0)
            result = ReadOutput();
    }
    if (result >= 0)
        return m_output.get();
    if (result != AVERROR(EAGAIN) && result != AVERROR_EOF)
    {
        Source.Log("A frame cannot be made into a picture (%d)", result);
        m_hasFailed = true;
    }
    return nullptr;
}

int CFrameFilter::ReadOutput()
{
    if (!m_chain.IsBuilt())
        return AVERROR(EAGAIN);
    m_codec.av_frame_unref(m_output.get());
    return m_chain.Read(*m_output);
}

CFrameLook CFrameFilter::GetLook(const AVFrame& frame, const Presentation& presentation) const
{
    CFrameLook look;
    look.Width = frame.width;
    look.Height = frame.height;
    look.Format = frame.format;
    look.Matrix = frame.colorspace;
    look.Range = frame.color_range;
    look.Primaries = frame.color_primaries;
    look.Transfer = frame.color_trc;
    look.IsInterlaced = (frame.flags & AV_FRAME_FLAG_INTERLACED) != 0;
    look.IsMirrored = presentation.IsMirrored;
    if (look.IsHDR())
        look.PeakNits = GetPeakNits(frame);
    SetScreenSize(look, presentation.PixelAspect);
    return look;
}

// What the film says of its brightest pixel, else of the screen that it was made on.
int32_t CFrameFilter::GetPeakNits(const AVFrame& frame) const
{
    int32_t peak = UsualPeakNits;
    if (const AVFrameSideData* const data = m_codec.av_frame_get_side_data(&frame, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA))
    {
        const auto& mastering = *reinterpret_cast<const AVMasteringDisplayMetadata*>(data->data);
        const double luminance = mastering.max_luminance.den == 0 ? 0 : av_q2d(mastering.max_luminance);
        if (mastering.has_luminance != 0 && luminance >= 1 && luminance <= MaximumPeakNits)
            peak = static_cast<int32_t>(luminance);
    }
    if (const AVFrameSideData* const data = m_codec.av_frame_get_side_data(&frame, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL))
    {
        const unsigned brightest = reinterpret_cast<const AVContentLightMetadata*>(data->data)->MaxCLL;
        if (brightest > 0 && brightest <= MaximumPeakNits)
            peak = static_cast<int32_t>(brightest);
    }
    return std::max(peak, CFrameFilterText::WhiteNits);
}

bool CFrameFilter::Build(const CFrameLook& look)
{
    m_look = look;
    m_isPlain = !BuildFrom(CFrameFilterText::Get(look));
    return !m_isPlain || BuildFrom(CFrameFilterText::PlainText);
}

bool CFrameFilter::BuildFrom(const std::string& text)
{
    m_chain.Reset();
    const ZVFilterChain::Outcome outcome = m_chain.Build(*m_input, {text.c_str(), "", AV_PIX_FMT_BGR0});
    if (outcome.End != ZVFilterChain::Step::Built)
        Source.Log("The filters '%s' cannot be made (%d)", text.c_str(), outcome.Result);
    return outcome.End == ZVFilterChain::Step::Built;
}
