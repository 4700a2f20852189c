// The metadata of real discs. What is expected was worked out from the layout of the format by a program in another language.

#include "core/string/ZVStringUTF8.h"
#include "disc/bluray/ZVBlurayHelper.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>

namespace
{
namespace fs = std::filesystem;

using Names = std::vector<std::string>;
using Languages = std::map<int, std::string>;

struct Disc
{
    const char* Folder;
    Names Playlists;  // the first is selected
    double Seconds;   // of the selected one
    const char* ReferenceClip;
    int32_t ClipCount;
    int32_t ChapterCount;
    Languages LanguageCodes;
};

// clang-format off
const Disc Discs[] = {
    {"disc1",
     {"00002", "00007", "00005", "00006", "00004", "00008", "00003", "00000", "00010", "00009"},
     4866.528311,
     "00009",
     4,
     17,
     {{0x1011, ""}, {0x1100, "jpn"}, {0x1200, "jpn"}, {0x1201, "eng"}, {0x1202, "zho"}, {0x1203, "zho"}, {0x1204, "zho"}, {0x1400, "jpn"}}},
    {"disc3",
     {"00002", "00000"},
     5956.116822,
     "00006",
     2,
     21,
     {{0x1011, ""}, {0x1100, "jpn"}, {0x1101, "jpn"}, {0x1200, "jpn"}, {0x1201, "eng"}, {0x1202, "zho"}, {0x1203, "zho"}, {0x1204, "zho"}, {0x1400, "jpn"}}},
    {"disc4",
     {"00002", "00000"},
     2643.641000,
     "00005",
     1,
     8,
     {{0x1011, ""}, {0x1100, "jpn"}, {0x1200, "jpn"}, {0x1201, "eng"}, {0x1202, "zho"}, {0x1203, "zho"}, {0x1204, "zho"}, {0x1400, "jpn"}}},
    {"disc5",
     {"00001", "00012", "00006", "00005", "00004", "00000", "01000", "00002", "00011", "00003", "00007", "00008", "00009", "00010"},
     7504.497000,
     "00002",
     2,
     29,
     {{0x1011, ""}, {0x1100, "jpn"}, {0x1101, "jpn"}, {0x1102, "jpn"}, {0x1103, "jpn"}, {0x12a0, "jpn"}, {0x12a1, "eng"}, {0x1400, "jpn"}}},
    {"disc6",
     {"00002", "00003", "00005", "00000"},
     7034.027000,
     "00007",
     3,
     13,
     {{0x1011, ""}, {0x1100, "jpn"}, {0x1101, "jpn"}, {0x1102, "eng"}, {0x1103, "eng"}, {0x1104, "jpn"}, {0x1200, "jpn"}, {0x1201, "eng"}, {0x1202, "zho"}, {0x1203, "zho"}, {0x1400, "jpn"}}},
    {"disc7",
     {"00002", "00003", "00004", "00005", "00000"},
     7152.145000,
     "00007",
     3,
     12,
     {{0x1011, ""}, {0x1100, "jpn"}, {0x1101, "jpn"}, {0x1102, "eng"}, {0x1103, "eng"}, {0x1104, "jpn"}, {0x1200, "jpn"}, {0x1201, "eng"}, {0x1202, "zho"}, {0x1203, "zho"}, {0x1400, "jpn"}}},
};
// clang-format on

std::string NameOf(const ZVString& path)
{
    return fs::path(ZVStringUTF8(path).Get()).stem();
}

TEST(FixtureDiscs, HaveTheirTitlesInOrder)
{
    const char* const fixtures = getenv("ZV_FIXTURES");
    if (fixtures == nullptr)
        GTEST_SKIP() << "ZV_FIXTURES names no folder with sample media";
    std::string work = fs::temp_directory_path() / "zv-discs-XXXXXX";
    const fs::path folder = mkdtemp(work.data());
    for (const Disc& disc : Discs)
    {
        SCOPED_TRACE(disc.Folder);
        const fs::path root = folder / disc.Folder;
        fs::copy(fs::path(fixtures) / "discs" / disc.Folder, root, fs::copy_options::recursive);
        fs::permissions(root, fs::perms::owner_all);
        fs::create_directory(root / "STREAM");
        for (const fs::directory_entry& clip : fs::directory_iterator(root / "CLIPINF"))
            std::ofstream(root / "STREAM" / (clip.path().stem().string() + ".m2ts"));

        ZVBlurayHelper helper;
        helper.SetFilename(ZVFilename(ZVString::FromUTF8((root / "index.bdmv").c_str())));
        Names playlists;
        for (const BlurayPlaylist* const playlist : helper.Playlists)
            playlists.push_back(NameOf(playlist->Name));
        EXPECT_EQ(playlists, disc.Playlists);
        EXPECT_EQ(helper.SelectedIndex, 0);
        const BlurayPlaylist* const title = helper.GetSelected();
        ASSERT_NE(title, nullptr);
        EXPECT_NEAR(title->GetTotalLength(), disc.Seconds, 1e-6);
        EXPECT_EQ(NameOf(title->GetReferenceClip()->Name), disc.ReferenceClip);
        EXPECT_EQ(title->Clips.GetCount(), disc.ClipCount);
        EXPECT_EQ(title->Chapters.GetCount(), disc.ChapterCount);
        Languages languages;
        for (const auto& entry : title->PlaylistStreams)
            languages[entry.Key] = ZVStringUTF8(entry.Value->Language()).Get();
        EXPECT_EQ(languages, disc.LanguageCodes);
    }
    fs::remove_all(folder);
}
}
