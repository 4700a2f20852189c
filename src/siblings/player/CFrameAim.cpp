#include "siblings/player/CFrameAim.h"

#include "system/log/ZVLog.h"
#include "system/thread/ZVTimer.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"CFrameAim::Find"};

// No film is longer; time stamps up to here can be computed with.
constexpr int64_t MaximumMilliseconds = INT64_MAX / 1'000'000;

// How far the first step back from a target goes when the film was moved to a place after its key frame. Each further step is
// twice as long.
constexpr int64_t FirstStepBack = 1000;

// No codec shows a frame as much later as this after it was decoded.
constexpr int64_t LongestReordering = 1000;

constexpr AVRational Milliseconds = {1, 1000};

// The distance of two frames of a film that does not tell: that of 25 frames a second.
constexpr AVRational UsualFrameDuration = {1, 25};

// Containers that can be read from any byte on, and whose first byte is the start of the film. A move by time may miss that.
constexpr std::string_view StreamsOfBytes[] = {"mpegts", "mpeg", "mpegvideo", "h264", "hevc", "m4v", "vc1"};

bool IsStreamOfBytes(const AVFormatContext& container)
{
    return std::ranges::find(StreamsOfBytes, std::string_view(container.iformat->name)) != std::end(StreamsOfBytes);
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

CFrameAim::CFrameAim(ZVFilmReader& film, int64_t start)
    : m_film(film),
      m_codec(film.GetCodec()),
      m_stream(*film.GetMainStream()),
      m_start(start),
      m_last(m_codec.av_frame_alloc(), {m_codec.av_frame_free}),
      m_held(m_codec.av_frame_alloc(), {m_codec.av_frame_free})
{
    const AVRational rate = m_stream.avg_frame_rate;
    const AVRational duration = rate.num > 0 && rate.den > 0 ? AVRational {rate.den, rate.num} : UsualFrameDuration;
    m_frameDuration = m_codec.av_rescale_q(1, duration, m_stream.time_base);
}

CFrameAim::CFrameAim(ZVFilmReader& film) : CFrameAim(film, 0)
{
    m_canBeMoved = true;
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
    const std::optional<int64_t> earliest = m_film.ReadEarliest();
    m_canBeMoved = earliest.has_value();
    return earliest.value_or(0);
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

// What was found before no longer counts.
void CFrameAim::Begin()
{
    m_startMicroseconds = ZVTimer::GetMicroseconds();
    m_isAlone = false;
    m_isHeld = false;
    m_isPastEnd = false;
    m_gap = 0;
}

const AVFrame* CFrameAim::Find(int64_t milliseconds)
{
    // Without time stamps the places of moves would be made up.
    if (!m_canBeMoved && !IsStreamOfBytes(m_film.GetContainer()))
        return nullptr;
    Begin();
    const int64_t target = GetTarget(std::clamp<int64_t>(milliseconds, 0, MaximumMilliseconds));
    int64_t step = 0;
    Place place = GoBefore(target, step);
    if (place.IsFound && place.HasTime && target < place.KeyEnd && IsFrameInPacket())
    {
        if (const AVFrame* const frame = FindAlone(target))
            return frame;
        step = 0;
        place = GoBefore(target, step);
    }
    return FindFrom(target, place, step);
}

const AVFrame* CFrameAim::FindUnmoved(int64_t milliseconds)
{
    Begin();
    m_film.SkipFramesBefore(INT64_MIN);
    const int64_t target = GetTarget(std::clamp<int64_t>(milliseconds, 0, MaximumMilliseconds));
    return m_film.OpenDecoders() ? DecodeTo(target, true) : nullptr;
}

// After a frame that was decoded alone the decoder has nothing to go on with.
const AVFrame* CFrameAim::FindNext()
{
    if (m_isAlone)
    {
        Begin();
        int64_t step = 0;
        const Place place = GoBefore(m_aloneEnd, step);
        const AVFrame* const frame = FindFrom(m_aloneEnd, place, step);
        // Before a gap, and at the end of the film, this is the frame that was returned already.
        if (!m_isHeld)
            return m_isPastEnd ? nullptr : frame;
    }
    if (!m_isHeld)
        return m_film.NextFrame();
    m_isHeld = false;
    return m_held.get();
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
    if (frame == nullptr || frame->pts == AV_NOPTS_VALUE || frame->pts > target)
        return nullptr;
    m_aloneEnd = GetEnd(frame->pts, frame->duration);
    m_isAlone = m_aloneEnd > target;
    return m_isAlone ? frame : nullptr;
}

// A transport stream, and some others, can only be moved to the neighbourhood of a time, so the first frame that can be decoded there
// may be too late. Then the way leads back, further each time.
const AVFrame* CFrameAim::FindFrom(int64_t target, Place place, int64_t step)
{
    bool isSkipping = true;
    m_film.SkipFramesBefore(target);
    while (place.IsFound && m_film.OpenDecoders())
    {
        const AVFrame* const frame = DecodeTo(target, place.IsStart);
        const bool isLate = m_firstStart != AV_NOPTS_VALUE && m_firstStart > target && !place.IsStart;
        const bool isUnsure = m_isHeld && isSkipping && m_gap > m_frameDuration;
        if (!(isLate || isUnsure) || IsTooLate() || m_film.IsCancelled())
            return frame;
        // A frame that was left out stays on screen where the one after it comes late.
        if (isUnsure)
        {
            isSkipping = false;
            m_film.SkipFramesBefore(INT64_MIN);
            step = 0;
        }
        place = GoBefore(target, step);
    }
    return nullptr;
}

const AVFrame* CFrameAim::FindByShare(double share)
{
    Begin();
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
        const int64_t start = packet == nullptr ? AV_NOPTS_VALUE : GetLatestStart(*packet);
        if (start != AV_NOPTS_VALUE && start <= target)
            return {true, packet->pts != AV_NOPTS_VALUE, false, GetEnd(start, packet->duration)};
    }
    return GoToStart();
}

CFrameAim::Place CFrameAim::GoToStart()
{
    if (!(IsStreamOfBytes(m_film.GetContainer()) && m_film.SeekToByte(0)) && !m_film.SeekToTime(m_start) && !m_film.SeekToTime(0))
        m_film.SeekToByte(0);
    const AVPacket* const packet = m_film.FindKeyPacket();
    if (packet == nullptr)
        return {};
    const bool hasTime = packet->pts != AV_NOPTS_VALUE;
    return {true, hasTime, true, GetEnd(hasTime ? packet->pts : m_start, packet->duration)};
}

// When the frame of a packet begins, or a time after that where the packet tells only when it is decoded.
int64_t CFrameAim::GetLatestStart(const AVPacket& packet) const
{
    if (packet.pts != AV_NOPTS_VALUE || packet.dts == AV_NOPTS_VALUE)
        return packet.pts;
    return Add(packet.dts, m_codec.av_rescale_q(LongestReordering, Milliseconds, m_stream.time_base));
}

// Frames without time stamps are counted from the one before, or from the start of the film. The frame on screen is the one that ends
// after the target, or one before it when that comes late.
const AVFrame* CFrameAim::DecodeTo(int64_t target, bool isStart)
{
    m_firstStart = AV_NOPTS_VALUE;
    m_isPastEnd = false;
    m_isHeld = false;
    m_gap = 0;
    const AVFrame* last = nullptr;
    int64_t next = isStart ? m_start : AV_NOPTS_VALUE;
    while (const AVFrame* const frame = m_film.NextFrame())
    {
        int64_t start = frame->pts;
        for (const int64_t guess : {next, frame->best_effort_timestamp, target})
            start = start == AV_NOPTS_VALUE ? guess : start;
        const int64_t lastEnd = next;
        next = GetEnd(start, frame->duration);
        if (m_firstStart == AV_NOPTS_VALUE)
            m_firstStart = start;
        if (start > target && last != nullptr && Keep(*frame, m_held))
        {
            m_isHeld = true;
            m_gap = Add(start, -lastEnd);
            return last;
        }
        if (next > target)
            return frame;
        if (IsTooLate())
        {
            Source.Log("The frame at this time was not reached; an earlier one takes its place");
            return frame;
        }
        last = Keep(*frame, m_last) ? m_last.get() : nullptr;
    }
    m_isPastEnd = true;
    return last;
}

// False when there is no memory.
bool CFrameAim::Keep(const AVFrame& frame, ZVFramePointer& kept) const
{
    if (kept == nullptr)
        return false;
    m_codec.av_frame_unref(kept.get());
    return m_codec.av_frame_ref(kept.get(), &frame) >= 0;
}

int64_t CFrameAim::GetEnd(int64_t start, int64_t duration) const
{
    return Add(start, duration > 0 ? duration : m_frameDuration);
}

bool CFrameAim::IsTooLate() const
{
    return ZVTimer::GetMicroseconds() - m_startMicroseconds > MaximumMicroseconds;
}
