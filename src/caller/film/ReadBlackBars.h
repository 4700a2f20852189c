#pragma once

#include "caller/film/CFilm.h"

#include <filesystem>

// The keys under which a film has what is known of its black bars. The aspect ratio of the picture between them has a key of its own
// here, since the worker gives it the one that the whole frame has in its other results.
namespace BlackBarKeys
{
constexpr char Crop[] = "Video Crop";
constexpr char Report[] = "Video Black Bar Analysis Report";
constexpr char Aspect[] = "Video Crop Aspect Ratio";
constexpr char Score[] = "Video Black Bar Score";
}

// Adds what a result file tells about black bars to a film. False if the file is not there or is no result.
bool ReadBlackBars(const std::filesystem::path& file, CFilm& film);

// A rectangle in pixels.
struct CCrop
{
    int Left = 0;
    int Top = 0;
    int Right = 0;  // exclusive, as is
    int Bottom = 0;

    int GetWidth() const { return Right - Left; }
    int GetHeight() const { return Bottom - Top; }
    bool IsEmpty() const { return GetWidth() <= 0 || GetHeight() <= 0; }
};

// The picture between the black bars; empty when none was found.
CCrop GetCrop(const CFilm& film);
