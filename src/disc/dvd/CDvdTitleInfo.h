#pragma once

#include "core/containers/ZVArray.h"
#include "core/string/ZVString.h"

#include <cstdint>

class ZVByteSpan;

// What the information file of a DVD's title set (VTS_nn_0.IFO, or its copy VTS_nn_0.BUP) tells about the longest program chain,
// which is the film. Times are in milliseconds.
class CDvdTitleInfo
{
public:
    // The largest file that is read. Real ones have at most some hundred kilobytes.
    static constexpr int64_t MaximumSize = int64_t {4} << 20;

    // Reads a file. False, with nothing told, when it cannot be read, is too large, or has no program chain with a time; the log
    // has the reason.
    bool Load(const ZVString& path);
    // The same from the bytes of a file.
    bool Read(const ZVByteSpan& file);

    int64_t Duration = 0;
    // Where each program of the chain, which is a chapter, starts; in ascending order. Empty when the tables that tell it are
    // damaged.
    ZVArray<int64_t> Chapters;
};
