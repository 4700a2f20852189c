#include "caller/output/Messages.h"

#include "caller/film/CFilm.h"

#include <cstdint>
#include <iostream>
#include <string_view>

namespace
{
// Characters that steer a terminal, as bytes of UTF-8: what they begin with, and the range of their last byte.
struct ControlRange
{
    std::string_view Start;
    char First;
    char Last;
};

constexpr ControlRange ControlRanges[] = {
    {"\xc2",     '\x80', '\x9f'}, // the control characters above ASCII
    {"\xe2\x80", '\xaa', '\xae'}, // what turns the direction of a line
    {"\xe2\x81", '\xa6', '\xa9'},
};
}

void SayError(const std::string& text)
{
    std::cerr << "zivora: " + MakePlain(ToUTF8(text)) + "\n";
}

void SayFailure(const std::string& path, const std::string& reason)
{
    SayError(path + ": " + reason);
}

std::string MakePlain(const std::string& text)
{
    std::string plain = text;
    for (char& letter : plain)
        if (static_cast<uint8_t>(letter) < 0x20 || letter == 0x7f)
            letter = ' ';
    for (const ControlRange& range : ControlRanges)
        for (size_t place = 0; (place = plain.find(range.Start, place)) != std::string::npos; ++place)
        {
            const size_t length = range.Start.size() + 1;
            if (place + length <= plain.size() && plain[place + length - 1] >= range.First &&
                plain[place + length - 1] <= range.Last)
                plain.replace(place, length, 1, ' ');
        }
    return plain;
}
