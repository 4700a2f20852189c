#include "caller/film/ReadTime.h"

#include <charconv>
#include <cmath>

std::optional<int64_t> ReadTime(const std::string& text)
{
    // Far beyond every film, and the milliseconds still fit.
    constexpr double MaximumSeconds = 1e9;
    double seconds = 0;
    const char* place = text.data();
    const char* const end = place + text.size();
    for (int part = 0; part < 3; ++part)
    {
        double number = 0;
        const auto [after, error] = std::from_chars(place, end, number, std::chars_format::fixed);
        const bool isLast = after == end;
        const bool hasDecimals = std::string(place, after).find('.') != std::string::npos;
        if (error != std::errc() || *place == '-' || !(number < MaximumSeconds) || (part > 0 && number >= 60) ||
            (hasDecimals && !isLast))
            return std::nullopt;
        seconds = seconds * 60 + number;
        if (isLast)
            return std::llround(seconds * 1000);
        if (*after != ':')
            return std::nullopt;
        place = after + 1;
    }
    return std::nullopt;
}
