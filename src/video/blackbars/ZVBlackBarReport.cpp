#include "video/blackbars/ZVBlackBarReport.h"

#include "core/string/ZVNumberText.h"

namespace
{
// From this score on, what was found in less than half a percent of the frames is left out.
constexpr int32_t SureScore = 3;

ZVString GetAspectText(double aspect)
{
    return ZVString::FromDouble(aspect, 2, false, 0, ZVNumberText::AlwaysPoint);
}
}

ZVString ZVBlackBarReport::Write(const ZVBlackBarVerdict& verdict, double displayAspect, const CZVAVLibraries& codec,
                                 const ZVFilmClock& clock)
{
    const bool isSure = verdict.GetScore() >= SureScore;
    ZVString lines;
    for (const sRectTracker& entry : verdict.GetEntries())
        if (!isSure || verdict.GetPercent(entry) != 0)
            lines += ZVFormat(L"%s (%s), %d%% (%d samples), first at %s\n", entry.Rect.GetText(L"x"),
                              GetAspectText(verdict.GetAspect(entry.Rect)), verdict.GetPercent(entry), entry.Hits,
                              GetTime(entry.FirstPts, codec, clock));
    if (isSure)
        lines += L"\nHits <1% have been skipped due to a high accuracy score.";
    return ZVFormat(L"Score: %d\nResult: %s (%s)\n\n%s", verdict.GetScore(), verdict.GetResult().GetText(L"x"),
                    GetAspectText(displayAspect), lines);
}

ZVString ZVBlackBarReport::GetTime(int64_t pts, const CZVAVLibraries& codec, const ZVFilmClock& clock)
{
    if (pts == AV_NOPTS_VALUE)
        return L"<unknown>";
    // A file may tell any time and any start, so the difference may wrap.
    const auto sinceStart = static_cast<int64_t>(static_cast<uint64_t>(pts) - static_cast<uint64_t>(clock.Start));
    const int64_t seconds = codec.av_rescale(sinceStart, clock.TimeBase.num, clock.TimeBase.den);
    return ZVFormat(L"%02d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
}
