#include "video/extended/CZVVideoAnalyzeExtended.h"

#include "system/file/ZVFileInfo.h"
#include "system/filename/ZVNativePath.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"
#include "video/extended/ZVCodecName.h"
#include "video/extended/ZVHDRFacts.h"
#include "video/extended/ZVPrimariesName.h"
#include "video/extended/ZVSamplePositions.h"
#include "video/extended/ZVStreamFacts.h"

#include <cstddef>
#include <string>

namespace
{
constexpr wchar_t AnalyzeScope[] = L"CZVVideoAnalyzeExtended::AnalyzeFile";
constexpr wchar_t SeekScope[] = L"CZVVideoAnalyzeExtended::BlackBarDetection";

// As much of a file is read to find out its container.
constexpr int32_t FormatProbeSize = 0x400000;

// How many frames of the main stream are looked at in one place.
constexpr int32_t FrameLimit = 10;
constexpr int32_t FrameLimitForBlackBars = 200;

// A stream that gives no frame in so many packets is scrambled or of no use, and would otherwise be read to its end.
constexpr int32_t MaximumPacketsWithoutFrame = 1000;

// The same for a stream of which nothing comes while the others go on: ten minutes of sound and more.
constexpr int32_t MaximumPacketsOfOthers = 100'000;

// Extensions are compared as they stand: one in upper case is that of an ordinary file.
constexpr const wchar_t* BlurayExtensions[] = {L"bdmv", L"mpls", L"bluray", L"bluray3d"};
constexpr const wchar_t* RefusedExtensions[] = {L"iso", L"ifo"};

// In these containers the aspect of a pixel that the container tells is better than that of the frames.
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

void Log(const char* format, const ZVString& text)
{
    ZVLog(ZVLogCategory::Media, AnalyzeScope, format, text);
}

// The name as the codec libraries take it. A local one gets their prefix for files, so that no ":" in it is taken for a protocol.
std::string GetInputName(const ZVString& path)
{
    const ZVNativePath native(path);
    return ZVFilename::IsRemote(path) ? native.GetBytes() : "file:" + native.GetBytes();
}

template <class Data>
const Data* FindFrameData(const CZVAVLibraries& codec, const AVFrame& frame, AVFrameSideDataType type)
{
    const AVFrameSideData* const data = codec.av_frame_get_side_data(&frame, type);
    return data == nullptr || data->size < sizeof(Data) ? nullptr : reinterpret_cast<const Data*>(data->data);
}
}

bool CZVVideoAnalyzeExtended::AnalyzeFile(const ZVFilename& file, bool blackBars)
{
    if (blackBars)
        Properties.SetString(L"Video Crop", L"0x0x0x0");
    if (!m_codec.Loaded || IsRefused(file))
        return false;
    m_codec.av_log_set_callback(AVLog);
    const bool isOpen = Open(file.GetPathOnly());
    if (isOpen)
        Analyze(file, blackBars);
    Close();
    return isOpen;
}

void CZVVideoAnalyzeExtended::Analyze(const ZVFilename& file, bool blackBars)
{
    if (m_context->nb_streams == 0)
        Log("There is no stream in it: %s", file.GetPathOnly());
    ChooseMainStream();
    if (m_main.Stream != nullptr)
        WriteMainStream();
    WalkStreams();
    if (m_main.Stream == nullptr)
        return;
    m_main.Decoder = OpenDecoder(*m_main.Stream, blackBars);
    if (m_main.Decoder == nullptr)
    {
        Log("There is no decoder for it: %s", file.GetPathOnly());
        return;
    }
    if (m_second.Stream != nullptr)
        m_second.Decoder = OpenDecoder(*m_second.Stream, blackBars);
    DecodeSamples(blackBars);
    WriteAspectRatio(file.GetExtension(true));
}

bool CZVVideoAnalyzeExtended::IsRefused(const ZVFilename& file) const
{
    const ZVString extension = file.GetExtension(true);
    if (IsOneOf(extension, BlurayExtensions))
        Log("A Blu-ray folder cannot be analyzed by this worker: %s", file.GetPathOnly());
    else if (IsOneOf(extension, RefusedExtensions))
        Log("Disc images and DVD folders are not analyzed here: %s", file.GetPathOnly());
    else
        return false;
    return true;
}

bool CZVVideoAnalyzeExtended::Open(const ZVString& path)
{
    // A pipe would be waited for without an end.
    const ZVFileInfo info(path);
    if (info.IsFound() && !S_ISREG(info.GetMode()) && !S_ISBLK(info.GetMode()))
    {
        Log("This is no file: %s", path);
        return false;
    }
    AVFormatContext* context = m_codec.avformat_alloc_context();
    if (context == nullptr)
        return false;
    context->format_probesize = FormatProbeSize;
    // On a failure the context is freed by the call.
    int result = m_codec.avformat_open_input(&context, GetInputName(path).c_str(), nullptr, nullptr);
    if (result >= 0)
    {
        m_context = ZVFormatContextPointer(context, {m_codec.avformat_close_input});
        result = m_codec.avformat_find_stream_info(context, nullptr);
    }
    if (result >= 0)
        return true;
    ZVLog(ZVLogCategory::Media, AnalyzeScope, "The file does not open (%s): %s", GetReason(result), path);
    return false;
}

// The file is free again when the analysis is over, whatever becomes of its result.
void CZVVideoAnalyzeExtended::Close()
{
    m_frame.reset();
    m_packet.reset();
    m_second = Layer();
    m_main = Layer();
    m_context.reset();
}

ZVString CZVVideoAnalyzeExtended::GetReason(int error) const
{
    char reason[AV_ERROR_MAX_STRING_SIZE] = {};
    m_codec.av_strerror(error, reason, sizeof reason);
    return ZVString::FromUTF8(reason);
}

// A cover picture is a video stream too, and may be larger than the film.
void CZVVideoAnalyzeExtended::ChooseMainStream()
{
    int64_t largest = -1;
    for (uint32_t index = 0; index < m_context->nb_streams; ++index)
    {
        AVStream* const stream = m_context->streams[index];
        const int64_t size = int64_t {stream->codecpar->width} * stream->codecpar->height;
        if (stream->codecpar->codec_type != AVMEDIA_TYPE_VIDEO || (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0 ||
            size <= largest)
            continue;
        largest = size;
        m_main.Stream = stream;
    }
}

void CZVVideoAnalyzeExtended::WriteMainStream()
{
    const AVCodecParameters& parameters = *m_main.Stream->codecpar;
    Properties.SetString(L"Video Codec", CodecName(m_codec, parameters));
    Properties.SetInt(L"Video Bitrate", ZVStreamFacts::BitrateKbps(m_codec, *m_context, *m_main.Stream));
    const AVPixFmtDescriptor* const format = m_codec.av_pix_fmt_desc_get(static_cast<AVPixelFormat>(parameters.format));
    if (format != nullptr)
        Properties.SetInt(L"Color Depth", format->comp[0].depth);
    Properties.SetString(ZVHDRFacts::ColorSpace,
                         PrimariesName(parameters.color_primaries, m_codec.av_color_primaries_name(parameters.color_primaries)));
    ZVHDRFacts::ApplyTransfer(Properties, parameters.color_trc);

    // The structures of the libraries grow at their ends from one minor version to the next, so what is read of them must be
    // there, and no more than that.
    const void* const mastering =
        ZVStreamFacts::FindSideData(parameters, AV_PKT_DATA_MASTERING_DISPLAY_METADATA, sizeof(AVMasteringDisplayMetadata));
    if (mastering != nullptr)
        ZVHDRFacts::ApplyHdrMetadata(Properties, m_codec, static_cast<const AVMasteringDisplayMetadata*>(mastering), nullptr);
    const void* const dolbyVision = ZVStreamFacts::FindSideData(
        parameters, AV_PKT_DATA_DOVI_CONF, offsetof(AVDOVIDecoderConfigurationRecord, dv_bl_signal_compatibility_id) + 1);
    if (dolbyVision != nullptr)
        ZVHDRFacts::ApplyDolbyVision(Properties, *static_cast<const AVDOVIDecoderConfigurationRecord*>(dolbyVision));
}

void CZVVideoAnalyzeExtended::WalkStreams()
{
    for (uint32_t index = 0; index < m_context->nb_streams; ++index)
    {
        AVStream* const stream = m_context->streams[index];
        if (stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
            ZVStreamFacts::AddAudioStream(Properties, m_codec, *m_context, *stream);
        else if (stream->codecpar->codec_type == AVMEDIA_TYPE_SUBTITLE)
            ZVStreamFacts::AddSubtitleStream(Properties, m_codec, *stream);
        else if (m_second.Stream == nullptr && IsSecondLayer(*stream))
            m_second.Stream = stream;
    }
}

// An enhancement layer that the container carries as a stream of its own is as large as the film or half as large.
bool CZVVideoAnalyzeExtended::IsSecondLayer(const AVStream& stream) const
{
    if (m_main.Stream == nullptr || &stream == m_main.Stream || stream.codecpar->codec_type != AVMEDIA_TYPE_VIDEO)
        return false;
    const AVCodecParameters& main = *m_main.Stream->codecpar;
    const AVCodecParameters& other = *stream.codecpar;
    return other.format == main.format && other.codec_id == main.codec_id &&
           (other.width == main.width || other.width == main.width / 2) &&
           (other.height == main.height || other.height == main.height / 2);
}

ZVCodecContextPointer CZVVideoAnalyzeExtended::OpenDecoder(const AVStream& stream, bool needsPixels)
{
    const AVCodec* const decoder = m_codec.avcodec_find_decoder(stream.codecpar->codec_id);
    if (decoder == nullptr)
        return nullptr;
    ZVCodecContextPointer context(m_codec.avcodec_alloc_context3(decoder), {m_codec.avcodec_free_context});
    if (context == nullptr)
        return nullptr;
    m_codec.avcodec_parameters_to_context(context.get(), stream.codecpar);
    context->pkt_timebase = stream.time_base;
    context->thread_count = 0;
    context->thread_type = FF_THREAD_FRAME;
    if (stream.codecpar->codec_id == AV_CODEC_ID_H264)
        context->strict_std_compliance = FF_COMPLIANCE_STRICT;
    if (!needsPixels)
    {
        context->skip_loop_filter = AVDISCARD_ALL;
        m_picture.ServeDecoder(*context);
    }
    if (m_codec.avcodec_open2(context.get(), decoder, nullptr) < 0)
        return nullptr;
    return context;
}

void CZVVideoAnalyzeExtended::DecodeSamples(bool blackBars)
{
    m_packet = ZVPacketPointer(m_codec.av_packet_alloc(), {m_codec.av_packet_free});
    m_frame = ZVFramePointer(m_codec.av_frame_alloc(), {m_codec.av_frame_free});
    if (m_packet == nullptr || m_frame == nullptr)
        return;
    DecodeSample(blackBars ? FrameLimitForBlackBars : FrameLimit);
    if (!blackBars)
        return;
    const ZVSamplePositions positions(m_context->duration);
    for (int32_t index = 1; index < positions.GetCount() && positions.IsBeforeEnd(index); ++index)
    {
        SeekTo(positions.Get(index));
        DecodeSample(FrameLimitForBlackBars);
    }
}

void CZVVideoAnalyzeExtended::DecodeSample(int32_t frameLimit)
{
    m_framesSeen = 0;
    int32_t packetsWithoutFrame = 0;
    int32_t packetsOfOthers = 0;
    while (m_framesSeen < frameLimit && packetsWithoutFrame < MaximumPacketsWithoutFrame &&
           packetsOfOthers < MaximumPacketsOfOthers && ReadPacket())
    {
        ++packetsOfOthers;
        m_packet->time_base = m_context->streams[m_packet->stream_index]->time_base;
        if (m_packet->stream_index == m_main.Stream->index)
        {
            const int32_t framesBefore = m_framesSeen;
            packetsOfOthers = 0;
            DecodePacket(m_main);
            packetsWithoutFrame = m_framesSeen > framesBefore ? 0 : packetsWithoutFrame + 1;
        }
        else if (m_second.Decoder != nullptr && m_packet->stream_index == m_second.Stream->index)
            DecodePacket(m_second);
        m_codec.av_packet_unref(m_packet.get());
    }
    if (packetsOfOthers >= MaximumPacketsOfOthers)
        ZVLog(ZVLogCategory::Media, AnalyzeScope, "No packet of the main stream came among %d", packetsOfOthers);
    else if (m_framesSeen == 0 || packetsWithoutFrame >= MaximumPacketsWithoutFrame)
        ZVLog(ZVLogCategory::Media, AnalyzeScope, "No frame came out of %d packets", packetsWithoutFrame);
}

bool CZVVideoAnalyzeExtended::ReadPacket()
{
    int result;
    do
        result = m_codec.av_read_frame(m_context.get(), m_packet.get());
    while (result == AVERROR(EAGAIN));
    if (result < 0 && result != AVERROR_EOF)
        ZVLog(ZVLogCategory::Media, AnalyzeScope, "The film cannot be read to its end (%s)", GetReason(result));
    return result >= 0;
}

void CZVVideoAnalyzeExtended::SeekTo(int32_t seconds)
{
    ZVLog(ZVLogCategory::Network, SeekScope, "Seeking to %d", seconds);
    const AVRational timeBase = m_main.Stream->time_base;
    int64_t target = m_codec.av_rescale(seconds, timeBase.den, timeBase.num);
    if ((m_context->start_time & INT64_MAX) != 0)
    {
        const int64_t start = m_codec.av_rescale(m_context->start_time, timeBase.den, int64_t {timeBase.num} * AV_TIME_BASE);
        // A file may tell any start, so the sum may wrap.
        target = static_cast<int64_t>(static_cast<uint64_t>(target) + static_cast<uint64_t>(start));
    }
    m_codec.av_seek_frame(m_context.get(), m_main.Stream->index, target, AVSEEK_FLAG_BACKWARD);
    m_codec.avcodec_flush_buffers(m_main.Decoder.get());
    if (m_second.Decoder != nullptr)
        m_codec.avcodec_flush_buffers(m_second.Decoder.get());
}

void CZVVideoAnalyzeExtended::DecodePacket(const Layer& layer)
{
    if (m_codec.avcodec_send_packet(layer.Decoder.get(), m_packet.get()) == AVERROR(EAGAIN))
    {
        TakeFrames(layer);
        m_codec.avcodec_send_packet(layer.Decoder.get(), m_packet.get());
    }
    TakeFrames(layer);
}

void CZVVideoAnalyzeExtended::TakeFrames(const Layer& layer)
{
    while (m_codec.avcodec_receive_frame(layer.Decoder.get(), m_frame.get()) == 0 && m_frame->buf[0] != nullptr)
    {
        ProcessFrame(layer);
        m_codec.av_frame_unref(m_frame.get());
    }
}

void CZVVideoAnalyzeExtended::ProcessFrame(const Layer& layer)
{
    AVFrame& frame = *m_frame;
    frame.time_base = layer.Decoder->pkt_timebase;
    const auto* const mastering =
        FindFrameData<AVMasteringDisplayMetadata>(m_codec, frame, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA);
    const auto* const light = FindFrameData<AVContentLightMetadata>(m_codec, frame, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL);
    ZVHDRFacts::ApplyHdrMetadata(Properties, m_codec, mastering, light);
    if (m_codec.av_frame_get_side_data(&frame, AV_FRAME_DATA_DYNAMIC_HDR_PLUS) != nullptr)
        ZVHDRFacts::ApplyDynamic(Properties);
    const auto* const dolbyVision = FindFrameData<AVDOVIMetadata>(m_codec, frame, AV_FRAME_DATA_DOVI_METADATA);
    if (dolbyVision != nullptr)
        ZVHDRFacts::ApplyDolbyVision(Properties, *dolbyVision);
    if (&layer != &m_main)
        return;

    Properties.SetString(L"Video Scan", (frame.flags & AV_FRAME_FLAG_INTERLACED) != 0 ? L"Interlaced" : L"Progressive");
    m_sampleAspect = frame.sample_aspect_ratio;
    ++m_framesSeen;
}

void CZVVideoAnalyzeExtended::WriteAspectRatio(const ZVString& extension)
{
    const AVRational containerAspect = m_main.Stream->sample_aspect_ratio;
    const bool hasFrameAspect = IsPositive(m_sampleAspect);
    double pixelAspect = 1.0;
    if (hasFrameAspect && !IsOneOf(extension, ContainersWithAspect))
        pixelAspect = av_q2d(m_sampleAspect);
    else if (IsPositive(containerAspect))
        pixelAspect = av_q2d(containerAspect);
    else if (hasFrameAspect)
        pixelAspect = av_q2d(m_sampleAspect);

    const AVCodecParameters& parameters = *m_main.Stream->codecpar;
    // Without a size there is no aspect to tell.
    if (parameters.width < 1 || parameters.height < 1)
        return;
    const double aspect = static_cast<double>(parameters.width) / parameters.height * pixelAspect;
    Properties.SetString(L"Aspect Ratio", ZVString::FromDouble(aspect, 2));
}
