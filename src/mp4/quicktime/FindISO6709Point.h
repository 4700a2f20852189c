#pragma once

#include "core/string/ZVString.h"

// A place on Earth as ISO 6709 writes it, "+48.8577+002.295+035/": each part with its sign.
struct ISO6709Point
{
    ZVString Latitude;
    ZVString Longitude;
    ZVString Altitude;  // may be empty
};

// Finds the first place in a text, as the regular expression "([+-NS][0-9.]+)([+-EW][0-9.]+)([+-][0-9.]+)?" finds it, whatever is
// around it. Its ranges reach from "+" to "N" and from "+" to "E", so that a letter, or even a digit, may stand for a sign. False,
// with the point as it was, if there is none.
bool FindISO6709Point(const ZVString& text, ISO6709Point& point);
