#include "mp4/CMp4File.h"

#include "AtomBytes.h"
#include "core/property/ZVPropertyMap.h"
#include "process/WorkFolder.h"
#include "support/PropertyLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using namespace AtomBytes;
using testing::IsSupersetOf;

const Bytes FTYP = Atom("ftyp", "isom" + Zeros(4));
// A movie of ten seconds without tracks.
const Bytes MVHD = FullAtom("mvhd", Zeros(8) + Number(1000, 4) + Number(10'000, 4) + Zeros(80));

Bytes Handler(const Bytes& type)
{
    return FullAtom("hdlr", Zeros(4) + type + Zeros(12));
}

// A track of one sample description and one sample.
Bytes Track(const Bytes& handler, const Bytes& entry, uint32_t chunkOffset)
{
    const Bytes tables = FullAtom("stsd", Number(1, 4) + entry) + FullAtom("stts", Number(1, 4) + Number(1, 4) + Number(10, 4)) +
                         FullAtom("stsc", Number(1, 4) + Number(1, 4) + Number(1, 4) + Number(1, 4)) +
                         FullAtom("stsz", Number(0, 4) + Number(1, 4) + Number(4, 4)) +
                         FullAtom("stco", Number(1, 4) + Number(chunkOffset, 4));
    const Bytes media = FullAtom("mdhd", Zeros(8) + Number(1000, 4) + Number(10'000, 4) + Zeros(4)) + Handler(handler) +
                        Atom("minf", Atom("stbl", tables));
    return Atom("trak",
                FullAtom("tkhd", Zeros(8) + Number(1, 4) + Zeros(4) + Number(10'000, 4) + Zeros(60)) + Atom("mdia", media));
}

Bytes Sound(const Bytes& type)
{
    return Atom(type,
                Zeros(6) + Number(1, 2) + Zeros(8) + Number(2, 2) + Number(16, 2) + Zeros(4) + Number(48'000, 2) + Zeros(2));
}

Bytes Movie(const Bytes& content = {})
{
    return Atom("moov", MVHD + content);
}

// What becomes of a file, step by step.
struct Outcome
{
    explicit Outcome(const Bytes& bytes, const char* name = "film.mp4", bool allowMissingFTYP = false,
                     bool allowMissingMDAT = true)
        : File(false, 0, allowMissingMDAT)
    {
        WorkFolder::Write(name, bytes);
        if (allowMissingFTYP)
            File.AllowMissingFTYP();
        const ZVFilename filename = ZVFilename::FromPath(ZVString::FromUTF8(name));
        try
        {
            IsRead = File.Open(filename) && File.ReadAtoms();
            IsVerified = IsRead && File.Verify();
        }
        catch (Exception* exception)
        {
            delete exception;
        }
        Error = File.GetLastError();
    }

    CMp4File File;
    bool IsRead = false;
    bool IsVerified = false;
    ZVString Error;
};

class CMp4FileTest : public testing::Test
{
protected:
    WorkFolder m_folder;
};

TEST_F(CMp4FileTest, SaysWhyAFileIsNone)
{
    const Bytes mdat = Atom("mdat", "data");
    const Bytes uits = Atom("uuid", "\x99\x45\x4e\x27\x96\x3a\x4b\x56\x8e\x76\x1d\xb6\x8c\x89\x9c\xd4<xml/>");
    const Bytes track = Track("soun", Sound("mp4a"), 0);
    struct Row
    {
        const char* Name;
        Bytes File;
        const wchar_t* Error;
    };
    const Row rows[] = {
        {"no ftyp",      Movie() + mdat,                  L"Missing FTYP Atom"                       },
        {"two ftyp",     FTYP + FTYP + Movie() + mdat,    L"Too many FTYP atoms in file"             },
        {"no moov",      FTYP + mdat,                     L"Missing MOOV Atom"                       },
        {"two moov",     FTYP + Movie() + Movie() + mdat, L"Too many MOOV atoms in file"             },
        {"two payloads", FTYP + Movie() + uits + uits,    L"Too many UITS payload atoms in file"     },
        {"no mdat",      FTYP + Movie(),                  L"Missing MDAT Atom"                       },
        {"no mvhd",      FTYP + Atom("moov") + mdat,      L"moov atom has wrong number of mvhd atoms"},
        {"a cut leaf",   FTYP + Movie(track).substr(0,    60),                                         L"Missing MOOV Atom"},
        {"nothing",              "",                                     L"Missing FTYP Atom"                                                                },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const Outcome outcome(row.File, "film.mp4", false, false);
        EXPECT_FALSE(outcome.IsVerified);
        EXPECT_EQ(outcome.Error, row.Error);
    }
    EXPECT_TRUE(Outcome(Movie() + mdat, "film.mov", true).IsVerified);
    EXPECT_TRUE(Outcome(FTYP + Movie()).IsVerified);
    CMp4File missing;
    EXPECT_FALSE(missing.Open(ZVFilename::FromPath(L"missing.mp4")));
    EXPECT_FALSE(missing.ReadAtoms());
    EXPECT_EQ(missing.GetLastError(), L"Failed to open file");
}

// Of a download that was not finished, or whose movie stands behind what is cut.
TEST_F(CMp4FileTest, KeepsWhatStandsBeforeTheCut)
{
    const Outcome inMedia(FTYP + Movie() + Atom("mdat", Zeros(100)).substr(0, 50));
    EXPECT_TRUE(inMedia.IsVerified);
    const Outcome inMovie(FTYP + Atom("moov", MVHD + Atom("trak", Zeros(500))).substr(0, 8 + MVHD.size()));
    EXPECT_TRUE(inMovie.IsVerified) << "the tracks are missing, and nothing else";
}

TEST_F(CMp4FileTest, FindsMediaThatNoAtomLeadsTo)
{
    // The type stands at odd places, with sizes that are none, before it stands in a header.
    const Bytes garbage = Zeros(11) + "mdat" + Zeros(9) + "mdat" + Zeros(5);
    Outcome outcome(FTYP + Movie(Track("soun", Sound("ac-3"), 0)) + garbage + Atom("mdat", Zeros(12'500)) + Atom("free"),
                    "film.mp4", false, false);
    EXPECT_TRUE(outcome.IsVerified);
    ZVPropertyMap info;
    EXPECT_TRUE(outcome.File.GetFileInfo(info));
    EXPECT_EQ(info.GetString(L"Bitrate"), L"10");
}

// Such media are looked for in blocks of a MiB.
TEST_F(CMp4FileTest, FindsMediaWhoseTypeLiesAcrossTwoBlocks)
{
    for (const size_t start : {0x100000 - 8, 0x100000 - 7, 0x100000 - 5, 0x100000 - 4})
        EXPECT_TRUE(Outcome(FTYP + Movie() + Zeros(start) + Atom("mdat", "x"), "film.mp4", false, false).IsVerified) << start;
}

// Real files; what is expected was read from them with another program.
TEST_F(CMp4FileTest, ReadsRealFilesAndWritesThemAsTheyAre)
{
    const char* const fixtures = getenv("ZV_FIXTURES");
    if (fixtures == nullptr)
        GTEST_SKIP() << "ZV_FIXTURES names no folder with sample media";
    struct Row
    {
        const char* Name;
        std::set<std::string> Expected;
    };
    const Row rows[] = {
        {"ac3.m4a",              {"Sample Rate=48000", "Channels=2", "Compression=Unknown codec"}             },
        {"blank_video.m4v",      {"Width=640", "Height=360", "FPS=30", "Sample Rate=44100"}                   },
        {"covr-junk.m4a",        {"Artist=Test Artist", "Tool Name=FAAC 1.24"}                                },
        {"empty_alac.m4a",       {"Name=empty_alac", "Compression=ALAC", "Bit Depth=16", "Gapless Playback=0"}},
        {"gnre.m4a",             {"Genre=Ska"}                                                                },
        {"has-tags.m4a",         {"Artist=Test Artist", "Compression=MP4 AAC"}                                },
        {"no-tags.m4a",          {"Media Type=Audio"}                                                         },
        {"non-full-meta.m4a",    {"Artist=Test Artist!!!!"}                                                   },
        {"zero-length-mdat.m4a", {"Name=Sine wave 440Hz", "Channels=1", "Sample Rate=22050"}                  },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const Bytes bytes = WorkFolder::Read(std::string(fixtures) + "/mp4/" + row.Name);
        Outcome outcome(bytes, row.Name);
        ZVPropertyMap map;
        outcome.File.GetTags(map);
        outcome.File.GetFileInfo(map);
        EXPECT_THAT(GetLines(map), IsSupersetOf(row.Expected));
        const Tree tree(bytes);
        EXPECT_EQ(tree.Message, L"");
        const auto end = static_cast<size_t>(tree.Reader.GetPosition());
        EXPECT_EQ(tree.Write(), bytes.substr(0, end));
    }
}

// As downloads are that were broken off. What is read of them holds nothing that the whole file does not.
TEST_F(CMp4FileTest, ReadsRealFilesThatAreCutAnywhere)
{
    const char* const fixtures = getenv("ZV_FIXTURES");
    if (fixtures == nullptr)
        GTEST_SKIP() << "ZV_FIXTURES names no folder with sample media";
    const auto getTags = [](const Bytes& bytes)
    {
        CMp4File file;
        file.OpenStream(std::make_unique<MemoryFile>(bytes), ZVFilename::FromPath(L"cut.m4a"));
        ZVPropertyMap tags;
        try
        {
            if (file.ReadAtoms() && file.Verify())
                file.GetTags(tags);
        }
        catch (Exception* exception)
        {
            delete exception;
        }
        return GetLines(tags);
    };
    for (const char* const name : {"covr-junk.m4a", "empty_alac.m4a", "gnre.m4a", "zero-length-mdat.m4a"})
    {
        SCOPED_TRACE(name);
        const Bytes bytes = WorkFolder::Read(std::string(fixtures) + "/mp4/" + name);
        const std::set<std::string> whole = getTags(bytes);
        for (size_t size = 0; size < bytes.size(); ++size)
            ASSERT_THAT(whole, IsSupersetOf(getTags(bytes.substr(0, size)))) << "cut at " << size;
    }
}
}
