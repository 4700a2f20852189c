#include "disc/bluray/BDROM.h"

#include "core/string/ZVStringUTF8.h"
#include "disc/bluray/BlurayFolder.h"
#include "disc/bluray/BlurayPlaylistReader.h"
#include "disc/bluray/ZVBlurayHelper.h"
#include "system/log/ToolsFixture.h"

namespace
{
using namespace BlurayBytes;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr uint32_t Second = 45000;
constexpr uint32_t Minute = 60 * Second;

using Names = std::vector<std::string>;

std::string NameOf(const BlurayPlaylist* playlist)
{
    return playlist == nullptr ? "none" : std::filesystem::path(ZVStringUTF8(playlist->Name).Get()).filename().string();
}

class BDROMTest : public ToolsFixture
{
protected:
    BDROMTest()
    {
        for (const char* name : {"00001", "00002", "00003"})
            m_folder.AddClip(name);
    }

    // A title of one item with that many sounds.
    void AddTitle(const std::string& name, uint32_t length, size_t audioCount = 1, const std::string& clip = "00001") const
    {
        m_folder.AddPlaylist(name,
                             {
                                 {.Name = clip, .Out = length, .Audio = std::vector<Stream>(audioCount, Audio(0x1100, "eng"))}
        },
                             {});
    }

    // The titles in their order, with "*" after the selected one.
    Names Select(const std::string& file = "index.bdmv", const wchar_t* playbackInfo = L"")
    {
        ZVFilename name(m_folder.TextOf(file));
        name.SetProperty(L"PlaybackInfo", playbackInfo);
        m_helper.SetFilename(name);
        Names names;
        for (int32_t index = 0; index < m_helper.Playlists.GetCount(); ++index)
            names.push_back(NameOf(m_helper.Playlists[index]) + (index == m_helper.SelectedIndex ? "*" : ""));
        return names;
    }

    BlurayFolder m_folder;
    ZVBlurayHelper m_helper;
};

TEST_F(BDROMTest, KeepsWhatMayBeATitle)
{
    AddTitle("00001", 90 * Minute);
    AddTitle("00002", 3 * Second / 2, 1, "00002");  // less than two whole seconds
    AddTitle("00003", Minute, 0);
    m_folder.AddPlaylist("00004", {
                                      {.Name = "00001", .Out = Minute, .Video = {}, .Audio = {Audio(0x1100, "eng")}}
    });
    m_folder.AddPlaylist("00005",
                         {
                             {.Name = "00001", .Out = Minute, .Audio = {Audio(1, "eng")}},
                             {.Name = "00001",               .Out = 2 * Minute             }
    });
    AddTitle("00006", 2 * Second, 1, "00003");
    m_folder.Write("PLAYLIST/00007.mpls", "no playlist");
    EXPECT_EQ(Select(), Names({"00001.mpls*", "00006.mpls"}));
    for (const auto& [name, reason] :
         {std::pair(L"00002.mpls", "short"), std::pair(L"00003.mpls", "sound"), std::pair(L"00004.mpls", "picture"),
          std::pair(L"00005.MPLS", "twice"), std::pair(L"00009.mpls", "no such playlist")})
        EXPECT_THAT(ZVStringUTF8(m_helper.Disc->GetReasonOfAbsence(name, 1)).Get(), HasSubstr(reason));
}

TEST_F(BDROMTest, OfPlaylistsThatShowTheSameTheFirstByNameStays)
{
    // In and out do not count.
    for (const char* name : {"00005", "00002", "00009"})
        AddTitle(name, 60 * Minute + static_cast<uint32_t>(name[4]));
    AddTitle("00003", 60 * Minute, 2);
    EXPECT_EQ(Select(), Names({"00003.mpls*", "00002.mpls"}));
    EXPECT_THAT(ZVStringUTF8(m_helper.Disc->GetReasonOfAbsence(L"00009.mpls", 1)).Get(), HasSubstr("it shows the same as 0000"));
}

// Two titles of a length in minutes, with a count of sounds and a name.
struct Title
{
    double Minutes;
    int32_t Audio;
    const wchar_t* Name;
};

TEST_F(BDROMTest, OrdersTitlesByLengthAndSound)
{
    struct Row
    {
        const char* What;
        Title First;
        Title Second;
        int32_t Order;
    };
    const Row rows[] = {
        {"no clips, by sound",          {0, 1, L"b"},   {0, 2, L"a"},   1 },
        {"no clips, by name",           {0, 1, L"a"},   {0, 1, L"b"},   -1},
        {"below a minute, by sound",    {0.4, 2, L"b"}, {0.5, 1, L"a"}, -1},
        {"below a minute, by seconds",  {0.4, 1, L"a"}, {0.5, 1, L"b"}, 1 },
        {"below a minute, by name",     {0.5, 1, L"b"}, {0.5, 1, L"a"}, 1 },
        {"episodes stay in order",      {44, 1, L"a"},  {45, 1, L"b"},  -1},
        {"60 minutes are an episode",   {60, 1, L"b"},  {59, 1, L"a"},  1 },
        {"61 minutes are none",         {61, 1, L"b"},  {60, 1, L"a"},  -1},
        {"19 minutes are none",         {19, 1, L"b"},  {18, 1, L"a"},  -1},
        {"a fifth apart, the longer",   {45, 1, L"b"},  {36, 9, L"a"},  -1},
        {"a fifth apart from 45 to 30", {30, 1, L"a"},  {45, 1, L"b"},  1 },
        {"less apart with other sound", {45, 1, L"b"},  {40, 2, L"a"},  -1},
        {"nearly equal, more sound",    {88, 2, L"b"},  {90, 1, L"a"},  -1},
        {"nearly equal, the longer",    {88, 1, L"a"},  {90, 1, L"b"},  1 },
        {"a tenth apart, the longer",   {90, 1, L"b"},  {100, 9, L"a"}, 1 },
        {"equal but for the name",      {90, 1, L"a"},  {90, 1, L"b"},  -1},
        {"the same",                    {90, 1, L"a"},  {90, 1, L"a"},  0 },
    };
    for (const Row& row : rows)
    {
        BlurayStreamFileMap streams;
        BlurayClipFileMap clips;
        BlurayScan scan;
        clips.SetAt(L"00001.clpi", new BlurayStreamClipFile(L"00001.clpi"));
        const auto make = [&](const Title& title)
        {
            auto playlist = std::make_unique<BlurayPlaylist>(title.Name);
            if (title.Minutes > 0)
            {
                const std::string bytes = Playlist({
                    {.Name = "00001", .Out = static_cast<uint32_t>(title.Minutes * Minute)}
                });
                ZVString signature;
                BlurayPlaylistReader(*playlist, {streams, clips}, signature, scan)
                    .Read(ZVByteSpan(bytes.data(), static_cast<int64_t>(bytes.size())));
            }
            playlist->AudioStreamCount = title.Audio;
            return playlist;
        };
        const auto first = make(row.First);
        const auto second = make(row.Second);
        EXPECT_EQ(BDROM::ComparePlaylists(*first, *second), row.Order) << row.What;
        EXPECT_EQ(BDROM::ComparePlaylists(*second, *first), -row.Order) << row.What << ", the other way round";
    }
}

TEST_F(BDROMTest, SortsTitlesWhoseOrderContradictsItself)
{
    // Each is before the next by its sounds, and the last before the first by its length.
    for (uint32_t number = 0; number < 60; ++number)
        AddTitle("000" + std::to_string(10 + number), (65 + 5 * number) * Minute, 60 - number);
    EXPECT_EQ(Select().size(), 60u);
}

TEST_F(BDROMTest, TheCallerOrTheRipperChoosesTheTitle)
{
    for (const auto& [name, minutes] : {std::pair("00800", 70), std::pair("00801", 80), std::pair("00802", 90)})
        AddTitle(name, static_cast<uint32_t>(minutes) * Minute, 1, "0000" + std::string(1, static_cast<char>(name[4] + 1)));
    EXPECT_EQ(Select(), Names({"00802.mpls*", "00801.mpls", "00800.mpls"}));

    const wchar_t* const info = L"<XMLPH version=\"1.0\"><Item Name=\"BlurayPlaylist\">00801.MPLS</Item></XMLPH>";
    EXPECT_EQ(Select("index.bdmv", info), Names({"00802.mpls", "00801.mpls*", "00800.mpls"}));
    EXPECT_EQ(Select("index.bdmv", L"00801.mpls"), Names({"00802.mpls*", "00801.mpls", "00800.mpls"})) << "no map";

    const std::pair<const char*, const char*> texts[] = {
        {"[disc]\nplaylists=800,801\nplaylists=801", "00800.mpls"},
        {"x\r\nplaylists= 801;800\r\n",              "00801.mpls"},
        {"playlists=0",                              "00802.mpls"},
        {"playlists=-800",                           "00802.mpls"},
        {"playlists=00700",                          "00802.mpls"},
        {"Playlists=800",                            "00802.mpls"},
        {"",                                         "00802.mpls"},
    };
    for (const auto& [text, name] : texts)
    {
        m_folder.Write("../disc.inf", text);
        Select();
        EXPECT_EQ(NameOf(m_helper.GetSelected()), name) << text;
    }
    // The caller wins.
    m_folder.Write("../disc.inf", "playlists=800");
    EXPECT_EQ(Select("index.bdmv", info), Names({"00802.mpls", "00801.mpls*", "00800.mpls"}));
    const wchar_t* const gone = L"<XMLPH version=\"1.0\"><Item Name=\"BlurayPlaylist\">00005.mpls</Item></XMLPH>";
    EXPECT_EQ(Select("index.bdmv", gone), Names({"00802.mpls", "00801.mpls", "00800.mpls*"}));
    EXPECT_THAT(m_tools.Manager.Lines, Contains(HasSubstr("00005.mpls is not taken, since the disc has no such playlist")));
}

TEST_F(BDROMTest, ADamagedFolderHasFewerTitles)
{
    EXPECT_EQ(Select(), Names());
    EXPECT_EQ(m_helper.GetSelected(), nullptr);
    AddTitle("00001", Minute);
    ASSERT_EQ(mkfifo(m_folder.PathOf("PLAYLIST/00002.mpls").c_str(), 0600), 0);
    std::filesystem::create_directory(m_folder.PathOf("PLAYLIST/00003.mpls"));
    std::filesystem::create_symlink("00004.mpls", m_folder.PathOf("PLAYLIST/00004.mpls"));
    m_folder.Write("PLAYLIST/00005.mpls", "");
    std::filesystem::resize_file(m_folder.PathOf("PLAYLIST/00005.mpls"), (16 << 20) + 1);
    m_folder.Write("CLIPINF/\xff.clpi", "");
    EXPECT_EQ(Select(), Names({"00001.mpls*"}));
    std::filesystem::remove_all(m_folder.PathOf(""));
    EXPECT_EQ(Select(), Names());
}
}
