#include "mp4/quicktime/FindISO6709Point.h"

#include <algorithm>
#include <string_view>

namespace
{
bool BeginsLatitude(wchar_t character)
{
    return (character >= L'+' && character <= L'N') || character == L'S';
}

bool BeginsLongitude(wchar_t character)
{
    return (character >= L'+' && character <= L'E') || character == L'W';
}

bool BeginsAltitude(wchar_t character)
{
    return character == L'+' || character == L'-';
}

bool IsDigitOrPoint(wchar_t character)
{
    return (character >= L'0' && character <= L'9') || character == L'.';
}

// How many characters a part has that a text begins with, as many as it can have; 0 if the text does not begin with one.
size_t MeasurePart(std::wstring_view text, bool (*begins)(wchar_t))
{
    if (text.empty() || !begins(text.front()))
        return 0;
    const size_t size = static_cast<size_t>(std::find_if_not(text.begin() + 1, text.end(), IsDigitOrPoint) - text.begin());
    return size < 2 ? 0 : size;
}

ZVString Copy(std::wstring_view part)
{
    return {part.data(), static_cast<int32_t>(part.size())};
}

bool BeginsWithPoint(std::wstring_view text, ISO6709Point& point)
{
    // The latitude gives back digits until a longitude follows: a digit can be its first character too. Three of them are enough
    // for that, so this does not take long.
    for (size_t latitude = MeasurePart(text, BeginsLatitude); latitude >= 2; --latitude)
    {
        const std::wstring_view behind = text.substr(latitude);
        const size_t longitude = MeasurePart(behind, BeginsLongitude);
        if (longitude == 0)
            continue;
        const std::wstring_view end = behind.substr(longitude);
        point = {Copy(text.substr(0, latitude)), Copy(behind.substr(0, longitude)),
                 Copy(end.substr(0, MeasurePart(end, BeginsAltitude)))};
        return true;
    }
    return false;
}
}

bool FindISO6709Point(const ZVString& text, ISO6709Point& point)
{
    const std::wstring_view view = text.View();
    for (size_t start = 0; start < view.size(); ++start)
        if (BeginsWithPoint(view.substr(start), point))
            return true;
    return false;
}
