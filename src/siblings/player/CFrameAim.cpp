#include "siblings/player/CFrameAim.h"

#include "system/log/ZVLog.h"
#include "system/thread/ZVTimer.h"

#include <algorithm>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"CFrameAim::Find"};

// How far the first step back from a target goes when the film was moved to a place after its key frame. Each further step is
// twice as long.
constexpr int64_t FirstStepBack = 1000;

constexpr AVRational Milliseconds = {1, 1000};

// The distance of two frames of a film that does not tell: that of 25 frames a second.
constexpr AVRational UsualFrameDuration = {1, 25};

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

const AVFrame* CFrameAim::Find(int64_t milliseconds)
{
    m_startMicroseconds = ZVTimer::GetMicroseconds();
    const int64_t target =
        Add(m_start, m_codec.av_rescale_q(std::max<int64_t>(milliseconds, 0), Milliseconds, m_stream.time_base));
    m_film.SkipFramesBefore(target);
    if (!GoBefore(target) || !m_film.OpenDecoders(ChooseThreads(target)))
        return nullptr;
    return DecodeTo(target);
}

const AVFrame* CFrameAim::FindByShare(double share)
{
    m_startMicroseconds = ZVTimer::GetMicroseconds();
    const auto position = static_cast<int64_t>(static_cast<double>(m_film.GetSize()) * std::clamp(share, 0.0, 1.0));
    m_film.SkipFramesBefore(INT64_MIN);
    m_film.SeekToByte(position);
    return m_film.OpenDecoders() ? m_film.NextFrame() : nullptr;
}

// Moves the film to a key frame that is on screen at the target or before it. A transport stream, and some others, can only be
// moved to the neighbourhood of a time, so the first frame that can be decoded there may be too late.
bool CFrameAim::GoBefore(int64_t target)
{
    int64_t step = 0;
    for (int64_t place = target; place > m_start && !IsTooLate();
         place = Add(target, -m_codec.av_rescale_q(step, Milliseconds, m_stream.time_base)))
    {
        const AVPacket* const packet = m_film.SeekToTime(place) ? m_film.FindKeyPacket() : nullptr;
        if (packet != nullptr && (packet->pts == AV_NOPTS_VALUE || packet->pts <= target))
        {
            m_keyEnd = packet->pts == AV_NOPTS_VALUE ? target : GetEnd(packet->pts, packet->duration);
            return true;
        }
        step = step == 0 ? FirstStepBack : step * 2;
    }
    return GoToStart();
}

bool CFrameAim::GoToStart()
{
    // Of what cannot be moved at all the first packet is still kept.
    if (!m_film.SeekToTime(m_start) && !m_film.SeekToTime(0))
        m_film.SeekToByte(0);
    const AVPacket* const packet = m_film.FindKeyPacket();
    m_keyEnd = packet == nullptr || packet->pts == AV_NOPTS_VALUE ? INT64_MAX : GetEnd(packet->pts, packet->duration);
    return packet != nullptr;
}

// A single frame comes out soonest when all threads work on it, many when each works on its own.
ZVFilmOptions::Threads CFrameAim::ChooseThreads(int64_t target) const
{
    return target < m_keyEnd ? ZVFilmOptions::Threads::Slices : ZVFilmOptions::Threads::Frames;
}

const AVFrame* CFrameAim::DecodeTo(int64_t target)
{
    const AVFrame* last = nullptr;
    while (const AVFrame* const frame = m_film.NextFrame())
    {
        const int64_t start = frame->best_effort_timestamp;
        if (start == AV_NOPTS_VALUE || GetEnd(start, frame->duration) > target)
            return frame;
        if (IsTooLate())
        {
            Source.Log("The frame at this time was not reached; an earlier one takes its place");
            return frame;
        }
        last = KeepLast(*frame);
    }
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
