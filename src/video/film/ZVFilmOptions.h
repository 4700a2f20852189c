#pragma once

#include "video/film/ZVFilmBudget.h"

#include <cstdint>

// How a film is opened and decoded. Whoever opens one says what they need of it, and the rest is saved.
struct ZVFilmOptions
{
    enum class Probing
    {
        Streams,  // reads on until the parameters of each stream are known
        Header,   // takes what the container's header says
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

    Probing Probe = Probing::Streams;
    Packets Read = Packets::OfAllStreams;
    LoopFilter Filter = LoopFilter::Run;
    Memory Frames = Memory::OfEachFrame;
    // The threads of each decoder; 0 leaves their number to the codec libraries.
    int32_t ThreadCount = 0;
    // A place of the film ends with the packet that brings out this many frames of the main stream.
    int32_t FramesPerPlace = INT32_MAX;
    ZVFilmBudget::Limits Limits {};
};
