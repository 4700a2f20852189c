#pragma once

#include "video/codec/ZVCodecHeaders.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

// What the codec libraries return when the machine has no memory or no threads left, which is no fact about a film.
inline constexpr int ShortageErrors[] = {AVERROR(ENOMEM), AVERROR(EAGAIN)};

// Whether a result of an operation that starts something means that.
inline bool IsShortage(int result)
{
    return std::find(std::begin(ShortageErrors), std::end(ShortageErrors), result) != std::end(ShortageErrors);
}
