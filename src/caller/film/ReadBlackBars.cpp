#include "caller/film/ReadBlackBars.h"

#include "caller/film/ReadResult.h"

#include <cstdio>

namespace
{
// The key of the worker's result.
constexpr char AspectOfResult[] = "Aspect Ratio";
}

bool ReadBlackBars(const std::filesystem::path& file, CFilm& film)
{
    nlohmann::json values = nlohmann::json::object();
    if (!ReadResult(file, values))
        return false;
    for (const char* const key : {BlackBarKeys::Crop, BlackBarKeys::Report})
        if (values.contains(key))
            film.Values[key] = values[key];
    if (values.contains(AspectOfResult) && values[AspectOfResult].is_number())
        film.Values[BlackBarKeys::Aspect] = values[AspectOfResult];
    // The report begins with the score.
    int score = 0;
    if (sscanf(film.GetText(BlackBarKeys::Report).c_str(), "Score: %d", &score) == 1)
        film.Values[BlackBarKeys::Score] = score;
    return true;
}

CCrop GetCrop(const CFilm& film)
{
    CCrop crop;
    const bool isRead =
        sscanf(film.GetText(BlackBarKeys::Crop).c_str(), "%dx%dx%dx%d", &crop.Left, &crop.Top, &crop.Right, &crop.Bottom) == 4;
    return isRead ? crop : CCrop {};
}
