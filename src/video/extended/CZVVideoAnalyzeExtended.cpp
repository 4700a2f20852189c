#include "video/extended/CZVVideoAnalyzeExtended.h"

#include "system/log/ZVLog.h"
#include "video/extended/ZVCodecName.h"
#include "video/extended/ZVHDRFacts.h"
#include "video/extended/ZVPrimariesName.h"
#include "video/extended/ZVStreamFacts.h"

#include <cstddef>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"CZVVideoAnalyzeExtended::AnalyzeFile"};
// The category under which those who read the log look for the choice of a disc's clip.
constexpr ZVLogSource DiscSource {ZVLogCategory::Network, L"CZVVideoAnalyzeExtended::AnalyzeFile"};

// How many frames of the main stream are looked at.
constexpr int32_t FrameLimit = 10;

// The facts come with the frames; their pixels are not looked at.
constexpr ZVFilmOptions FilmOptions = {
    .Filter = ZVFilmOptions::LoopFilter::Skip,
    .Frames = ZVFilmOptions::Memory::Shared,
};

// Extensions are compared as they stand: one in upper case is that of an ordinary file.
constexpr const wchar_t* RefusedExtensions[] = {L"iso", L"ifo"};

// In these containers the pixel aspect of the container is to be trusted more than that of the frames.
constexpr const wchar_t* ContainersWithAspect[] = {L"mkv", L"webm", L"mp4", L"mov", L"m4v"};

template <size_t Count>
bool IsOneOf(const ZVString& text, const wchar_t* const (&list)[Count])
{
    for (const wchar_t* item : list)
        if (text == item)
            return true;
    return false;
}

bool IsPositive(const AVRational& value)
{
    return value.num > 0 && value.den > 0;
}

template <class Data>
const Data* FindFrameData(const CZVAVLibraries& codec, const AVFrame& frame, AVFrameSideDataType type)
{
    const AVFrameSideData* const data = codec.av_frame_get_side_data(&frame, type);
    return data == nullptr || data->size < sizeof(Data) ? nullptr : reinterpret_cast<const Data*>(data->data);
}
}

CZVVideoAnalyzeExtended::CZVVideoAnalyzeExtended() : m_film(FilmOptions) {}

bool CZVVideoAnalyzeExtended::AnalyzeFile(const ZVFilename& file)
{
    if (!m_film.GetCodec().Loaded || IsRefused(file))
        return false;
    const ZVFilmSource source(file);
    if (source.GetPath().IsEmpty() && source.IsDisc())
    {
        Source.Log("The disc has no title: %s", file.GetPathOnly());
        return false;
    }
    if (source.IsDisc())
        DiscSource.Log("Using '%s' as Blu-ray reference clip", source.GetPath());
    if (!m_film.Open(source.GetPath()))
        return false;
    const bool isAnalyzed = Analyze(file, source);
    // The file is free again when the analysis is over, whatever becomes of its result.
    m_film.Close();
    return isAnalyzed;
}

bool CZVVideoAnalyzeExtended::Analyze(const ZVFilename& file, const ZVFilmSource& source)
{
    if (m_film.GetStreams().empty())
        Source.Log("There is no stream in it: %s", file.GetPathOnly());
    if (m_film.ChooseMainStream() != nullptr)
        WriteMainStream();
    WalkStreams(source);
    if (m_film.GetMainStream() == nullptr)
        return true;
    const ZVFilmDecoders decoders = m_film.OpenDecoders();
    if (decoders == ZVFilmDecoders::None)
    {
        Source.Log("There is no decoder for it: %s", file.GetPathOnly());
        return true;
    }
    if (decoders == ZVFilmDecoders::Open)
        DecodeFrames();
    if (decoders == ZVFilmDecoders::NoMemory || m_film.HasNoMemory())
    {
        Source.Log("There is not enough memory to decode it: %s", file.GetPathOnly());
        return false;
    }
    WriteAspectRatio(file.GetExtension(true));
    return true;
}

bool CZVVideoAnalyzeExtended::IsRefused(const ZVFilename& file) const
{
    if (!IsOneOf(file.GetExtension(true), RefusedExtensions))
        return false;
    Source.Log("Disc images and DVD folders are not analyzed here: %s", file.GetPathOnly());
    return true;
}

void CZVVideoAnalyzeExtended::WriteMainStream()
{
    const CZVAVLibraries& codec = m_film.GetCodec();
    const AVStream& stream = *m_film.GetMainStream();
    const AVCodecParameters& parameters = *stream.codecpar;
    Properties.SetString(L"Video Codec", CodecName(codec, parameters));
    Properties.SetInt(L"Video Bitrate", ZVStreamFacts::BitrateKbps(codec, m_film.GetContainer(), stream));
    const AVPixFmtDescriptor* const format = codec.av_pix_fmt_desc_get(static_cast<AVPixelFormat>(parameters.format));
    if (format != nullptr)
        Properties.SetInt(L"Color Depth", format->comp[0].depth);
    Properties.SetString(ZVHDRFacts::ColorSpace,
                         PrimariesName(parameters.color_primaries, codec.av_color_primaries_name(parameters.color_primaries)));
    ZVHDRFacts::ApplyTransfer(Properties, parameters.color_trc);

    // The structures of the libraries grow at their ends from one minor version to the next, so what is read of them must be
    // there, and no more than that.
    const void* const mastering =
        ZVStreamFacts::FindSideData(parameters, AV_PKT_DATA_MASTERING_DISPLAY_METADATA, sizeof(AVMasteringDisplayMetadata));
    if (mastering != nullptr)
        ZVHDRFacts::ApplyHdrMetadata(Properties, codec, static_cast<const AVMasteringDisplayMetadata*>(mastering), nullptr);
    const void* const dolbyVision = ZVStreamFacts::FindSideData(
        parameters, AV_PKT_DATA_DOVI_CONF, offsetof(AVDOVIDecoderConfigurationRecord, dv_bl_signal_compatibility_id) + 1);
    if (dolbyVision != nullptr)
        ZVHDRFacts::ApplyDolbyVision(Properties, *static_cast<const AVDOVIDecoderConfigurationRecord*>(dolbyVision));
}

void CZVVideoAnalyzeExtended::WalkStreams(const ZVFilmSource& source)
{
    const CZVAVLibraries& codec = m_film.GetCodec();
    bool hasSecondLayer = false;
    for (AVStream* const stream : m_film.GetStreams())
    {
        const auto list = [&]
        {
            // A disc knows better than its streams.
            const std::optional<ZVString> language = source.FindLanguage(stream->id);
            return ZVStreamFacts::ListedStream {m_film.GetContainer(), *stream,
                                                language ? *language : ZVStreamFacts::GetLanguage(codec, *stream)};
        };
        if (stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
            ZVStreamFacts::AddAudioStream(Properties, codec, list());
        else if (stream->codecpar->codec_type == AVMEDIA_TYPE_SUBTITLE)
            ZVStreamFacts::AddSubtitleStream(Properties, codec, list());
        else if (!hasSecondLayer && IsSecondLayer(*stream))
        {
            m_film.SetSecondStream(*stream);
            hasSecondLayer = true;
        }
    }
}

// An enhancement layer that the container carries as a stream of its own is as large as the film or half as large.
bool CZVVideoAnalyzeExtended::IsSecondLayer(const AVStream& stream) const
{
    if (m_film.GetMainStream() == nullptr || &stream == m_film.GetMainStream() ||
        stream.codecpar->codec_type != AVMEDIA_TYPE_VIDEO)
        return false;
    const AVCodecParameters& main = *m_film.GetMainStream()->codecpar;
    const AVCodecParameters& other = *stream.codecpar;
    return other.format == main.format && other.codec_id == main.codec_id &&
           (other.width == main.width || other.width == main.width / 2) &&
           (other.height == main.height || other.height == main.height / 2);
}

// The frames that came out of one packet are all looked at.
void CZVVideoAnalyzeExtended::DecodeFrames()
{
    while (m_framesSeen < FrameLimit)
    {
        const AVFrame* frame = m_film.NextFrame();
        if (frame == nullptr)
            return;
        for (; frame != nullptr; frame = m_film.NextFrameOfPacket())
            ProcessFrame(*frame);
    }
}

void CZVVideoAnalyzeExtended::ProcessFrame(const AVFrame& frame)
{
    const CZVAVLibraries& codec = m_film.GetCodec();
    const auto* const mastering =
        FindFrameData<AVMasteringDisplayMetadata>(codec, frame, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA);
    const auto* const light = FindFrameData<AVContentLightMetadata>(codec, frame, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL);
    ZVHDRFacts::ApplyHdrMetadata(Properties, codec, mastering, light);
    if (codec.av_frame_get_side_data(&frame, AV_FRAME_DATA_DYNAMIC_HDR_PLUS) != nullptr)
        ZVHDRFacts::ApplyDynamic(Properties);
    const auto* const dolbyVision = FindFrameData<AVDOVIMetadata>(codec, frame, AV_FRAME_DATA_DOVI_METADATA);
    if (dolbyVision != nullptr)
        ZVHDRFacts::ApplyDolbyVision(Properties, *dolbyVision);
    if (!m_film.IsOfMainStream())
        return;

    Properties.SetString(L"Video Scan", (frame.flags & AV_FRAME_FLAG_INTERLACED) != 0 ? L"Interlaced" : L"Progressive");
    m_sampleAspect = frame.sample_aspect_ratio;
    ++m_framesSeen;
}

void CZVVideoAnalyzeExtended::WriteAspectRatio(const ZVString& extension)
{
    const AVRational containerAspect = m_film.GetMainStream()->sample_aspect_ratio;
    const bool hasFrameAspect = IsPositive(m_sampleAspect);
    double pixelAspect = 1.0;
    if (hasFrameAspect && !IsOneOf(extension, ContainersWithAspect))
        pixelAspect = av_q2d(m_sampleAspect);
    else if (IsPositive(containerAspect))
        pixelAspect = av_q2d(containerAspect);
    else if (hasFrameAspect)
        pixelAspect = av_q2d(m_sampleAspect);

    const AVCodecParameters& parameters = *m_film.GetMainStream()->codecpar;
    // Without a size there is no aspect.
    if (parameters.width < 1 || parameters.height < 1)
        return;
    const double aspect = static_cast<double>(parameters.width) / parameters.height * pixelAspect;
    Properties.SetString(L"Aspect Ratio", ZVString::FromDouble(aspect, 2));
}
