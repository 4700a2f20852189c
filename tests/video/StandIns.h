#pragma once

#include "contracts/ZVStreamInfo.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

class IZVImage;

// A film as the player shows it that this program is linked with in the place of the real one. Its frames are 3 by 2 pixels.
struct StandInFilm
{
    bool HasPlayer = true;
    bool Opens = true;
    bool Plays = true;
    int64_t Duration = 0;
    int32_t VideoStream = 0;
    // The frames of each Play, one after the other, by the value that all their bytes have; 0 is a blank frame.
    std::vector<std::vector<uint8_t>> Attempts = {};
    bool Ends = false;    // the end of the stream follows the frames
    bool IsLate = false;  // all of that comes only when the player is told to stop
    int32_t AudioStream = -1;
    std::map<std::string, const wchar_t*> Tags = {};
    std::vector<std::pair<const wchar_t*, int64_t>> Chapters = {};
};

// The player and the image library. A picture is saved as a text, and only as "png": "3x2 of 7, turned 90, alpha 255". A file that can
// be read as a picture begins with "picture 640x480".
namespace StandIns
{
// Sets what the next player shows, and forgets the calls.
void Show(const StandInFilm& film);
// What was asked of players since then: "Open /film.mkv", "Seek 5000", "Play", "Stop", "Close", "Release".
std::vector<std::string> GetCalls();
// The value of the frame that a picture shows.
int GetValue(const IZVImage& image);
}
