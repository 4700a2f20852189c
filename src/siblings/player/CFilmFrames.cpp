#include "siblings/player/CFilmFrames.h"

#include "siblings/player/CPlayerCodecLog.h"
#include "system/log/ZVLog.h"
#include "video/film/ZVFilmAspect.h"

#include <algorithm>

namespace
{
constexpr ZVLogSource OpenSource {ZVLogCategory::Media, L"CFilmFrames::Open"};

constexpr ZVLogSource FindSource {ZVLogCategory::Media, L"CFilmFrames::Next"};

// The profile of Dolby Vision whose colours only a decoder of its metadata can tell.
constexpr uint8_t ProfileWithOwnColors = 5;

ZVFilmOptions GetOptions()
{
    ZVFilmOptions options;
    options.Probe = ZVFilmOptions::Probing::Header;
    options.AtEnd = ZVFilmOptions::KeptFrames::Fetch;
    options.Log = CPlayerCodecLog::Write;
    return options;
}

bool IsKnown(const AVStream& stream)
{
    const AVCodecParameters& parameters = *stream.codecpar;
    if (parameters.codec_id == AV_CODEC_ID_NONE)
        return false;
    if (parameters.codec_type == AVMEDIA_TYPE_VIDEO)
        return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0 ||
               (parameters.width > 0 && parameters.height > 0 && stream.avg_frame_rate.num > 0);
    return parameters.codec_type != AVMEDIA_TYPE_AUDIO || (parameters.sample_rate > 0 && parameters.ch_layout.nb_channels > 0);
}
}

CFilmFrames::CFilmFrames(const CPlayerSource& source) : m_source(source), m_film(GetOptions()), m_filter(m_film.GetCodec())
{
    m_film.ObeyCancel(m_isCancelled);
}

bool CFilmFrames::Open()
{
    if (!m_film.GetCodec().Loaded)
    {
        OpenSource.Log("A film cannot be opened without the codec libraries: %s", m_source.GetPaths()[0]);
        return false;
    }
    if (!OpenFiles() || (NeedsProbing() && !m_film.ProbeStreams()))
        return false;
    m_film.ChooseMainStream();
    m_facts.Read(m_film);
    m_source.Complete(m_facts);
    return true;
}

bool CFilmFrames::OpenFiles()
{
    return m_source.HasRestartingTimes() ? m_film.OpenJoined(m_source.GetPaths()) : m_film.Open(m_source.GetPaths()[0]);
}

// Probing decodes frames, which costs more than everything else about the opening.
bool CFilmFrames::NeedsProbing() const
{
    const AVFormatContext& container = m_film.GetContainer();
    if ((container.ctx_flags & AVFMTCTX_NOHEADER) != 0 || container.nb_streams == 0)
        return true;
    const auto hasDuration = [](const AVStream* stream) { return stream->duration > 0; };
    return !std::ranges::all_of(m_film.GetStreams(), [](const AVStream* stream) { return IsKnown(*stream); }) ||
           (container.duration <= 0 && std::ranges::none_of(m_film.GetStreams(), hasDuration));
}

void CFilmFrames::Begin(int64_t milliseconds)
{
    m_begin = milliseconds;
    m_isFirst = true;
    m_isEnded = false;
    m_hasFailed = false;
    m_isCancelled = false;
}

IFrameSource::Outcome CFilmFrames::Next(ZVVideoFrame& frame)
{
    const AVFrame* const picture = NextPicture();
    if (picture == nullptr)
        return m_hasFailed || m_film.HasNoMemory() ? Outcome::Failure : Outcome::End;
    Fill(*picture, frame);
    return Outcome::Frame;
}

// Filters may keep frames until they have seen more.
const AVFrame* CFilmFrames::NextPicture()
{
    const AVFrame* picture = m_isFirst ? nullptr : m_filter.Read();
    while (picture == nullptr && !m_isEnded && !m_isCancelled)
    {
        const AVFrame* const frame = m_isFirst ? FindFirst() : m_aim->FindNext();
        m_isFirst = false;
        m_isEnded = frame == nullptr;
        if (m_isEnded)
            m_filter.End();
        else if (!m_filter.Write(*frame, GetPresentation(*frame)))
            m_isEnded = m_hasFailed = true;
        picture = m_filter.Read();
        m_hasFailed = m_hasFailed || m_filter.HasFailed();
        m_isEnded = m_isEnded || m_hasFailed;
    }
    return picture;
}

const AVFrame* CFilmFrames::FindFirst()
{
    m_filter.Restart();
    m_hasFailed = !HasVideo();
    if (m_hasFailed)
        return nullptr;
    if (m_aim == nullptr)
    {
        LogDolbyVision();
        m_aim = std::make_unique<CFrameAim>(m_film);
    }
    const AVFrame* frame = FindAt(GetBegin());
    if (frame == nullptr && !m_isCancelled && !m_source.HasRestartingTimes() && Reopen())
        frame = m_aim->FindUnmoved(m_source.ToReadTime(GetBegin()));
    m_hasFailed = frame == nullptr;
    if (m_hasFailed && !m_isCancelled)
        FindSource.Log("No frame can be decoded: %s", m_source.GetPaths()[0]);
    return frame;
}

// Within the film, where its length is known.
int64_t CFilmFrames::GetBegin() const
{
    const int64_t begin = std::max<int64_t>(m_begin, 0);
    return m_facts.Duration > 0 ? std::min(begin, m_facts.Duration - 1) : begin;
}

const AVFrame* CFilmFrames::FindAt(int64_t milliseconds)
{
    if (!m_source.HasRestartingTimes())
        return m_aim->Find(m_source.ToReadTime(milliseconds));
    const int64_t duration = m_facts.Duration;
    return m_aim->FindByShare(duration > 0 ? static_cast<double>(milliseconds) / static_cast<double>(duration) : 0);
}

// Some films can be moved, and then nothing comes out of them. From their start they can be read.
bool CFilmFrames::Reopen()
{
    const int64_t start = m_aim->GetStart();
    m_aim.reset();
    if (!OpenFiles() || (NeedsProbing() && !m_film.ProbeStreams()) || m_film.ChooseMainStream() == nullptr)
        return false;
    m_aim = std::make_unique<CFrameAim>(m_film, start);
    return true;
}

CFrameFilter::Presentation CFilmFrames::GetPresentation(const AVFrame& frame) const
{
    const AVStream& stream = *m_film.GetMainStream();
    const CStreamFacts& facts = m_facts.Streams[static_cast<size_t>(stream.index)];
    return {ZVFilmAspect::GetPixelAspect(stream, frame.sample_aspect_ratio, m_source.GetExtension()), facts.IsMirrored};
}

void CFilmFrames::Fill(const AVFrame& picture, ZVVideoFrame& frame) const
{
    frame.Milliseconds = m_aim->GetTime(picture.pts, m_filter.GetTimeBase());
    frame.Width = picture.width;
    frame.Height = picture.height;
    frame.Pixels = picture.data[0];
    frame.Stride = picture.linesize[0];
}

void CFilmFrames::LogDolbyVision() const
{
    const AVCodecParameters& parameters = *m_film.GetMainStream()->codecpar;
    for (int index = 0; index < parameters.nb_coded_side_data; ++index)
    {
        const AVPacketSideData& data = parameters.coded_side_data[index];
        if (data.type == AV_PKT_DATA_DOVI_CONF && data.size > offsetof(AVDOVIDecoderConfigurationRecord, dv_profile) &&
            reinterpret_cast<const AVDOVIDecoderConfigurationRecord*>(data.data)->dv_profile == ProfileWithOwnColors)
            OpenSource.Log("The colors of Dolby Vision profile 5 cannot be shown as they are meant: %s", m_source.GetPaths()[0]);
    }
}
