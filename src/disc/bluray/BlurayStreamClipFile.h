#pragma once

#include "core/containers/ZVOwnedPtrMap.h"
#include "disc/bluray/BDFile.h"
#include "disc/bluray/BlurayStream.h"

#include <cstdint>

class ZVByteSpan;

// The streams of a disc by their PID, owned.
using BlurayStreamMap = ZVOwnedPtrMap<uint16_t, uint16_t, BlurayStream>;

// The clip information of a transport stream, a .clpi file: which streams its first program has.
class BlurayStreamClipFile : public BDFile
{
public:
    using BDFile::BDFile;

    // Reads the file, anew each time. Scanned tells afterwards whether it is one; damaged parts of it give fewer streams.
    void Scan();
    // The same for the bytes of such a file.
    void Scan(const ZVByteSpan& file);

    ZVString FileType;  // the tag that the file begins with
    bool Scanned = false;
    BlurayStreamMap Streams;

private:
    void ReadProgram(const ZVByteSpan& program);
};
