#include "video/film/ZVFilmAspect.h"

#include <algorithm>
#include <iterator>

namespace
{
// In these containers the pixel aspect of the container is to be trusted more than that of the frames.
constexpr const wchar_t* ContainersWithAspect[] = {L"mkv", L"webm", L"mp4", L"mov", L"m4v"};

bool IsPositive(const AVRational& value)
{
    return value.num > 0 && value.den > 0;
}
}

double ZVFilmAspect::GetPixelAspect(const AVStream& stream, const AVRational& frameAspect, const ZVString& extension)
{
    const bool isContainerFirst = std::ranges::find(ContainersWithAspect, extension.View()) != std::end(ContainersWithAspect);
    const AVRational& first = isContainerFirst ? stream.sample_aspect_ratio : frameAspect;
    const AVRational& second = isContainerFirst ? frameAspect : stream.sample_aspect_ratio;
    if (IsPositive(first))
        return av_q2d(first);
    return IsPositive(second) ? av_q2d(second) : 1.0;
}

double ZVFilmAspect::GetDisplayAspect(const AVStream& stream, double pixelAspect)
{
    const AVCodecParameters& parameters = *stream.codecpar;
    if (parameters.width < 1 || parameters.height < 1)
        return 0;
    return static_cast<double>(parameters.width) / parameters.height * pixelAspect;
}

void ZVFilmAspect::Write(ZVPropertyMap& properties, double aspect)
{
    if (aspect > 0)
        properties.SetString(Property, ZVString::FromDouble(aspect, 2));
}
