#include "caller/output/CropText.h"

namespace
{
// Of 5. One rectangle dominates from there on.
constexpr double MinimumScore = 3;

std::string ToText(int number)
{
    return std::to_string(number);
}

std::string MakeVerdict(const CFilm& film, const CCrop& crop)
{
    if (crop.IsEmpty())
        return "do not crop: nothing was found\n";
    if (!IsSureCrop(film))
        return "do not crop: too little speaks for " + MakeCropFilter(crop) + "\n";
    return MakeCropFilter(crop) + "\n--video-crop=" + ToText(crop.GetWidth()) + "x" + ToText(crop.GetHeight()) + "+" +
           ToText(crop.Left) + "+" + ToText(crop.Top) + "\n";
}
}

bool IsSureCrop(const CFilm& film)
{
    return !GetCrop(film).IsEmpty() && film.GetNumber(BlackBarKeys::Score) >= MinimumScore;
}

std::string MakeCropFilter(const CCrop& crop)
{
    return "crop=" + ToText(crop.GetWidth()) + ":" + ToText(crop.GetHeight()) + ":" + ToText(crop.Left) + ":" + ToText(crop.Top);
}

std::string MakeCropText(const CFilm& film)
{
    const std::string report = film.GetText(BlackBarKeys::Report);
    return MakeVerdict(film, GetCrop(film)) + (report.empty() ? "" : "\n" + report + "\n");
}
