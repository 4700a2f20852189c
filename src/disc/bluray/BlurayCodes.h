#pragma once

#include <cstdint>

// The codes by which a disc says what a stream is, as clip information files and playlists use them alike.

enum class BlurayStreamKind
{
    None,
    Video,
    Audio,
    Graphics,
    Text,
};

// What a stream coding type says.
struct BlurayStreamCoding
{
    uint32_t Code;
    BlurayStreamKind Kind;
    // Whether a disc's entry with this code gives a stream. The dependent view of a 3D title has names and is not read.
    bool IsRead;
    const wchar_t* Name;
    const wchar_t* AltName;
    const wchar_t* ShortName;
    // The names of a sound with surround channels in the middle of the back, null where there is no such form.
    const wchar_t* ExtendedName = nullptr;
    const wchar_t* ExtendedShortName = nullptr;
};

// A frame rate as a fraction; 0 by 0 when it is not known.
struct BlurayFrameRate
{
    int32_t Numerator = 0;
    int32_t Denominator = 0;
};

struct BlurayVideoFormat
{
    int32_t Height = 0;  // in lines; 0 when it is not known
    bool IsInterlaced = false;
};

namespace BlurayCodes
{
// A code that no stream has gives the kind None and "UNKNOWN" for its names.
const BlurayStreamCoding& FindStreamCoding(uint32_t code);
// In Hz, 0 for a code that no rate has.
int32_t GetSampleRate(uint32_t code);
BlurayFrameRate GetFrameRate(uint32_t code);
BlurayVideoFormat GetVideoFormat(uint32_t code);
}
