#include "caller/output/Units.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace
{
template <class... Values>
std::string Format(const char* format, Values... values)
{
    std::array<char, 200> text;
    snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

struct SizeUnit
{
    double Bytes;
    const char* Name;
};

constexpr SizeUnit SizeUnits[] = {
    {1e12, "TB"},
    {1e9,  "GB"},
    {1e6,  "MB"},
    {1e3,  "kB"},
};
}

std::string MakeLength(double seconds)
{
    const auto whole = std::llround(seconds);
    return whole > 0 ? Format("%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60) : "";
}

std::string MakeSize(double bytes)
{
    for (const SizeUnit& unit : SizeUnits)
        if (bytes >= unit.Bytes)
            return Format("%.1f %s", bytes / unit.Bytes, unit.Name);
    return bytes > 0 ? Format("%.0f bytes", bytes) : "";
}
