#include "siblings/player/CFrameAim.h"

#include "system/log/ZVLog.h"
#include "system/thread/ZVTimer.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"CFrameAim::Find"};

// No film is longer; time stamps up to here can be computed with.
constexpr int64_t MaximumMilliseconds = INT64_MAX / 1'000'000;

// How far the first step back from a target goes when the film was moved to a place after its key frame. Each further step is
// twice as long.
constexpr int64_t FirstStepBack = 1000;

constexpr AVRational Milliseconds = {1, 1000};

// The distance of two frames of a film that does not tell: that of 25 frames a second.
constexpr AVRational UsualFrameDuration = {1, 25};

// Containers that can be read from any byte on, and whose first byte is the start of the film. A move by time may miss that.
constexpr std::string_view StreamsOfBytes[] = {"mpegts", "mpeg", "mpegvideo", "h264", "hevc", "m4v", "vc1"};

bool IsStreamOfBytes(const AVFormatContext& container)
{
    return std::ranges::find(StreamsOfBytes, std::string_view(container.iformat->name)) != std::end(StreamsOfBytes);
}

int64_t GetStart(const AVPacket& packet)
{
    return packet.pts == AV_NOPTS_VALUE ? packet.dts : packet.pts;
}

bool IsPictureOrSound(const AVStream& stream)
{
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO || stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
}

// Time stamps are a stranger's numbers.
int64_t Add(int64_t a, int64_t b)
{
    int64_t sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? (b < 0 ? INT64_MIN + 1 : INT64_MAX) : sum;
}
}

CFrameAim::CFrameAim(ZVFilmReader& film)
    : m_film(film),
      m_codec(film.GetCodec()),
      m_stream(*film.GetMainStream()),
      m_last(m_codec.av_frame_alloc(), {m_codec.av_frame_free})
{
    const AVRational rate = m_stream.avg_frame_rate;
    const AVRational duration = rate.num > 0 && rate.den > 0 ? AVRational {rate.den, rate.num} : UsualFrameDuration;
    m_frameDuration = m_codec.av_rescale_q(1, duration, m_stream.time_base);
    m_start = ReadStart();
}

// Where the film starts: with the first of its pictures and sounds. A container whose header does not tell is asked for its first
// packets.
int64_t CFrameAim::ReadStart()
{
    if (m_film.HasStart())
        return m_film.GetStart();
    int64_t start = INT64_MAX;
    for (const AVStream* const stream : m_film.GetStreams())
        if (IsPictureOrSound(*stream) && stream->start_time != AV_NOPTS_VALUE)
            start = std::min(start, m_codec.av_rescale_q(stream->start_time, stream->time_base, m_stream.time_base));
    if (m_stream.start_time != AV_NOPTS_VALUE)
        return start;
    m_film.FindKeyPacket();
    return m_film.GetEarliest().value_or(0);
}

int64_t CFrameAim::GetTime(int64_t timeStamp, AVRational timeBase) const
{
    if (timeStamp == AV_NOPTS_VALUE)
        return 0;
    const int64_t start = m_codec.av_rescale_q(m_start, m_stream.time_base, Milliseconds);
    return Add(m_codec.av_rescale_q(timeStamp, timeBase, Milliseconds), -start);
}

// Rounded down, so that a frame that ends at a time is not taken for one that is on screen then.
int64_t CFrameAim::GetTarget(int64_t milliseconds) const
{
    constexpr AVRational Microseconds = {1, 1'000'000};
    int64_t timeStamp = m_codec.av_rescale_q(milliseconds, Milliseconds, m_stream.time_base);
    if (m_codec.av_rescale_q(timeStamp, m_stream.time_base, Microseconds) > milliseconds * 1000)
        --timeStamp;
    return Add(m_start, timeStamp);
}

const AVFrame* CFrameAim::Find(int64_t milliseconds)
{
    m_startMicroseconds = ZVTimer::GetMicroseconds();
    m_isAlone = false;
    const int64_t target = GetTarget(std::clamp<int64_t>(milliseconds, 0, MaximumMilliseconds));
    int64_t step = 0;
    Place place = GoBefore(target, step);
    if (place.IsFound && target < place.KeyEnd && IsFrameInPacket())
    {
        if (const AVFrame* const frame = FindAlone(target))
            return frame;
        step = 0;
        place = GoBefore(target, step);
    }
    return FindFrom(target, place, step);
}

// After a frame that was decoded alone the decoder has nothing to go on with.
const AVFrame* CFrameAim::FindNext()
{
    if (!m_isAlone)
        return m_film.NextFrame();
    m_startMicroseconds = ZVTimer::GetMicroseconds();
    m_isAlone = false;
    int64_t step = 0;
    const Place place = GoBefore(m_aloneEnd, step);
    const AVFrame* const frame = FindFrom(m_aloneEnd, place, step);
    return m_isPastEnd ? nullptr : frame;
}

// In a transport stream each field of a frame may have a packet of its own.
bool CFrameAim::IsFrameInPacket() const
{
    return !IsStreamOfBytes(m_film.GetContainer()) || m_stream.codecpar->field_order == AV_FIELD_PROGRESSIVE;
}

// Decodes a key frame that is on screen at the target and nothing else, which is several times faster: a decoder keeps the first frames
// until it has seen more.
const AVFrame* CFrameAim::FindAlone(int64_t target)
{
    if (!m_film.OpenDecoders(ZVFilmOptions::Threads::Slices))
        return nullptr;
    const AVFrame* const frame = m_film.DecodeKeyAlone();
    if (frame == nullptr || frame->best_effort_timestamp == AV_NOPTS_VALUE || frame->best_effort_timestamp > target)
        return nullptr;
    m_aloneEnd = GetEnd(frame->best_effort_timestamp, frame->duration);
    m_isAlone = m_aloneEnd > target;
    return m_isAlone ? frame : nullptr;
}

// A transport stream, and some others, can only be moved to the neighbourhood of a time, so the first frame that can be decoded there
// may be too late. Then the way leads back, further each time.
const AVFrame* CFrameAim::FindFrom(int64_t target, Place place, int64_t step)
{
    m_film.SkipFramesBefore(target);
    while (place.IsFound && m_film.OpenDecoders())
    {
        const AVFrame* const frame = DecodeTo(target, place.IsStart);
        if (!IsLate(target) || place.IsStart || IsTooLate() || m_film.IsCancelled())
            return frame;
        place = GoBefore(target, step);
    }
    return nullptr;
}

const AVFrame* CFrameAim::FindByShare(double share)
{
    m_startMicroseconds = ZVTimer::GetMicroseconds();
    const auto position = static_cast<int64_t>(static_cast<double>(m_film.GetSize()) * std::clamp(share, 0.0, 1.0));
    m_film.SkipFramesBefore(INT64_MIN);
    m_film.SeekToByte(position);
    return m_film.OpenDecoders() ? m_film.NextFrame() : nullptr;
}

// Moves the film to a key frame that is on screen at the target or before it, at least a step of milliseconds before it, and tells
// the next step.
CFrameAim::Place CFrameAim::GoBefore(int64_t target, int64_t& step)
{
    while (!IsTooLate() && !m_film.IsCancelled())
    {
        const int64_t place = Add(target, -m_codec.av_rescale_q(step, Milliseconds, m_stream.time_base));
        if (place <= m_start)
            break;
        step = step == 0 ? FirstStepBack : step * 2;
        const AVPacket* const packet = m_film.SeekToTime(place) ? m_film.FindKeyPacket() : nullptr;
        const int64_t start = packet == nullptr ? AV_NOPTS_VALUE : GetStart(*packet);
        if (start != AV_NOPTS_VALUE && start <= target)
            return {true, false, GetEnd(start, packet->duration)};
    }
    return GoToStart();
}

CFrameAim::Place CFrameAim::GoToStart()
{
    // Of what cannot be moved at all the first packet is still kept.
    if (!(IsStreamOfBytes(m_film.GetContainer()) && m_film.SeekToByte(0)) && !m_film.SeekToTime(m_start) && !m_film.SeekToTime(0))
        m_film.SeekToByte(0);
    const AVPacket* const packet = m_film.FindKeyPacket();
    if (packet == nullptr)
        return {};
    const int64_t start = GetStart(*packet);
    return {true, true, GetEnd(start == AV_NOPTS_VALUE ? m_start : start, packet->duration)};
}

// Frames without time stamps are counted from the start of the film.
const AVFrame* CFrameAim::DecodeTo(int64_t target, bool isStart)
{
    m_firstStart = AV_NOPTS_VALUE;
    m_isPastEnd = false;
    const AVFrame* last = nullptr;
    int64_t next = isStart ? m_start : target;
    while (const AVFrame* const frame = m_film.NextFrame())
    {
        const int64_t start = frame->best_effort_timestamp == AV_NOPTS_VALUE ? next : frame->best_effort_timestamp;
        next = GetEnd(start, frame->duration);
        if (last == nullptr)
            m_firstStart = start;
        if (next > target)
            return frame;
        if (IsTooLate())
        {
            Source.Log("The frame at this time was not reached; an earlier one takes its place");
            return frame;
        }
        last = KeepLast(*frame);
    }
    m_isPastEnd = true;
    return last;
}

// Null when there is no memory.
const AVFrame* CFrameAim::KeepLast(const AVFrame& frame)
{
    if (m_last == nullptr)
        return nullptr;
    m_codec.av_frame_unref(m_last.get());
    return m_codec.av_frame_ref(m_last.get(), &frame) < 0 ? nullptr : m_last.get();
}

int64_t CFrameAim::GetEnd(int64_t start, int64_t duration) const
{
    return Add(start, duration > 0 ? duration : m_frameDuration);
}

bool CFrameAim::IsTooLate() const
{
    return ZVTimer::GetMicroseconds() - m_startMicroseconds > MaximumMicroseconds;
}
