#include "video/film/ZVFilmReader.h"

#include "system/file/ZVFileInfo.h"
#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"
#include "system/log/ZVLog.h"
#include "video/film/ZVCodecLog.h"
#include "video/film/ZVShortage.h"

#include <algorithm>
#include <set>

namespace
{
constexpr ZVLogSource OpenSource {ZVLogCategory::Media, L"ZVFilmReader::Open"};
constexpr ZVLogSource DecoderSource {ZVLogCategory::Media, L"ZVFilmReader::OpenDecoders"};
constexpr ZVLogSource ReadSource {ZVLogCategory::Media, L"ZVFilmReader::NextFrame"};

// As much of a file is read to find out its container.
constexpr int32_t FormatProbeSize = 0x400000;

// A stream without a frame in that many packets is scrambled or of no use, and would otherwise be read to its end.
constexpr int32_t MaximumPacketsWithoutFrame = 1000;

// The same for a stream that brings no packet while the others go on: more than ten minutes of sound.
constexpr int32_t MaximumPacketsOfOthers = 100'000;

// The start of a film is looked for among so many packets, and among so many of its pictures, which are the most that any codec
// brings before one with an earlier time.
constexpr int32_t MaximumFirstPackets = 200;
constexpr int32_t ReorderedPackets = 8;

// The name as the codec libraries take it. A local one gets their prefix for files, so that no ":" in it is taken for a protocol.
std::string GetInputName(const ZVString& path)
{
    const ZVNativePath native(path);
    return ZVFilename::IsRemote(path) ? native.GetBytes() : "file:" + native.GetBytes();
}
}

ZVFilmReader::ZVFilmReader(const ZVFilmOptions& options) : m_options(options), m_budget(options.Limits) {}

bool ZVFilmReader::Open(const ZVString& path)
{
    Close();
    m_path = path;
    // A pipe would be waited for without an end.
    const ZVFileInfo info(path);
    if (info.IsFound() && !S_ISREG(info.GetMode()) && !S_ISBLK(info.GetMode()))
    {
        OpenSource.Log("This is no file: %s", path);
        return false;
    }
    return OpenContext(GetInputName(path));
}

bool ZVFilmReader::OpenJoined(const ZVStringArray& paths)
{
    Close();
    m_path = paths.GetCount() == 0 ? ZVString() : paths[0];
    m_joined = ZVJoinedFiles::Open(m_codec, paths, m_budget);
    if (m_joined == nullptr)
        OpenSource.Log("None of the film's files can be read: %s", m_path);
    // The name is for the guess of the container alone.
    return m_joined != nullptr && OpenContext(ZVNativePath(m_path).GetBytes());
}

bool ZVFilmReader::OpenContext(const std::string& name)
{
    m_codec.av_log_set_callback(m_options.Log);
    AVFormatContext* context = m_codec.avformat_alloc_context();
    if (context == nullptr)
        return Fail(AVERROR(ENOMEM));
    context->format_probesize = FormatProbeSize;
    m_budget.Serve(*context);
    if (m_joined != nullptr)
    {
        context->pb = &m_joined->GetContext();
        m_budget.Count(*context->pb);
    }
    // On a failure the context is freed by the call.
    const int result = m_codec.avformat_open_input(&context, name.c_str(), nullptr, nullptr);
    if (result < 0)
        return Fail(result);
    m_context = ZVFormatContextPointer(context, {m_codec.avformat_close_input});
    return m_options.Probe == ZVFilmOptions::Probing::Header || ProbeStreams();
}

bool ZVFilmReader::ProbeStreams()
{
    const int result = m_codec.avformat_find_stream_info(m_context.get(), nullptr);
    if (result < 0)
        return Fail(result);
    if (m_budget.IsSpent())
        OpenSource.Log("Not all of its streams became known within %s: %s", GetLimits(), m_path);
    return true;
}

bool ZVFilmReader::Fail(int result)
{
    if (m_budget.IsSpent())
        OpenSource.Log("The file does not open within %s: %s", GetLimits(), m_path);
    else
        OpenSource.Log("The file does not open (%s): %s", GetReason(result), m_path);
    Close();
    return false;
}

void ZVFilmReader::Close()
{
    if (m_context != nullptr && HasNoMemory())
        ReadSource.Log("There is not enough memory to decode it: %s", m_path);
    m_source = nullptr;
    m_isPending = false;
    m_isKept = false;
    m_skipBefore = INT64_MIN;
    m_frame.reset();
    m_packet.reset();
    m_second = Layer();
    m_main = Layer();
    m_context.reset();
    m_joined.reset();
}

ZVString ZVFilmReader::GetReason(int error) const
{
    char reason[AV_ERROR_MAX_STRING_SIZE] = {};
    m_codec.av_strerror(error, reason, sizeof reason);
    return ZVString::FromUTF8(reason);
}

// The limits of a place in words.
ZVString ZVFilmReader::GetLimits() const
{
    return ZVFormat(L"%d s and %d MiB of reading", m_options.Limits.Microseconds / 1'000'000, m_options.Limits.Bytes >> 20);
}

// A cover picture is a video stream too, and may be larger than the film.
const AVStream* ZVFilmReader::ChooseMainStream()
{
    int64_t largest = -1;
    for (AVStream* const stream : GetStreams())
    {
        const int64_t size = int64_t {stream->codecpar->width} * stream->codecpar->height;
        if (stream->codecpar->codec_type != AVMEDIA_TYPE_VIDEO || (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0 ||
            size <= largest)
            continue;
        largest = size;
        m_main.Stream = stream;
    }
    return m_main.Stream;
}

bool ZVFilmReader::OpenDecoders(ZVFilmOptions::Threads threads)
{
    const bool isOpen = OpenDecoder(m_main, threads);
    if (!isOpen && !HasNoMemory())
        DecoderSource.Log("There is no decoder for it: %s", m_path);
    if (isOpen && m_second.Stream != nullptr)
        OpenDecoder(m_second, threads);
    if (!isOpen || HasNoMemory() || !MakePacket())
        return false;
    if (m_options.Read == ZVFilmOptions::Packets::OfDecodedStreams)
        LeaveOutOtherStreams();
    if (!m_isKept)
        BeginPlace();
    return true;
}

bool ZVFilmReader::MakePacket()
{
    if (m_packet == nullptr)
        m_packet = ZVPacketPointer(m_codec.av_packet_alloc(), {m_codec.av_packet_free});
    if (m_frame == nullptr)
        m_frame = ZVFramePointer(m_codec.av_frame_alloc(), {m_codec.av_frame_free});
    m_hasNoMemory = m_packet == nullptr || m_frame == nullptr;
    return !m_hasNoMemory;
}

bool ZVFilmReader::OpenDecoder(Layer& layer, ZVFilmOptions::Threads threads)
{
    layer.Decoder.reset();
    const AVCodecParameters& parameters = *layer.Stream->codecpar;
    const AVCodec* const decoder = m_codec.avcodec_find_decoder(parameters.codec_id);
    if (decoder == nullptr)
        return false;
    ZVCodecContextPointer context(m_codec.avcodec_alloc_context3(decoder), {m_codec.avcodec_free_context});
    m_hasNoMemory = context == nullptr || IsShortage(m_codec.avcodec_parameters_to_context(context.get(), &parameters));
    if (m_hasNoMemory)
        return false;
    context->pkt_timebase = layer.Stream->time_base;
    context->thread_count = m_options.ThreadCount;
    context->thread_type = threads == ZVFilmOptions::Threads::Frames ? FF_THREAD_FRAME : FF_THREAD_SLICE;
    if (parameters.codec_id == AV_CODEC_ID_H264)
        context->strict_std_compliance = FF_COMPLIANCE_STRICT;
    if (m_options.Filter == ZVFilmOptions::LoopFilter::Skip)
        context->skip_loop_filter = AVDISCARD_ALL;
    if (m_options.Frames == ZVFilmOptions::Memory::Shared)
        m_picture.ServeDecoder(*context);
    const int result = m_codec.avcodec_open2(context.get(), decoder, nullptr);
    m_hasNoMemory = IsShortage(result);
    if (result >= 0)
        layer.Decoder = std::move(context);
    return result >= 0;
}

void ZVFilmReader::LeaveOutOtherStreams()
{
    for (AVStream* const stream : GetStreams())
        if (FindLayer(stream->index) == nullptr)
            stream->discard = AVDISCARD_ALL;
}

int64_t ZVFilmReader::GetStart() const
{
    // An unknown start has the sign bit alone.
    if ((m_context->start_time & INT64_MAX) == 0)
        return 0;
    const AVRational timeBase = m_main.Stream->time_base;
    return m_codec.av_rescale(m_context->start_time, timeBase.den, int64_t {timeBase.num} * AV_TIME_BASE);
}

bool ZVFilmReader::SeekTo(int32_t seconds)
{
    const AVRational timeBase = m_main.Stream->time_base;
    const int64_t sinceStart = m_codec.av_rescale(seconds, timeBase.den, timeBase.num);
    // A file may tell any start, so the sum may wrap.
    const auto target = static_cast<int64_t>(static_cast<uint64_t>(sinceStart) + static_cast<uint64_t>(GetStart()));
    const int result = Seek(target, AVSEEK_FLAG_BACKWARD);
    const int entries = m_codec.avformat_index_get_entries_count(m_main.Stream);
    return result >= 0 && (entries == 0 || m_codec.avformat_index_get_entry(m_main.Stream, entries - 1)->timestamp > target);
}

// The kept packet stays when the film cannot be moved.
int ZVFilmReader::Seek(int64_t target, int flags)
{
    const bool isKept = m_isKept;
    BeginPlace();
    const int result = m_codec.av_seek_frame(m_context.get(), m_main.Stream->index, target, flags);
    for (const Layer* const layer : {&m_main, &m_second})
        if (layer->Decoder != nullptr)
            m_codec.avcodec_flush_buffers(layer->Decoder.get());
    if (isKept && result < 0)
    {
        m_isKept = true;
        m_source = &m_main;
    }
    return result;
}

const AVPacket* ZVFilmReader::FindKeyPacket()
{
    if (!MakePacket())
        return nullptr;
    while (!m_isKept && CanGoOn() && ReadPacket())
        m_isKept = m_source == &m_main && (m_packet->flags & AV_PKT_FLAG_KEY) != 0;
    return m_isKept ? m_packet.get() : nullptr;
}

// The first packet of a stream need not have its earliest time, since pictures come in the order in which they are decoded.
std::optional<int64_t> ZVFilmReader::ReadEarliest()
{
    const auto isPictureOrSound = [](const AVStream* stream)
    {
        const AVMediaType type = stream->codecpar->codec_type;
        return (type == AVMEDIA_TYPE_VIDEO || type == AVMEDIA_TYPE_AUDIO) &&
               (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) == 0;
    };
    std::optional<int64_t> earliest;
    std::set<int> unseen;
    for (const AVStream* const stream : GetStreams())
        if (isPictureOrSound(stream))
            unseen.insert(stream->index);
    int32_t mainPackets = 0;
    for (int32_t packets = 0; packets < MaximumFirstPackets && MakePacket() && CanGoOn(); ++packets)
    {
        if ((unseen.empty() && mainPackets >= ReorderedPackets) || !ReadPacket())
            break;
        const AVStream* const stream = m_context->streams[m_packet->stream_index];
        unseen.erase(stream->index);
        mainPackets += m_source == &m_main ? 1 : 0;
        if (m_packet->pts != AV_NOPTS_VALUE && isPictureOrSound(stream))
            earliest = std::min(m_codec.av_rescale_q(m_packet->pts, stream->time_base, m_main.Stream->time_base),
                                earliest.value_or(INT64_MAX));
    }
    return earliest;
}

int64_t ZVFilmReader::GetSize() const
{
    return m_joined != nullptr ? m_joined->GetSize() : ZVFileInfo(m_path).GetSize();
}

void ZVFilmReader::BeginPlace()
{
    m_source = nullptr;
    m_isPending = false;
    m_isKept = false;
    m_place = Place();
    m_budget.Restart();
}

const AVFrame* ZVFilmReader::NextFrame()
{
    if (m_isKept)
        SendPacket();
    m_isKept = false;
    const AVFrame* frame = NextFrameOfPacket();
    while (frame == nullptr && m_place.FramesSeen < m_options.FramesPerPlace && CanGoOn() && ReadPacket())
    {
        SendPacket();
        frame = NextFrameOfPacket();
    }
    return frame == nullptr && m_options.AtEnd == ZVFilmOptions::KeptFrames::Fetch ? NextKeptFrame() : frame;
}

const AVFrame* ZVFilmReader::DecodeKeyAlone()
{
    if (!m_isKept)
        return nullptr;
    SendPacket();
    m_isKept = false;
    m_place.IsAtEnd = true;
    const AVFrame* const frame = NextFrameOfPacket();
    return frame == nullptr ? NextKeptFrame() : frame;
}

const AVFrame* ZVFilmReader::NextKeptFrame()
{
    if (!m_place.IsAtEnd || HasNoMemory() || m_budget.IsCancelled())
        return nullptr;
    m_source = &m_main;
    if (!m_place.IsDecoderAtEnd)
        NoteResult(m_codec.avcodec_send_packet(m_main.Decoder.get(), nullptr));
    m_place.IsDecoderAtEnd = true;
    return ReceiveFrame();
}

// The next of the frames that came out of the packet that was sent last; null when there are no more.
const AVFrame* ZVFilmReader::NextFrameOfPacket()
{
    if (m_source == nullptr)
        return nullptr;
    const AVFrame* frame = ReceiveFrame();
    if (frame != nullptr || !m_isPending)
        return frame;
    m_isPending = false;
    NoteResult(m_codec.avcodec_send_packet(m_source->Decoder.get(), m_packet.get()));
    return ReceiveFrame();
}

// Ends the place when it has cost enough.
bool ZVFilmReader::CanGoOn()
{
    if (m_place.IsAtEnd || HasNoMemory())
        return false;
    if (m_place.PacketsOfOthers >= MaximumPacketsOfOthers)
        ReadSource.Log("No packet of the main stream came among %d", m_place.PacketsOfOthers);
    else if (m_place.PacketsWithoutFrame >= MaximumPacketsWithoutFrame)
        ReadSource.Log("No frame came out of %d packets", m_place.PacketsWithoutFrame);
    else if (m_budget.Ask())
        return true;
    else
        EndPlace(AVERROR_EXIT);
    m_place.IsAtEnd = true;
    return false;
}

// Reads the next packet of any stream.
bool ZVFilmReader::ReadPacket()
{
    int result;
    do
    {
        m_codec.av_packet_unref(m_packet.get());
        result = m_codec.av_read_frame(m_context.get(), m_packet.get());
    } while (result == AVERROR(EAGAIN) && m_budget.Ask());
    if (result < 0)
    {
        EndPlace(result);
        return false;
    }
    m_packet->time_base = m_context->streams[m_packet->stream_index]->time_base;
    ++m_place.PacketsOfOthers;
    m_source = FindLayer(m_packet->stream_index);
    if (m_source == &m_main)
    {
        m_place.PacketsOfOthers = 0;
        ++m_place.PacketsWithoutFrame;
    }
    return true;
}

void ZVFilmReader::EndPlace(int result)
{
    m_place.IsAtEnd = true;
    m_source = nullptr;
    if (m_budget.IsCancelled())
        return;
    if (m_budget.IsSpent())
    {
        ReadSource.Log("No frame came within %s", GetLimits());
        return;
    }
    if (result != AVERROR_EOF)
        ReadSource.Log("The film cannot be read to its end (%s)", GetReason(result));
    // A sound film of a few pictures ends while its decoder still keeps them.
    const AVCodecContext* const decoder = m_main.Decoder.get();
    const int32_t keptFrames = decoder == nullptr ? INT32_MAX : decoder->thread_count + decoder->has_b_frames;
    if (m_place.FramesSeen == 0 && (m_place.RefusedPackets > 0 || m_place.PacketsWithoutFrame > keptFrames))
        ReadSource.Log("No frame came out of %d packets", m_place.PacketsWithoutFrame);
}

ZVFilmReader::Layer* ZVFilmReader::FindLayer(int32_t streamIndex)
{
    for (Layer* const layer : {&m_main, &m_second})
        if (layer->Stream != nullptr && layer->Stream->index == streamIndex && (layer->Decoder != nullptr || layer == &m_main))
            return layer;
    return nullptr;
}

// A decoder that is full takes the packet once its frames are fetched.
void ZVFilmReader::SendPacket()
{
    if (m_source == nullptr)
        return;
    if (IsOfMainStream())
        m_main.Decoder->skip_frame = CanSkip(*m_packet) ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
    const int result = m_codec.avcodec_send_packet(m_source->Decoder.get(), m_packet.get());
    m_isPending = result == AVERROR(EAGAIN);
    if (!m_isPending)
        NoteResult(result);
}

// A frame may come in two packets, one for each field, and its time may be that of its second one. So what ends shortly before the
// time stamp is decoded too.
void ZVFilmReader::SkipFramesBefore(int64_t timeStamp)
{
    constexpr AVRational Margin = {1, 5};
    const int64_t margin = m_codec.av_rescale_q(1, Margin, m_main.Stream->time_base);
    m_skipBefore = timeStamp < INT64_MIN + margin ? INT64_MIN : timeStamp - margin;
}

bool ZVFilmReader::CanSkip(const AVPacket& packet) const
{
    int64_t end = 0;
    return packet.pts != AV_NOPTS_VALUE && packet.duration > 0 && !__builtin_add_overflow(packet.pts, packet.duration, &end) &&
           end < m_skipBefore;
}

const AVFrame* ZVFilmReader::ReceiveFrame()
{
    const int result = m_codec.avcodec_receive_frame(m_source->Decoder.get(), m_frame.get());
    if (result != AVERROR(EAGAIN) && result != AVERROR_EOF)
        NoteResult(result);
    if (result != 0 || m_frame->buf[0] == nullptr)
        return nullptr;
    m_frame->time_base = m_source->Decoder->pkt_timebase;
    if (IsOfMainStream())
    {
        ++m_place.FramesSeen;
        m_place.PacketsWithoutFrame = 0;
        m_budget.Restart();
    }
    return m_frame.get();
}

// Counts what the main stream's decoder refuses, and remembers that memory ran out.
void ZVFilmReader::NoteResult(int result)
{
    m_hasNoMemory = m_hasNoMemory || result == AVERROR(ENOMEM);
    if (result < 0 && IsOfMainStream())
        ++m_place.RefusedPackets;
}
