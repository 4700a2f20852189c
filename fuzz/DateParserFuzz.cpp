// Reads any text as a date, writes the result and reads that again, and uses the text as the pattern of a date. The input is
// UTF-8.

#include "Require.h"
#include "core/date/ZVDate.h"
#include "core/date/ZVDatePrecision.h"
#include "core/date/ZVDateText.h"
#include "siblings/tools/date/CDateServices.h"

#include <cmath>
#include <cstdint>
#include <string>

namespace
{
void WriteAndReadBack(double value)
{
    CDateServices services;
    const ZVDatePrecision precision = ZVDate::GetPrecision(value);
    const int32_t year = ZVDate::ToFields(value).GetCalendarYear();
    Require(precision != ZVDatePrecision::None);
    Require(year >= 1 && year <= 9999);
    const double read = services.Parse(ZVDate::ToISO(value, false, true), 0);
    Require(ZVDate::GetPrecision(read) == precision);
    // Seconds are cut, and the first second of a day is its midnight.
    Require(std::fabs(read - value) < 1.0 / 86400.0 + ZVDate::Tolerance);
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ZVString text;
    text.SetFromUTF8(reinterpret_cast<const char*>(data), static_cast<int32_t>(size));
    CDateServices services;
    const double value = services.Parse(text, 0);
    for (const double date : {value, services.Parse(text, IZVDateServices::LocalTime)})
        if (date != 0.0)
            WriteAndReadBack(date);

    // No word or code writes more characters than this.
    constexpr int64_t LongestForm = 64;
    for (int32_t flags = 0; flags <= (ZVDate::CodesOnly | ZVDate::EnglishNames); flags += ZVDate::CodesOnly)
        Require(ZVDate::Format(value != 0.0 ? value : 45418.25, text, flags).GetLength() <= text.GetLength() * LongestForm);
    return 0;
}
