#include "mp4/samples/FilmBytes.h"

#include "mp4/samples/CSTBLAtom.h"

#include <gtest/gtest.h>

using namespace FilmBytes;

namespace
{
// A descriptor with its length in one byte.
Bytes Tagged(int tag, const Bytes& body)
{
    return Number(static_cast<uint64_t>(tag), 1) + Number(body.size(), 1) + body;
}

// AAC at 128 kbit/s, at most 160, and two bytes for the decoder.
const Bytes DecoderSpecific = Tagged(5, "\x11\x90");
const Bytes DecoderConfig = Number(0x40, 1) + Number(0x15001800, 4) + Number(160000, 4) + Number(128000, 4) + DecoderSpecific;
const Bytes PlainDescriptor = Tagged(3, Number(1, 2) + Zeros(1) + Tagged(4, DecoderConfig) + Tagged(6, "\x02"));

Bytes Esds(const Bytes& descriptor = PlainDescriptor)
{
    return FullAtom("esds", descriptor);
}

// Frame length, version, bit depth, tuning, channels, longest run and frame, average bit rate, sample rate.
Bytes Alac()
{
    return FullAtom("alac", Number(4096, 4) + Zeros(1) + Number(24, 1) + Zeros(3) + Number(6, 1) + Zeros(10) + Number(96000, 4));
}

// The fields that are there in version 1 of a sound entry.
const Bytes PacketFields = Bytes(16, 'p');

Bytes FilmWith(const std::vector<Bytes>& entries)
{
    return Movie(Track("text", Tables {.Entries = Descriptions(entries)}.Make()));
}

// What an esds says.
CStreamDescription Describe(const Bytes& esds)
{
    const Tree tree(esds);
    const auto* const atom = tree.Find<CESDescriptorAtom>();
    EXPECT_NE(atom, nullptr);
    return atom == nullptr ? CStreamDescription() : atom->GetDescription();
}
}

TEST(SampleEntries, AreWrittenAsTheyWereRead)
{
    const Bytes wave = Atom("wave", Atom("frma", "mp4a") + Atom("mp4a", Zeros(4)) + Esds() + Atom(Zeros(4)));
    const Bytes layout = FullAtom("chan", Zeros(12));
    for (const Bytes& entry : {
             VideoEntry(),
             VideoEntry("mp4v", Esds() + Atom("pasp", Zeros(8)) + "end"),
             VideoEntry("jpeg", Zeros(9)),
             SoundEntry(),
             SoundEntry("mp4a", Esds() + "trailer"),
             SoundEntry("mp4a", PacketFields + wave + layout + Zeros(4), 1),
             SoundEntry("ac-3", PacketFields, 2),
             SoundEntry("alac", Alac()),
             SoundEntry("alac", FullAtom("alac", {})),
             SoundEntry("sowt"),
             SoundEntry("sowt", Bytes(15, 'x')),
             SoundEntry("twos", PacketFields),
             SoundEntry("raw ", PacketFields + layout + "end", 1),
             Atom("mp4s", Zeros(7) + "\x01" + Esds()),
             Atom("rtp ", Zeros(7) + "\x01" + Number(0x10001, 4) + Number(1450, 4) + "tims"),
             Atom("hvc1", Bytes(99, 'x')),
         })
    {
        const Bytes file = FilmWith({entry});
        const Film film(file);
        SCOPED_TRACE(entry.substr(4, 4) + std::to_string(entry.size()));
        EXPECT_EQ(film.Message, L"");
        EXPECT_EQ(film.Write(), file);
    }
}

TEST(SampleEntries, MustHaveTheirReservedBytesZero)
{
    const Bytes video = VideoEntry();
    for (const size_t place : {8U, 13U, 44U, 47U})
    {
        Bytes damaged = video;
        damaged[place] = 1;
        EXPECT_EQ(Tree(damaged).Message, L"SkipZero error") << place;
    }
    EXPECT_NE(Tree(Atom("avc1", Zeros(20)) + Zeros(99)).Message.Find(L"Expected empty size"), -1);
    // An mp4s keeps no rest.
    EXPECT_NE(Tree(Atom("mp4s", Zeros(8) + "abc") + Zeros(99)).Message.Find(L"Expected empty size"), -1);
}

TEST(SampleEntries, ReadEveryFormOfADescriptor)
{
    const Bytes id = Number(1, 2);
    const Bytes config = Tagged(4, DecoderConfig);
    const Bytes longConfig = Bytes("\x04\x80\x80\x80\x16", 5) + DecoderConfig;
    // clang-format off
    const struct
    {
        const char* Name;
        Bytes Descriptor;
        int32_t ObjectType;
    } rows[] = {
        {"depends on another", Tagged(3, id + "\x80" + "xx" + config), 0x40},
        {"has a URL", Tagged(3, id + "\x40" + "\x03" + "abc" + config), 0x40},
        {"has a clock", Tagged(3, id + "\x3f" + "xx" + config), 0x40},
        {"has all", Tagged(3, id + "\xff" + "xx" + "\x03" + "abc" + "xx" + config), 0x40},
        {"long lengths", Bytes("\x03\x80\x80\x80\x20", 5) + id + Zeros(1) + longConfig, 0x40},
        {"a length of four bytes that goes on", Bytes("\x03\x80\x80\x80\xff", 5) + id + Zeros(1) + config, 0x40},
        {"a URL beyond the end", Tagged(3, id + "\x40" + "\xff" + config), 0},
        {"another tag", Tagged(3, id + Zeros(1) + "\x06" + config.substr(1)), 0},
        {"another first tag", "\x02" + PlainDescriptor.substr(1), 0},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const CStreamDescription description = Describe(Esds(row.Descriptor));
        EXPECT_EQ(description.ObjectType, row.ObjectType);
        EXPECT_EQ(description.AverageBitRate, row.ObjectType == 0 ? 0U : 128000U);
        EXPECT_EQ(description.MaximumBitRate, row.ObjectType == 0 ? 0U : 160000U);
        EXPECT_EQ(description.RawConfig.size(), row.ObjectType == 0 ? 0U : 2U);
    }
}

// What does not fit is 0, whole numbers and not parts of them.
TEST(SampleEntries, ReadADescriptorUpToWhereItIsCut)
{
    // Where each field of the descriptor ends.
    constexpr size_t ObjectTypeEnd = 8;
    constexpr size_t MaximumEnd = 16;
    constexpr size_t AverageEnd = 20;
    constexpr size_t ConfigEnd = 24;
    for (size_t size = 0; size <= PlainDescriptor.size(); ++size)
    {
        SCOPED_TRACE(size);
        const CStreamDescription description = Describe(Esds(PlainDescriptor.substr(0, size)));
        EXPECT_EQ(description.ObjectType, size < ObjectTypeEnd ? 0 : 0x40);
        EXPECT_EQ(description.MaximumBitRate, size < MaximumEnd ? 0U : 160000U);
        EXPECT_EQ(description.AverageBitRate, size < AverageEnd ? 0U : 128000U);
        EXPECT_EQ(Bytes(description.RawConfig.begin(), description.RawConfig.end()),
                  size < ConfigEnd ? Bytes() : DecoderSpecific.substr(2));
    }
}
