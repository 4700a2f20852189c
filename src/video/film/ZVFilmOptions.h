#pragma once

#include "video/film/ZVCodecLog.h"
#include "video/film/ZVFilmBudget.h"

#include <cstdarg>
#include <cstdint>

// How a film is opened and decoded. Whoever opens one says what they need of it, and the rest is saved.
struct ZVFilmOptions
{
    enum class Probing
    {
        Streams,  // reads on until the parameters of each stream are known
        Header,   // takes what the container's header says
    };

    // What the threads of a decoder share.
    enum class Threads
    {
        Frames,  // each decodes a frame of its own: fast, but the first one comes out late
        Slices,  // all work on one frame, where it has several slices
    };

    enum class Packets
    {
        OfAllStreams,
        OfDecodedStreams,  // the container leaves out what belongs to other streams
    };

    enum class LoopFilter
    {
        Run,
        Skip,  // faster, but the pixels come out wrong
    };

    enum class Memory
    {
        OfEachFrame,
        Shared,  // less memory and faster, but frames are written over each other; see ZVSharedPicture
    };

    // What becomes of the frames that the decoder of the main stream still keeps at the end of a place.
    enum class KeptFrames
    {
        LeaveOut,
        Fetch,
    };

    Probing Probe = Probing::Streams;
    Packets Read = Packets::OfAllStreams;
    LoopFilter Filter = LoopFilter::Run;
    Memory Frames = Memory::OfEachFrame;
    KeptFrames AtEnd = KeptFrames::LeaveOut;
    // The threads of each decoder; 0 leaves their number to the codec libraries.
    int32_t ThreadCount = 0;
    // A place of the film ends with the packet that brings out this many frames of the main stream.
    int32_t FramesPerPlace = INT32_MAX;
    // What the codec libraries call for each of their messages.
    void (*Log)(void* context, int level, const char* format, va_list arguments) = ZVCodecLog::Write;
    ZVFilmBudget::Limits Limits {};
};
