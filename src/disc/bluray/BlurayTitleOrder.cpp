// The order of a disc's titles.

#include "disc/bluray/BDROM.h"

#include <algorithm>
#include <cstdlib>
#include <cwchar>

namespace
{
constexpr double SecondsPerMinute = 60.0;

// Titles of that many minutes may be the episodes of a series.
constexpr int64_t ShortestEpisode = 20;
constexpr int64_t LongestEpisode = 60;

// What two lengths differ by, in per cent of the longer, at which titles count as different and as not nearly equal.
constexpr int64_t EpisodeDifference = 20;
constexpr int64_t EqualDifference = 10;

template <class Value>
int32_t Sign(Value first, Value second)
{
    return first < second ? -1 : first > second ? 1 : 0;
}

int64_t WholeSeconds(const BlurayPlaylist& playlist)
{
    return static_cast<int64_t>(playlist.GetTotalLength());
}

int64_t WholeMinutes(const BlurayPlaylist& playlist)
{
    return static_cast<int64_t>(playlist.GetTotalLength() / SecondsPerMinute);
}

// The comparators: each puts one title first, or neither.

int32_t LongerFirst(const BlurayPlaylist& first, const BlurayPlaylist& second)
{
    return Sign(WholeSeconds(second), WholeSeconds(first));
}

int32_t MoreAudioFirst(const BlurayPlaylist& first, const BlurayPlaylist& second)
{
    return Sign(second.AudioStreamCount, first.AudioStreamCount);
}

int32_t ByName(const BlurayPlaylist& first, const BlurayPlaylist& second)
{
    return Sign(wcscmp(first.Name, second.Name), 0);
}

// What the rules look at.
struct Pair
{
    Pair(const BlurayPlaylist& first, const BlurayPlaylist& second)
        : HasClips(!first.Clips.IsEmpty() || !second.Clips.IsEmpty()),
          HasEqualAudio(first.AudioStreamCount == second.AudioStreamCount),
          LongerMinutes(std::max(WholeMinutes(first), WholeMinutes(second)))
    {
        const auto difference = static_cast<double>(std::abs(WholeMinutes(first) - WholeMinutes(second)));
        if (LongerMinutes > 0)
            DifferencePercent = static_cast<int64_t>(difference * 100.0 / static_cast<double>(LongerMinutes));
    }

    bool MayBeEpisodes() const { return LongerMinutes >= ShortestEpisode && LongerMinutes <= LongestEpisode; }

    bool HasClips;
    bool HasEqualAudio;
    int64_t LongerMinutes;
    int64_t DifferencePercent = 0;
};

using Comparator = int32_t (*)(const BlurayPlaylist& first, const BlurayPlaylist& second);

// A rule applies when its condition holds, and then its comparators decide, the first that puts one title first.
struct Rule
{
    bool (*Applies)(const Pair& pair);
    Comparator Comparators[3];
};

// The first rule that applies decides. Episodes of a series stay in their order although one is a little longer than another.
constexpr Rule Rules[] = {
    {[](const Pair& pair) { return !pair.HasClips; },                                                                           {MoreAudioFirst, ByName, nullptr}    },
    {[](const Pair& pair) { return pair.LongerMinutes < 1; },                                                                   {MoreAudioFirst, LongerFirst, ByName}},
    {[](const Pair& pair) { return pair.MayBeEpisodes() && pair.DifferencePercent < EpisodeDifference && pair.HasEqualAudio; },
     {ByName, nullptr, nullptr}                                                                                                                                      },
    {[](const Pair& pair) { return pair.MayBeEpisodes() && pair.DifferencePercent >= EpisodeDifference; },
     {LongerFirst, MoreAudioFirst, ByName}                                                                                                                           },
    {[](const Pair& pair) { return pair.DifferencePercent < EqualDifference; },                                                 {MoreAudioFirst, LongerFirst, ByName}},
    {[](const Pair&) { return true; },                                                                                          {LongerFirst, MoreAudioFirst, ByName}},
};
}

int32_t BDROM::ComparePlaylists(const BlurayPlaylist& first, const BlurayPlaylist& second)
{
    const Pair pair(first, second);
    for (const Rule& rule : Rules)
    {
        if (!rule.Applies(pair))
            continue;
        for (const Comparator comparator : rule.Comparators)
        {
            const int32_t order = comparator == nullptr ? 0 : comparator(first, second);
            if (order != 0)
                return order;
        }
        return 0;
    }
    return 0;
}
