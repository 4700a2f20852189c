#pragma once

#include "contracts/IZVDllString.h"

#include <cstdint>

// What the player tells of one stream. The caller makes the record and the strings in it, which may be null when nobody asks for
// them; the order of the fields is fixed.
struct ZVStreamInfo
{
    static constexpr int32_t KindVideo = 0;
    static constexpr int32_t KindAudio = 1;

    // The player's own number of the stream.
    int64_t Stream = 0;
    // The title of the stream and its language, as the container tells them.
    IZVDllString* Title = nullptr;
    IZVDllString* Language = nullptr;
    // What the product calls the codec, without its profile: "H264", "AC-3".
    IZVDllString* Compression = nullptr;
    // The codec's name in the codec libraries.
    IZVDllString* Codec = nullptr;
    int32_t Kind = 0;
    union
    {
        int32_t Width = 0;  // of video: the coded size in pixels
        int32_t Channels;   // of audio
    };
    union
    {
        int32_t Height = 0;  // of video
        int32_t SampleRate;  // of audio, in samples a second
    };
    // Of audio: the bits of a sample.
    int32_t BitDepth = 0;
    // Of video: frames a second on average, 0 when that is not known.
    double Fps = 0;
    // Of video: by how many degrees its frames are to be turned clockwise: 0, 90, 180 or 270.
    int32_t Rotation = 0;
};
