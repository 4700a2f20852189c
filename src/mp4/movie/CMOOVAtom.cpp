#include "mp4/movie/CMOOVAtom.h"

#include "mp4/model/Exception.h"
#include "mp4/samples/CSTBLAtom.h"
#include "system/log/ZVLog.h"

#include <algorithm>
#include <cmath>

namespace
{
// A table of one line can tell of billions of samples. A week of film has some thirty million.
constexpr int32_t MaximumSamplesChecked = 50'000'000;

// Sound that is this much off is noticed by everybody.
constexpr double MaximumDrift = 0.2;

constexpr ZVLogSource AppendSource {ZVLogCategory::General, L"CMOOVAtom::Append"};
}

void CMOOVAtom::Verify(const CMDATList& mdatList, bool checkOverlap)
{
    m_tracks.clear();
    m_audioTracks.clear();
    m_videoTracks.clear();
    m_mdatIndex = CMDATIndex(mdatList);
    m_header = static_cast<CMVHDAtom*>(&GetRequiredChild(FourCC("mvhd")));
    for (CAtom* const child : GetChildren())
    {
        if (child->GetType() != FourCC("trak"))
            continue;
        auto* const track = static_cast<CTRAKAtom*>(child);
        m_tracks.push_back(track);
        track->Verify(mdatList, checkOverlap);
        if (track->GetMediaType() == 'a')
            m_audioTracks.push_back(track);
        else if (track->GetMediaType() == 'v')
            m_videoTracks.push_back(track);
    }
    if (checkOverlap)
        CheckOverlap();
}

// Walks through the first track of each kind at once, in the order of the file.
void CMOOVAtom::CheckOverlap() const
{
    // On equal offsets the video track is taken, so it stands first.
    std::vector<CTRAKAtom*> tracks;
    for (const auto* const list : {&m_videoTracks, &m_audioTracks})
        if (!list->empty() && list->front()->GetSampleTables() != nullptr)
            tracks.push_back(list->front());
    uint64_t end = 0;
    for (int32_t sample = 0; sample < MaximumSamplesChecked; ++sample)
    {
        CTRAKAtom* next = nullptr;
        CSamplePlace place;
        for (CTRAKAtom* const track : tracks)
        {
            const CSamplePlace candidate = track->GetSampleTables()->FindSample(track->Cursor);
            if (candidate.IsFound && (next == nullptr || candidate.Offset < place.Offset))
            {
                next = track;
                place = candidate;
            }
        }
        if (next == nullptr)
            return;
        if (place.Offset < end)
            ThrowException(L"Overlapping samples");
        end = place.Offset + place.Size;
        ++next->Cursor;
    }
}

void CMOOVAtom::Append(CAtom& other)
{
    if (!m_videoTracks.empty() && !m_audioTracks.empty())
    {
        const double video = m_videoTracks.front()->GetDurationInSeconds();
        const double audio = m_audioTracks.front()->GetDurationInSeconds();
        if (std::abs(video - audio) > MaximumDrift)
            AppendSource.Log("Warning: what follows is out of step, since the picture lasts %f seconds and the sound %f\n", video,
                             audio);
    }
    CContainerAtom::Append(other);
}

void CMOOVAtom::AppendMultiple(CAtom& child)
{
    const auto* const track = child.GetType() == FourCC("trak") ? static_cast<const CTRAKAtom*>(&child) : nullptr;
    const char kind = track == nullptr ? 'o' : track->GetMediaType();
    const auto& second = static_cast<const CMOOVAtom&>(child.GetParent(FourCC("moov")));
    // The second of a kind would follow the first, and not lie beside it.
    const auto isOnly = [&](const std::vector<CTRAKAtom*>& own, const std::vector<CTRAKAtom*>& others)
    { return !own.empty() && others.size() == 1; };
    if (kind == 'v' && isOnly(m_videoTracks, second.m_videoTracks))
        m_videoTracks.front()->Append(child);
    else if (kind == 'a' && isOnly(m_audioTracks, second.m_audioTracks))
        m_audioTracks.front()->Append(child);
    else
        ThrowException(L"MOOVAtom Append not finished %s", child.GetTypeName());
}

CTimescales CMOOVAtom::FindTimescales(const CAtom& own, const CAtom& other)
{
    const auto* const movie = static_cast<const CMOOVAtom*>(own.FindParent(FourCC("moov")));
    const auto* const second = static_cast<const CMOOVAtom*>(other.FindParent(FourCC("moov")));
    return movie == nullptr || second == nullptr ? CTimescales {} : CTimescales {movie->GetTimescale(), second->GetTimescale()};
}

uint32_t CMOOVAtom::GetTimescale() const
{
    return m_header == nullptr ? 0 : m_header->GetTimescale();
}

uint64_t CMOOVAtom::GetDuration() const
{
    return m_header == nullptr ? 0 : m_header->GetDuration();
}

char CMOOVAtom::GetMediaType() const
{
    return !m_videoTracks.empty() ? 'v' : !m_audioTracks.empty() ? 'a' : 'o';
}

const CSTSDAtom* CMOOVAtom::FindDescriptions(const std::vector<CTRAKAtom*>& tracks) const
{
    const CSTBLAtom* const tables = tracks.empty() ? nullptr : tracks.front()->GetSampleTables();
    return tables == nullptr ? nullptr : tables->GetDescriptions();
}

int32_t CMOOVAtom::GetWidth() const
{
    const CSTSDAtom* const descriptions = FindDescriptions(m_videoTracks);
    return descriptions == nullptr ? 0 : descriptions->GetWidth();
}

int32_t CMOOVAtom::GetHeight() const
{
    const CSTSDAtom* const descriptions = FindDescriptions(m_videoTracks);
    return descriptions == nullptr ? 0 : descriptions->GetHeight();
}

int32_t CMOOVAtom::GetVideoObjectType() const
{
    const CSTSDAtom* const descriptions = FindDescriptions(m_videoTracks);
    return descriptions == nullptr ? 0 : descriptions->GetObjectType();
}

// The duration of a track is in the units of the movie, so its timescale is the movie's and not that of the media.
double CMOOVAtom::GetFramesPerSecond() const
{
    if (m_videoTracks.empty())
        return 0;
    const CTRAKAtom& track = *m_videoTracks.front();
    const uint64_t duration = track.GetHeader()->GetDuration();
    return duration == 0 ? 0 : static_cast<double>(GetTimescale()) * track.GetSampleCount() / static_cast<double>(duration);
}

int32_t CMOOVAtom::GetChannels() const
{
    const CSTSDAtom* const descriptions = FindDescriptions(m_audioTracks);
    return descriptions == nullptr ? 0 : descriptions->GetChannels();
}

int32_t CMOOVAtom::GetBitDepth() const
{
    const CSTSDAtom* const descriptions = FindDescriptions(m_audioTracks);
    return descriptions == nullptr ? 0 : descriptions->GetSampleSize();
}

int32_t CMOOVAtom::GetSampleRate() const
{
    const CSTSDAtom* const descriptions = FindDescriptions(m_audioTracks);
    return descriptions == nullptr ? 0 : descriptions->GetSampleRate();
}

int32_t CMOOVAtom::GetAudioObjectType() const
{
    const CSTSDAtom* const descriptions = FindDescriptions(m_audioTracks);
    return descriptions == nullptr ? 0 : descriptions->GetObjectType();
}

uint32_t CMOOVAtom::GetAudioAverageBitRate() const
{
    const CSTSDAtom* const descriptions = FindDescriptions(m_audioTracks);
    return descriptions == nullptr ? 0 : descriptions->GetAverageBitRate();
}
