#include "video/blackbars/ZVBlackBarVerdict.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace
{
// Sides of two rectangles that are at most so many pixels apart are the same border, found at slightly different places.
constexpr int32_t MergeDistance = 8;

// The aspects in which films are made.
constexpr double CommonAspects[] = {1.333, 1.37, 1.667, 1.778, 1.85, 2.35, 2.39, 2.4};
constexpr double CommonTolerance = 0.015;

constexpr int32_t LowestScore = 1;

// What a score asks for; the first row that is met tells the score. The last asks for nothing.
struct ScoreRule
{
    int32_t MinimumTop;   // share of the first entry, in percent
    int32_t MaximumNext;  // share of the second, in percent
    bool MustBeCommon;    // the aspect of the first entry
    int32_t Score;
};

constexpr int32_t Any = 100;

// clang-format off
constexpr ScoreRule ScoreRules[] = {
    {90, Any, false, 5},
    {80,   4, false, 5},
    {80, Any, true,  5},
    {80, Any, false, 4},
    {60,  10, false, 4},
    {60,  15, true,  4},
    {60, Any, false, 3},
    {50,  10, true,  3},
    {50, Any, false, 2},
    {40, Any, false, 2},
    { 0, Any, true,  2},
    { 0, Any, false, LowestScore},
};
// clang-format on

// The order of the entries. It is one for any two of them, so that a film always gets the same report.
bool StandsBefore(const sRectTracker& left, const sRectTracker& right)
{
    const auto key = [](const sRectTracker& tracker)
    { return std::tuple(-tracker.Hits, tracker.FirstPts == AV_NOPTS_VALUE, tracker.FirstPts, tracker.Rect); };
    return key(left) < key(right);
}
}

ZVBlackBarVerdict::ZVBlackBarVerdict(const ZVArray<sRectTracker>& trackers, double pixelAspect)
    : m_entries(trackers), m_pixelAspect(pixelAspect)
{
    for (const sRectTracker& entry : m_entries)
        m_total += entry.Hits;
    Sort();
    Merge();
    Sort();
    m_score = WorkOutScore();
    m_result = m_entries[0].Rect;
    if (m_score == LowestScore)
        for (const sRectTracker& entry : m_entries)
            m_result.Unite(entry.Rect);
}

void ZVBlackBarVerdict::Sort()
{
    std::sort(m_entries.begin(), m_entries.end(), StandsBefore);
}

// An entry takes up those after it that are near, one by one, and grows with each: what is near is judged by its new size.
void ZVBlackBarVerdict::Merge()
{
    for (int32_t index = 0; index < m_entries.GetCount(); ++index)
        for (int32_t other = index + 1; other < m_entries.GetCount();)
        {
            sRectTracker& entry = m_entries[index];
            if (!entry.Rect.IsNear(m_entries[other].Rect, MergeDistance))
            {
                ++other;
                continue;
            }
            entry.Rect.Unite(m_entries[other].Rect);
            entry.Hits += m_entries[other].Hits;
            m_entries.RemoveAt(other);
        }
}

int32_t ZVBlackBarVerdict::WorkOutScore() const
{
    const int32_t top = GetPercent(m_entries[0]);
    const int32_t next = m_entries.GetCount() > 1 ? GetPercent(m_entries[1]) : 0;
    const bool isCommon = IsCommon(m_entries[0].Rect);
    for (const ScoreRule& rule : ScoreRules)
        if (top >= rule.MinimumTop && next <= rule.MaximumNext && (isCommon || !rule.MustBeCommon))
            return rule.Score;
    return LowestScore;
}

bool ZVBlackBarVerdict::IsCommon(const ZVRect& rect) const
{
    const double aspect = GetAspect(rect);
    return std::ranges::any_of(CommonAspects, [aspect](double common) { return std::abs(aspect - common) < CommonTolerance; });
}

int32_t ZVBlackBarVerdict::GetPercent(const sRectTracker& entry) const
{
    return static_cast<int32_t>(std::lround(entry.Hits * 100.0 / static_cast<double>(m_total)));
}

double ZVBlackBarVerdict::GetAspect(const ZVRect& rect) const
{
    return static_cast<double>(rect.GetWidth()) / static_cast<double>(std::max<int64_t>(rect.GetHeight(), 1)) * m_pixelAspect;
}
