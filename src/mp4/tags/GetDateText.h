#pragma once

#include "core/string/ZVString.h"

// A date as the text that goes into a file. A number of days becomes ISO 8601, with as much of the date as is known, and 0 the empty
// text; any other text stays as it is. A number that is small enough for a year is one.
ZVString GetDateText(const ZVString& value);

// The year that such a text begins with, or all of it if it is no ISO 8601.
ZVString GetYearText(const ZVString& date);
