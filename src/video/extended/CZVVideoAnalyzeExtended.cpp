#include "video/extended/CZVVideoAnalyzeExtended.h"

#include "system/log/ZVLog.h"
#include "video/extended/ZVHDRFacts.h"
#include "video/extended/ZVPrimariesName.h"
#include "video/extended/ZVStreamFacts.h"
#include "video/film/ZVCodecName.h"
#include "video/film/ZVFilmAspect.h"

#include <cstddef>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"CZVVideoAnalyzeExtended::AnalyzeFile"};

// The facts come with the first frames; their pixels are not looked at.
constexpr ZVFilmOptions FilmOptions = {
    .Filter = ZVFilmOptions::LoopFilter::Skip,
    .Frames = ZVFilmOptions::Memory::Shared,
    .FramesPerPlace = 10,
};

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
    if (!m_film.GetCodec().Loaded)
        return false;
    const ZVFilmSource source(file);
    if (!source.IsFound() || !m_film.Open(source.GetPath()))
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
    if (!m_film.OpenDecoders())
        return !m_film.HasNoMemory();
    while (const AVFrame* const frame = m_film.NextFrame())
        ProcessFrame(*frame);
    if (m_film.HasNoMemory())
        return false;
    WriteAspectRatio(file.GetExtension(true));
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
}

void CZVVideoAnalyzeExtended::WriteAspectRatio(const ZVString& extension)
{
    const AVStream& stream = *m_film.GetMainStream();
    const double pixelAspect = ZVFilmAspect::GetPixelAspect(stream, m_sampleAspect, extension);
    ZVFilmAspect::Write(Properties, ZVFilmAspect::GetDisplayAspect(stream, pixelAspect));
}
