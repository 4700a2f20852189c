#pragma once

#include <cstdint>

// What a task reaches besides what every process needs. Several of them are joined with "|".
enum class ZVTaskNeeds : uint8_t
{
    Nothing = 0,
    ReadsFilm = 1,        // the film that parameter 0 names, with the folder, the disc or the recording that it is in
    ReadsFile = 2,        // the file that parameter 0 names
    WritesResult = 4,     // the text that parameter 1 names, with its folders
    WritesCover = 8,      // a cover in the folder for temporary files, which the result names
    WritesPicture = 16,   // the picture and the metadata that parameters 1 and 2 name, by way of the folder for temporary files
    AsksDisplay = 32,     // the X server
    ChangesSources = 64,  // the folder of the product's sources
};

constexpr ZVTaskNeeds operator|(ZVTaskNeeds left, ZVTaskNeeds right)
{
    return static_cast<ZVTaskNeeds>(static_cast<uint8_t>(left) | static_cast<uint8_t>(right));
}

// Whether a task needs something.
constexpr bool Needs(ZVTaskNeeds needs, ZVTaskNeeds one)
{
    return (static_cast<uint8_t>(needs) & static_cast<uint8_t>(one)) != 0;
}
