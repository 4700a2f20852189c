#pragma once

#include "core/containers/ZVArray.h"
#include "video/blackbars/sRectTracker.h"

#include <cstdint>

// Where the picture of a film is inside its frames, by what was counted in them, and how sure that is.
class ZVBlackBarVerdict
{
public:
    // Weighs the rectangles that were counted, at least one of them, in any order. The aspect of a pixel is its width divided by
    // its height. Rectangles that differ by a few lines become one that holds them all.
    ZVBlackBarVerdict(const ZVArray<sRectTracker>& trackers, double pixelAspect);

    // From 1, no rectangle dominates, to 5, nearly all frames agree.
    int32_t GetScore() const { return m_score; }
    // The rectangle of the most frames; with score 1 the one that holds all rectangles.
    const ZVRect& GetResult() const { return m_result; }
    // What was weighed, in the order of the hits, most first. Of equal hits the rectangle that was found first stands first.
    const ZVArray<sRectTracker>& GetEntries() const { return m_entries; }
    // The share of an entry in all hits, in whole percent.
    int32_t GetPercent(const sRectTracker& entry) const;
    // How wide the picture in a rectangle is shown: width divided by height.
    double GetAspect(const ZVRect& rect) const;

private:
    void Sort();
    void Merge();
    int32_t WorkOutScore() const;
    bool IsCommon(const ZVRect& rect) const;

    ZVArray<sRectTracker> m_entries;
    double m_pixelAspect;
    int64_t m_total = 0;
    int32_t m_score = 0;
    ZVRect m_result;
};
