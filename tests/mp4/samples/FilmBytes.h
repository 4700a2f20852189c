#pragma once

#include "mp4/AtomBytes.h"

#include "mp4/movie/CMDATAtom.h"
#include "mp4/movie/CMOOVAtom.h"

#include <vector>

// Films as bytes, for tests of tracks and their tables.
namespace FilmBytes
{
using namespace AtomBytes;

// A table that begins with the count of its rows.
inline Bytes Table(const Bytes& type, const std::vector<uint64_t>& numbers, size_t rowLength = 1, int width = 4)
{
    Bytes rows;
    for (const uint64_t number : numbers)
        rows += Number(number, width);
    return FullAtom(type, Number(numbers.size() / rowLength, 4) + rows);
}

// First chunk, samples in each, description; and so on.
inline Bytes Chunks(const std::vector<uint64_t>& rows)
{
    return Table("stsc", rows, 3);
}

inline Bytes FixedSizes(uint32_t size, uint32_t count)
{
    return FullAtom("stsz", Number(size, 4) + Number(count, 4));
}

inline Bytes Sizes(const std::vector<uint64_t>& sizes)
{
    const Bytes table = Table("stsz", sizes);
    return FullAtom("stsz", Number(0, 4) + table.substr(12));
}

inline Bytes VideoEntry(const Bytes& type = "avc1", const Bytes& children = {})
{
    return Atom(type, Zeros(6) + Number(1, 2) + Bytes(16, 'v') + Number(640, 2) + Number(480, 2) + Number(0x480000, 4) +
                          Number(0x480000, 4) + Zeros(4) + Number(1, 2) + Bytes(32, 'n') + Number(24, 2) + Number(0xffff, 2) +
                          children);
}

// Two channels of 16 bits at 48 kHz. What is behind the common part is the caller's.
inline Bytes SoundEntry(const Bytes& type = "mp4a", const Bytes& end = {}, int version = 0)
{
    return Atom(type, Zeros(6) + Number(1, 2) + Number(static_cast<uint64_t>(version), 2) + Zeros(6) + Number(2, 2) +
                          Number(16, 2) + Zeros(4) + Number(48000, 2) + Number(0x8000, 2) + end);
}

inline Bytes Descriptions(const std::vector<Bytes>& entries)
{
    Bytes body = Number(entries.size(), 4);
    for (const Bytes& entry : entries)
        body += entry;
    return FullAtom("stsd", body);
}

// The tables of a track, each of which a test may replace.
struct Tables
{
    Bytes Entries = Descriptions({VideoEntry()});
    Bytes Times = Table("stts", {});
    Bytes SamplesOfChunks = Chunks({1, 1, 1});
    Bytes SampleSizes = FixedSizes(1, 1);
    Bytes Offsets = Table("stco", {0});
    Bytes Others = {};

    Bytes Make() const { return Atom("stbl", Entries + Times + SamplesOfChunks + SampleSizes + Offsets + Others); }
};

inline Bytes Track(const Bytes& handler, const Bytes& tables, uint32_t duration = 0)
{
    const Bytes header = FullAtom("tkhd", Zeros(8) + Number(1, 4) + Zeros(4) + Number(duration, 4) + Zeros(60));
    const Bytes mediaHeader = FullAtom("mdhd", Zeros(8) + Number(1000, 4) + Number(2500, 4) + Zeros(4));
    return Atom("trak",
                header + Atom("mdia", mediaHeader + FullAtom("hdlr", "mhlr" + handler + Zeros(12)) + Atom("minf", tables)));
}

// A movie of 600 units a second, of 1200 units.
inline Bytes Movie(const Bytes& tracks)
{
    return Atom("moov", FullAtom("mvhd", Zeros(8) + Number(600, 4) + Number(1200, 4) + Zeros(80)) + tracks);
}

// A file that begins with its movie, and that is verified with all its mdat atoms.
struct Film : Tree
{
    explicit Film(const Bytes& bytes, bool checkOverlap = false) : Tree(bytes)
    {
        for (const auto& root : Roots)
            if (root->GetType() == FourCC("mdat"))
                Mdats.Add(static_cast<CMDATAtom*>(root.get()));
        Verify(checkOverlap);
    }

    void Verify(bool checkOverlap)
    {
        try
        {
            Roots.front()->Verify(Mdats, checkOverlap);
        }
        catch (Exception* exception)
        {
            const std::unique_ptr<Exception> owner(exception);
            Message = owner->Message;
        }
    }

    CMOOVAtom& GetMovie() const { return *Find<CMOOVAtom>(); }

    CMDATList Mdats;
};
}
