#include "disc/bluray/BlurayPlaylist.h"

#include "core/bytes/ZVByteSpan.h"
#include "core/string/ZVStringUTF8.h"
#include "disc/bluray/BlurayBytes.h"
#include "disc/bluray/BlurayPlaylistReader.h"
#include "system/log/ToolsFixture.h"

#include <map>

namespace
{
using namespace BlurayBytes;
using testing::ElementsAre;

using Languages = std::map<int, std::string>;

constexpr uint32_t Second = 45000;

// A disc in memory, and a playlist that is read with its files.
class BlurayPlaylistTest : public ToolsFixture
{
protected:
    BlurayPlaylistTest()
    {
        for (const char* name : {"00001", "00002", "00003"})
            AddClip(name, {Video()});
    }

    void AddClip(const std::string& name, const std::vector<Stream>& streams, bool hasStreamFile = true)
    {
        const std::string bytes = Clip(streams);
        auto* const file = new BlurayStreamClipFile(L"/disc/" + ZVString::FromUTF8(name.c_str()) + L".clpi");
        file->Scan(ZVByteSpan(bytes.data(), static_cast<int64_t>(bytes.size())));
        m_clips.SetAt(ZVString::FromUTF8((name + ".clpi").c_str()), file);
        const ZVString streamName = ZVString::FromUTF8((name + ".m2ts").c_str());
        if (hasStreamFile)
            m_streams.SetAt(streamName, new BlurayStreamFile(L"/disc/" + streamName));
    }

    bool Read(const std::string& bytes)
    {
        return BlurayPlaylistReader(m_playlist, {m_streams, m_clips}, m_signature, m_scan)
            .Read(ZVByteSpan(bytes.data(), static_cast<int64_t>(bytes.size())));
    }

    std::string GetSignature() const { return ZVStringUTF8(m_signature).Get(); }

    Languages GetLanguages() const
    {
        Languages languages;
        for (const auto& entry : m_playlist.PlaylistStreams)
            languages[entry.Key] = ZVStringUTF8(entry.Value->Language()).Get();
        return languages;
    }

    // The clips as "name angle".
    std::vector<std::string> GetClips() const
    {
        std::vector<std::string> clips;
        for (const BlurayStreamClip* const clip : m_playlist.Clips)
            clips.push_back(ZVStringUTF8(clip->Name + L" " + ZVString::FromInt(clip->AngleIndex)).Get());
        return clips;
    }

    BlurayClipFileMap m_clips;
    BlurayStreamFileMap m_streams;
    BlurayScan m_scan;
    ZVString m_signature;
    BlurayPlaylist m_playlist {L"/disc/00001.mpls"};
};

// The second item has no sound of its own: the loop for the first one's two reads its graphics, and on past the table.
TEST_F(BlurayPlaylistTest, LoopsRunToTheLargestCountsSoFar)
{
    ASSERT_TRUE(Read(Playlist({
        {.Name = "00001",                        .Audio = {Audio(0x1100, "eng"), Audio(0x1101, "deu")}},
        {.Name = "00002",                                      .Graphics = {Graphics(0x1200, "fra")}},
        {.Name = "00003"}
    })));
    EXPECT_EQ(GetLanguages()[0x1200], "fra");
    EXPECT_THAT(GetClips(), ElementsAre("00001.M2TS 0", "00002.M2TS 0", "00003.M2TS 0")) << "the next item is found all the same";
    EXPECT_EQ(GetSignature(), "0.000 00001.M2TS1200002.M2TS1200003.M2TS120");
}

TEST_F(BlurayPlaylistTest, TakesUpThePIDByTheTypeOfTheEntry)
{
    // The PID stands at another place for each type.
    for (const auto& [type, entry] :
         {std::pair(1, std::string("\x01\x11\x00\x00\x00", 5)), std::pair(2, std::string("\x02\x00\x00\x11\x00", 5)),
          std::pair(3, std::string("\x03\x00\x11\x00\x00", 5)), std::pair(4, std::string("\x04\x00\x00\x11\x00", 5)),
          std::pair(5, std::string("\x05\x11\x11\x11\x11", 5))})
    {
        std::string bytes = Playlist({
            {.Name = "00001", .Video = {}, .Audio = {Audio(0, "eng")}}
        });
        const size_t place = bytes.find(Entry(Audio(0, "eng")));
        ASSERT_NE(place, std::string::npos);
        ASSERT_TRUE(Read(bytes.replace(place + 1, entry.size(), entry)));
        EXPECT_EQ(GetLanguages(), Languages({
                                      {type == 5 ? 0 : 0x1100, "eng"}
        }))
            << "type " << type;
    }
}

TEST_F(BlurayPlaylistTest, AddsAnglesBehindTheirMainClip)
{
    AddClip("00005", {Video()}, false);
    ASSERT_TRUE(Read(Playlist({
        {.Name = "00001",                                      .In = Second, .Out = 3 * Second, .Angles = {{"00002", "XXXX"}, {"00005"}, {"00003"}}},
        {.Name = "00002", .AngleCount = 1            },
        {.Name = "00003",                                     .AngleCount = 0                                    }
    })));
    EXPECT_THAT(GetClips(),
                ElementsAre("00001.M2TS 0", "/disc/00002.m2ts 1", "/disc/00003.m2ts 3", "00002.M2TS 0", "00003.M2TS 0"));
    EXPECT_EQ(m_playlist.AngleCount, 3);
    EXPECT_EQ(m_playlist.Clips[2]->TimeOut, 3.0);
    EXPECT_EQ(m_playlist.GetTotalLength(), 2.0) << "angles play at the same time";
    EXPECT_EQ(GetSignature(), "0.000 00001.M2TS00002.M2TS00003.M2TS1000002.M2TS1000003.M2TS100");
    m_playlist.Initialize(m_scan);
    ASSERT_EQ(m_playlist.AngleClips.GetCount(), 3);
    EXPECT_EQ(*m_playlist.AngleClips[0]->FindValue(0.0), m_playlist.Clips[1]);
    EXPECT_EQ(*m_playlist.AngleClips[1]->FindValue(0.0), m_playlist.Clips[0]) << "an angle that is not there shows the main clip";
    EXPECT_EQ(*m_playlist.AngleClips[2]->FindValue(2.0), m_playlist.Clips[4]);
}

TEST_F(BlurayPlaylistTest, AMissingClipFileEndsTheItemsOrThePlaylist)
{
    const std::vector<Mark> marks = {
        {0, 0}
    };
    EXPECT_TRUE(Read(Playlist(
        {
            {.Name = "00001", .Out = 9 * Second},
            {.Name = "00009"              },
            {.Name = "00002"}
    },
        marks)));
    EXPECT_THAT(GetClips(), ElementsAre("00001.M2TS 0"));
    EXPECT_EQ(m_playlist.Chapters.GetCount(), 1) << "the marks are read all the same";
    m_playlist.Chapters.RemoveAll();

    m_streams.SetAt(L"00009.m2ts", new BlurayStreamFile(L"/disc/00009.m2ts"));
    EXPECT_FALSE(Read(Playlist(
        {
            {.Name = "00001", .Out = 9 * Second, .Angles = {{"00002"}, {"00009"}}}
    },
        marks)));
    EXPECT_THAT(GetClips(), ElementsAre("00001.M2TS 0", "/disc/00002.m2ts 1"));
    EXPECT_EQ(m_playlist.Chapters.GetCount(), 0);
    EXPECT_EQ(GetSignature(), "0.000 00001.M2TS00002.M2TS00009.M2TS");

    AddClip("00004", {Video()}, false);
    EXPECT_TRUE(Read(Playlist({{.Name = "00004"}})));
    EXPECT_EQ(m_playlist.Clips[0]->StreamFile, nullptr) << "a stream file may be missing";
}

TEST_F(BlurayPlaylistTest, KeepsMarksThatBeginAChapter)
{
    ASSERT_TRUE(Read(Playlist(
        {
            {.Name = "00001", .In = 100 * Second, .Out = 110 * Second},
            {.Name = "00002",               .Out = 10 * Second                  }
    },
        {{0, 100 * Second},
         {0, 105 * Second, 2},
         {1, 3 * Second},
         {2, Second},
         {1, 9 * Second - Second / 2},
         {1, 9 * Second},
         {1, 9 * Second + Second / 2}})));
    EXPECT_THAT(std::vector<double>(m_playlist.Chapters.begin(), m_playlist.Chapters.end()), ElementsAre(0.0, 13.0, 18.5));
    EXPECT_THAT(std::vector<double>(m_playlist.Clips[1]->Chapters.begin(), m_playlist.Clips[1]->Chapters.end()),
                ElementsAre(3.0, 8.5));
    EXPECT_THAT(m_tools.Manager.Lines, testing::Contains("4096|BlurayPlaylist::Scan|Null pStream pClip."));
}

TEST_F(BlurayPlaylistTest, SurvivesOffsetsThatLeadNowhere)
{
    const std::string whole = Playlist(
        {
            {.Name = "00001", .Out = 5 * Second}
    },
        {{0, 0}});
    const auto read = [&](const std::string& items, const std::string& marks)
    {
        std::string bytes = whole;
        return Read(bytes.replace(8, 8, items + marks));
    };
    EXPECT_TRUE(read("\xff\xff\xff\xff", Number(16, 4)));
    EXPECT_EQ(m_playlist.Clips.GetCount(), 0);
    EXPECT_TRUE(read(Number(16, 4), "\xff\xff\xff\x9c"));
    EXPECT_EQ(m_playlist.Clips.GetCount(), 1);
    EXPECT_EQ(GetSignature(), "0.000 00001.M2TS100");
    EXPECT_TRUE(read(Number(whole.size() - 5, 4), Number(INT32_MAX, 4)));
    EXPECT_EQ(m_playlist.Clips.GetCount(), 0);
    // The count of marks has a sign.
    std::string bytes = whole;
    EXPECT_TRUE(Read(bytes.replace(whole.size() - 16, 2, "\xff\xff")));
    EXPECT_EQ(GetSignature(), "0.000 00001.M2TS10-1");
}

TEST_F(BlurayPlaylistTest, TakesUpStreamsThatOnlyTheClipHas)
{
    AddClip("00007", {
                         Video(),
                         Audio(0x1100, "eng"),
                         Graphics(0x1200, "deu"),
                         {0x1800, 0x92,
                                          "\x01"
                          "fra"}
    });
    EXPECT_TRUE(Read(Playlist({
        {.Name = "00007", .Audio = {Audio(0x1100, "spa")}}
    })));
    m_playlist.Initialize(m_scan);
    EXPECT_EQ(GetLanguages(), Languages({
                                  {0x1011, ""   },
                                  {0x1100, "spa"},
                                  {0x1200, "deu"},
                                  {0x1800, "fra"}
    }));
    EXPECT_EQ(m_playlist.AudioStreams.GetCount(), 0);
    ASSERT_EQ(m_playlist.GraphicsStreams.GetCount(), 1);
    EXPECT_EQ(m_playlist.GraphicsStreams[0]->PID, 0x1200);
    EXPECT_EQ(m_playlist.TextStreams.GetCount(), 1);
}

// Items that lie over each other, each with 254 angles.
TEST_F(BlurayPlaylistTest, BuildsNoMoreThanItsBudget)
{
    std::string item = ItemBytes({.Name = "00001", .Angles = std::vector<Angle>(254, {"00002"})});
    item.replace(0, 2, "\xff\xfe");  // the next item is the same again
    std::string bytes = Playlist({{.Name = "00001"}});
    bytes.replace(22, 2, "\xff\xff");
    bytes.resize(26);
    EXPECT_TRUE(Read(bytes + item));
    EXPECT_EQ(m_playlist.Clips.GetCount(), BlurayScan::MaximumClips);
    EXPECT_THAT(m_tools.Manager.Lines, testing::Contains(testing::HasSubstr("The disc has too many clips")));
}
}
