#include "video/blackbars/ZVRectTrackers.h"

namespace
{
// What only one or two frames say is chance.
constexpr int32_t MinimumHits = 3;
}

void ZVRectTrackers::Add(const ZVRect& rect, int64_t pts)
{
    sRectTracker& tracker = m_rects[rect];
    tracker.Rect = rect;
    ++tracker.Hits;
    if (tracker.FirstPts == AV_NOPTS_VALUE)
        tracker.FirstPts = pts;
}

ZVArray<sRectTracker> ZVRectTrackers::GetSeenOften() const
{
    ZVArray<sRectTracker> result;
    for (const Map::Node& node : m_rects)
        if (node.Value.Hits >= MinimumHits)
            result.Add(node.Value);
    return result;
}
