#pragma once

#include "core/string/ZVString.h"
#include "video/blackbars/ZVBlackBarVerdict.h"
#include "video/codec/CZVAVLibraries.h"

// The clock of a film, by which a report tells its times.
struct ZVFilmClock
{
    AVRational TimeBase;  // of the main stream
    int64_t Start;        // of the film, in that time base
};

// The text that tells the user of a finding. Its numbers have a full stop whatever the locale says.
namespace ZVBlackBarReport
{
// The whole report, with the aspect in which the picture is shown.
ZVString Write(const ZVBlackBarVerdict& verdict, double displayAspect, const CZVAVLibraries& codec, const ZVFilmClock& clock);

// A time stamp as hours, minutes and seconds since the start of the film.
ZVString GetTime(int64_t pts, const CZVAVLibraries& codec, const ZVFilmClock& clock);
}
