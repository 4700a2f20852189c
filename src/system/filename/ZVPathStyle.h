#pragma once

#include <cstdint>

// The ways in which a path is written.
enum class ZVPathStyle : int32_t
{
    Unknown = 0,         // taken from the text: forward slashes if it has a "/", otherwise backslashes
    Native = 1,          // the platform's own, with backslashes on Windows builds
    ForwardSlashes = 2,  // the style of everything that reaches the file system
    Backslashes = 3,
    URLPath = 4,  // the path of a URL, without percent-escapes
    FileURL = 5,  // "file://…" with percent-escapes
};
