#pragma once

#include "core/containers/ZVArray.h"
#include "core/containers/ZVMap.h"
#include "video/blackbars/sRectTracker.h"

// Counts the rectangles that were found in the frames of a film.
class ZVRectTrackers
{
public:
    // Counts the rectangle of one frame, whose time stamp may be unknown.
    void Add(const ZVRect& rect, int64_t pts);

    // The rectangles that were found often enough to mean something, in no order.
    ZVArray<sRectTracker> GetSeenOften() const;

private:
    using Map = ZVMap<ZVRect, const ZVRect&, sRectTracker, const sRectTracker&, true>;

    Map m_rects;
};
