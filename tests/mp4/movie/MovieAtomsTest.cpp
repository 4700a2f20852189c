#include "mp4/AtomBytes.h"

#include "mp4/movie/CHDLRAtom.h"
#include "mp4/movie/CTKHDAtom.h"

#include <gtest/gtest.h>

using namespace AtomBytes;

namespace
{
// Fields of a given width, each with a value that no other has.
Bytes Distinct(size_t count)
{
    Bytes bytes;
    for (size_t index = 0; index < count; ++index)
        bytes += static_cast<char>(0x31 + index % 0x40);
    return bytes;
}

Bytes MovieHeader(int version, const Bytes& reserved = Zeros(10))
{
    const int width = version == 0 ? 4 : 8;
    return FullAtom("mvhd",
                    Number(1, width) + Number(2, width) + Number(600, 4) + Number(0x8070605, width) + Distinct(6) + reserved +
                        Distinct(64),
                    version);
}

Bytes TrackHeader(int version, const std::vector<Bytes>& reserved = {Zeros(4), Zeros(8), Zeros(2)})
{
    const int width = version == 0 ? 4 : 8;
    return FullAtom("tkhd",
                    Number(1, width) + Number(2, width) + Number(7, 4) + reserved[0] + Number(900, width) + reserved[1] +
                        Distinct(6) + reserved[2] + Distinct(44),
                    version, 7);
}

Bytes MediaHeader(int version, const Bytes& quality = Zeros(2))
{
    const int width = version == 0 ? 4 : 8;
    return FullAtom("mdhd",
                    Distinct(static_cast<size_t>(2 * width)) + Number(44100, 4) + Number(88200, width) + "\x55\xc4" + quality,
                    version);
}

Bytes Brands(size_t count)
{
    return Atom("ftyp", "isom" + Number(512, 4) + Distinct(4 * count));
}

const Bytes URL = FullAtom("url ", {}, 0, 1);
const Bytes Copyright = FullAtom("cprt", Number(0x55c4, 2) + "(c) me" + Zeros(1));

struct Row
{
    const char* Name;
    Bytes File;
    const wchar_t* Message = L"";
};

// clang-format off
std::vector<Row> Rows()
{
    return {
        {"ftyp without brands", Brands(0)},
        {"ftyp with 100 brands", Brands(100)},
        {"ftyp with 101 brands", Brands(101), L"ftyp compatible brands out of range"},
        {"ftyp with half a brand", Atom("ftyp", Distinct(10)), L"In FTYP, non zero size"},
        {"mvhd 0", MovieHeader(0)},
        {"mvhd 1", MovieHeader(1)},
        {"mvhd with a reserved byte", MovieHeader(0, Zeros(9) + "x"), L"SkipZero error"},
        {"tkhd 0", TrackHeader(0)},
        {"tkhd 3", TrackHeader(3)},
        {"tkhd first reserved", TrackHeader(0, {Number(1, 4), Zeros(8), Zeros(2)}), L"SkipZero error"},
        {"mdhd 0", MediaHeader(0)},
        {"mdhd 1", MediaHeader(1)},
        {"mdhd with quality", MediaHeader(0, Number(1, 2)), L"SkipZero error"},
        {"hdlr without a name", FullAtom("hdlr", Distinct(20))},
        {"hdlr with a counted name", FullAtom("hdlr", Distinct(20) + "\x03" + "abc")},
        {"hdlr too short", FullAtom("hdlr", Distinct(19))},
        {"hdlr without a version", Atom("hdlr", "abc")},
        {"dref with two", FullAtom("dref", Number(2, 4) + URL + FullAtom("urn ", Bytes("name\0http://a\0", 14)))},
        {"dref of uncounted ones", FullAtom("dref", Number(0, 4) + URL + URL)},
        {"dref with fewer", FullAtom("dref", Number(3, 4) + URL + URL),
         L"CContainerAtom::ReadChildren didn't read the requested atoms"},
        {"elst 0", FullAtom("elst", Number(2, 4) + Distinct(24))},
        {"elst 1", FullAtom("elst", Number(2, 4) + Distinct(40), 1)},
        {"tref", Atom("tref", Atom("hint", Distinct(8)) + Atom("sync") + Atom("mpod", Distinct(4)))},
        {"udta with an end", Atom("udta", Copyright + Zeros(4))},
        {"cprt without a language", Atom("udta", FullAtom("cprt", "x"))},
        {"cprt elsewhere", Atom("edts", Copyright)},
        {"uuid", Atom("uuid", Distinct(20))},
        {"uuid too short", Atom("uuid", Distinct(15)), L"uuid atom must have larger size"},
    };
}
// clang-format on
}

TEST(MovieAtoms, AreWrittenAsTheyWereReadOrRefused)
{
    for (const Row& row : Rows())
    {
        SCOPED_TRACE(row.Name);
        const Tree tree(row.File);
        EXPECT_EQ(tree.Message, row.Message);
        EXPECT_EQ(tree.Write(), tree.Message.IsEmpty() ? row.File : Bytes());
    }
}

TEST(MovieAtoms, AreWholeWhenTheyAreNew)
{
    EXPECT_EQ(WriteAll(std::vector {CHDLRAtom::MakeNew().get()}), FullAtom("hdlr", Zeros(4) + "mdir" + Zeros(12) + Zeros(2)));
    const Bytes track = WriteAll(std::vector {CTKHDAtom::MakeNew().get()});
    const Bytes times = track.substr(12, 8);
    EXPECT_EQ(times.substr(0, 4), times.substr(4));
    EXPECT_GT(times.substr(0, 4), Number(3'800'000'000, 4)) << "June 2024, in seconds since 1904";
    EXPECT_EQ(track, FullAtom("tkhd",
                              times + Number(1, 4) + Zeros(4 + 4 + 8 + 2 + 2) + Number(256, 2) + Zeros(2) + Number(0x10000, 4) +
                                  Zeros(12) + Number(0x10000, 4) + Zeros(12) + Number(0x40000000, 4) + Zeros(8),
                              0, 7));
}
