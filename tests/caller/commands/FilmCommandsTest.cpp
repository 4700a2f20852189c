#include "CallerFolder.h"
#include "caller/catalog/CCatalog.h"
#include "disc/bluray/BlurayBytes.h"

#include <array>
#include <gmock/gmock.h>

namespace
{
namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

// The real worker, on films that were made for it.
class FilmCommands : public testing::Test
{
protected:
    void SetUp() override
    {
        const fs::path plugins = fs::path(ZV_CALLER_PROGRAM).parent_path() / "Plugins";
        if (!fs::exists(plugins) || system("ffmpeg -version >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "ffmpeg or the codec component is not there";
    }

    static void RunProgram(const std::string& command)
    {
        EXPECT_EQ(system((command + " </dev/null >program.log 2>&1").c_str()), 0) << command << "\n"
                                                                                  << WorkFolder::Read("program.log");
    }
    // The film is the last of the arguments.
    static void Make(const std::string& arguments) { RunProgram("ffmpeg -v error -y " + arguments); }
    // Twenty seconds, red, green from the fifth and blue from the ninth on, with a white corner.
    static void MakeFilm(const std::string& name)
    {
        Make("-f lavfi -i color=red:s=320x180:r=25:d=4 -f lavfi -i color=lime:s=320x180:r=25:d=4 -f lavfi -i "
             "color=blue:s=320x180:r=25:d=12 -f lavfi -i sine=r=48000:d=20 -filter_complex "
             "'[0][1][2]concat=n=3,drawbox=w=100:h=60:c=white:t=fill[v]' -map '[v]' -map 3 -c:v libx264 -preset ultrafast "
             "-pix_fmt "
             "yuv420p -g 25 -c:a ac3 -metadata:s:a:0 language=ger " +
             name);
    }
    static json Probe(const std::string& name)
    {
        RunProgram("ffprobe -v error -show_format -show_streams -of json -i " + name);
        return json::parse(WorkFolder::Read("program.log"));
    }

    const CallerFolder m_folder;
};

TEST_F(FilmCommands, TellWhatAnotherProgramTellsOfAFilm)
{
    MakeFilm("film.mkv");
    const json probed = Probe("film.mkv");
    const json& picture = probed["streams"][0];
    const json& sound = probed["streams"][1];
    const CallerRun run = m_folder.Run({"info", "film.mkv", "--json"});
    EXPECT_EQ(run.Status, 0) << run.Error;
    const json film = json::parse(run.Output);
    EXPECT_EQ(film["path"], "film.mkv");
    EXPECT_EQ(film["Width"], picture["width"]);
    EXPECT_EQ(film["Height"], picture["height"]);
    EXPECT_EQ(std::to_string(film["FPS"].get<int>()) + "/1", picture["avg_frame_rate"]);
    EXPECT_EQ(std::to_string(film["File Size"].get<int>()), probed["format"]["size"]);
    EXPECT_EQ(film["Audio Sample Rate"], json::array({std::stoi(sound["sample_rate"].get<std::string>())}));
    EXPECT_EQ(film["Audio Channels"], json::array({sound["channels"]}));
    EXPECT_EQ(film["Audio Language"], json::array({"German"}));

    const CallerRun block = m_folder.Run({"info", "film.mkv"});
    EXPECT_THAT(block.Output, StartsWith("film.mkv\n  Length     0:00:20\n  Container  mkv, "));
    EXPECT_THAT(block.Output, HasSubstr("\n  Picture    H264 Constrained Baseline L1.2, 320x180 (1.78), 25 fps, 8 bit"));
    EXPECT_THAT(block.Output, HasSubstr("\n  Sound      1  German, AC-3, 1 channel, 48000 Hz"));
}

// Their order is that of the arguments, and one that fails costs no other.
TEST_F(FilmCommands, TellOfSeveralFilmsInTheirOrder)
{
    MakeFilm("b.mkv");
    Make("-f lavfi -i sine=d=1 a.flac");
    WorkFolder::Write("broken.mkv", "This is no film.");
    const CallerRun run = m_folder.Run({"info", "missing.mkv", "b.mkv", "broken.mkv", "a.flac", "--json", "--jobs", "3"});
    EXPECT_EQ(run.Status, 1);
    std::istringstream lines(run.Output);
    std::string line;
    for (const auto& [name, isBroken] : {
             std::pair("missing.mkv", true), {"b.mkv",      false},
               {"broken.mkv", true },
               {"a.flac",     false}
    })
    {
        std::getline(lines, line);
        const json film = json::parse(line);
        EXPECT_EQ(film["path"], name);
        EXPECT_EQ(film.contains("error"), isBroken) << name;
    }
    EXPECT_THAT(m_folder.Run({"info", "broken.mkv"}).Error, StartsWith("zivora: broken.mkv: "));
}

// All that a person types, with a sound file in between.
TEST_F(FilmCommands, KeepFilmsWithTheirPicturesInTheUsersOwnCatalog)
{
    MakeFilm("films/film.mkv");
    Make("-f lavfi -i sine=d=1 films/sound.flac");
    const CallerRun scan = m_folder.Run({"scan", "films"});
    EXPECT_EQ(scan.Output, "2 films looked at, 0 failed; 0 unchanged, 0 vanished\n") << scan.Error;
    EXPECT_EQ(m_folder.Run({"scan", "films"}).Output, "0 films looked at, 0 failed; 2 unchanged, 0 vanished\n");
    EXPECT_THAT(m_folder.Run({"list"}).Output, HasSubstr("\nfilm.mkv "));
    const CCatalog catalog("data/zivora/catalog.db", CCatalog::Access::Read);
    CStatement pictures(catalog.GetDatabase(), "SELECT picture, file FROM pictures JOIN films ON film = films.id");
    ASSERT_TRUE(pictures.Step());
    EXPECT_EQ(pictures.GetBytes(1), "film.mkv");
    WorkFolder::Write("picture.webp", pictures.GetBytes(0));
    EXPECT_EQ(Probe("picture.webp")["streams"][0]["codec_name"], "webp");
    EXPECT_EQ(Probe("picture.webp")["streams"][0]["width"], 256);
    EXPECT_FALSE(pictures.Step()) << "a sound file has a picture";

    Make("-i films/sound.flac films/film.mkv");
    EXPECT_EQ(m_folder.Run({"scan", "films"}).Output, "1 film looked at, 0 failed; 1 unchanged, 0 vanished\n");
    EXPECT_FALSE(pictures.Step()) << "the picture of the film that was there before";
}

TEST_F(FilmCommands, TakeADiscForOneTitle)
{
    using namespace BlurayBytes;
    const std::string disc = "films/a \\ disc";
    for (const char* const folder : {"/BDMV/CLIPINF", "/BDMV/PLAYLIST", "/BDMV/STREAM"})
        fs::create_directories(disc + folder);
    Make("-f lavfi -i testsrc2=s=320x180:r=25:d=3 -f lavfi -i sine=d=3 -c:v libx264 -c:a ac3 -streamid 0:4113 -streamid 1:4352 "
         "-f mpegts -mpegts_m2ts_mode 1 film.m2ts");
    fs::rename("film.m2ts", disc + "/BDMV/STREAM/00001.m2ts");
    WorkFolder::Write(disc + "/BDMV/index.bdmv", "INDX0200");
    const Stream sound = Audio(0x1100, "eng");
    WorkFolder::Write(disc + "/BDMV/CLIPINF/00001.clpi", Clip({Video(), sound}));
    WorkFolder::Write(disc + "/BDMV/PLAYLIST/00001.mpls", Playlist({
                                                              {.Name = "00001", .Out = 90 * 45000, .Audio = {sound}}
    }));
    const CallerRun info = m_folder.Run({"info", disc});
    EXPECT_THAT(info.Output, StartsWith(disc + "\n  Length     0:01:30\n")) << info.Error;
    EXPECT_EQ(m_folder.Run(CallerFolder::Scan()).Output, "1 film looked at, 0 failed; 0 unchanged, 0 vanished\n");
    EXPECT_EQ(m_folder.List()["a \\ disc"].value("Width", 0), 320);
}

struct OddName
{
    const char* Name;
    const char* Bytes;  // as JSON has them in a second field; empty if the name is UTF-8
};

// What the worker takes for something else, and what people and programs have trouble with.
constexpr OddName OddNames[] = {
    {" leading.mkv",           ""                  },
    {"two://parts.mkv",        ""                  },
    {"back\\slash.mkv",        ""                  },
    {"a;1.mkv",                ""                  },
    {"new\nline.mkv",          ""                  },
    {"\"quoted\".mkv",         ""                  },
    {"'$(touch gone)'.mkv",    ""                  },
    {"-option.mkv",            ""                  },
    {"<XMLFN a=\"b\">.mkv",    ""                  },
    {"Gr\xc3\xbc\xc3\x9f.mkv", ""                  },
    {"latin \xfc, 1.mkv",      "latin \\xfc, 1.mkv"},
};

TEST_F(FilmCommands, TakeNamesOfAnyBytes)
{
    MakeFilm("film.mkv");
    fs::create_directories("films/two:");
    for (const OddName& row : OddNames)
        fs::copy_file("film.mkv", std::string("films/") + row.Name);
    const CallerRun scan = m_folder.Run(CallerFolder::Scan({"--basic"}));
    EXPECT_EQ(scan.Output, "11 films looked at, 0 failed; 0 unchanged, 0 vanished\n") << scan.Error;
    // For a name that is no text of any encoding the worker still has its bytes.
    std::map<std::string, json> films = m_folder.List();
    EXPECT_EQ(films.size(), std::size(OddNames));
    const std::string folder = m_folder.PathOf("films/");
    for (const OddName& row : OddNames)
    {
        const bool isUTF8 = *row.Bytes == '\0';
        const json& film = films[isUTF8 ? fs::path(row.Name).lexically_normal() : "latin \xef\xbf\xbd, 1.mkv"];
        EXPECT_EQ(film.value("Width", 0), 320) << row.Name;
        EXPECT_EQ(film.value("File Type", ""), "mkv") << row.Name;
        EXPECT_EQ(film.value("path bytes", ""), isUTF8 ? "" : folder + row.Bytes) << row.Name;
    }

    // Python's reader takes the lines apart.
    WorkFolder::Write("films.csv", m_folder.Run({"list", "films.db", "--csv", "--columns", "file,width"}).Output);
    RunProgram("python3 -c 'import csv, json; print(json.dumps(list(csv.DictReader(open(\"films.csv\", newline=\"\")))))'");
    const json rows = json::parse(WorkFolder::Read("program.log"));
    EXPECT_EQ(rows.size(), std::size(OddNames));
    for (const json& row : rows)
    {
        EXPECT_EQ(row["width"], "320") << row;
        EXPECT_EQ(row["error"], "") << row;
        EXPECT_EQ(row["path bytes"], row["file"] == "latin \xef\xbf\xbd, 1.mkv" ? folder + "latin \\xfc, 1.mkv" : "") << row;
    }

    // These have a meaning for the worker at their end, where a scan finds no film.
    for (const char* const name : {"film.mkv ", "film.mkv\n", "film.mkv;1", "film.mkv\""})
    {
        fs::copy_file("film.mkv", name);
        EXPECT_EQ(m_folder.Run({"info", name, "--json"}).Status, 0) << name;
    }
    EXPECT_FALSE(fs::exists("gone"));
    m_folder.ExpectNothingLeft();
}

struct Wish
{
    std::vector<std::string> Arguments;  // after the film
    const char* Start;                   // of the file
    std::array<int, 2> Size;
    size_t Bright;  // the part of the colour that is bright
};

TEST_F(FilmCommands, MakeThePictureThatIsWished)
{
    MakeFilm("film.mkv");
    const Wish wishes[] = {
        {{"a.jpg", "--at", "3.5"},                  "\xff\xd8\xff", {320, 180}, 0},
        {{"b.png", "--at", "0:06"},                 "\x89PNG",      {320, 180}, 1},
        {{"c.webp", "--at", "9.5", "--size", "64"}, "RIFF",         {64, 36},   2},
        {{"d.JPEG", "--at", "6", "--size", "640"},  "\xff\xd8\xff", {320, 180}, 1},
    };
    for (const Wish& wish : wishes)
    {
        std::vector<std::string> arguments = wish.Arguments;
        const std::string picture = arguments[0];
        arguments.insert(arguments.begin(), {"thumb", "film.mkv"});
        const CallerRun run = m_folder.Run(arguments);
        EXPECT_EQ(run.Status, 0) << run.Error;
        EXPECT_THAT(WorkFolder::Read(picture), StartsWith(wish.Start));
        const json stream = Probe(picture)["streams"][0];
        EXPECT_EQ(stream["width"], wish.Size[0]) << picture;
        EXPECT_EQ(stream["height"], wish.Size[1]) << picture;
        // The red, the green and the blue of the middle.
        Make("-i " + picture + " -vf format=rgb24,crop=1:1 -f rawvideo raw");
        const std::string pixel = WorkFolder::Read("raw");
        for (size_t part = 0; part < 3; ++part)
            EXPECT_EQ(static_cast<uint8_t>(pixel.at(part)) > 128, part == wish.Bright) << picture << " " << part;
    }
    m_folder.ExpectNothingLeft();
}

// Scripts put it after what they wrote themselves, and what is open may be a file that has no name any more.
TEST_F(FilmCommands, AddThePictureToWhatIsOpen)
{
    MakeFilm("film.mkv");
    for (const char* const name : {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"})
    {
        const CallerRun run = m_folder.Run({"thumb", "film.mkv", name, "--format", "png", "--size", "32"},
                                           [] { EXPECT_EQ(write(STDOUT_FILENO, "head", 4), 4); });
        EXPECT_EQ(run.Status, 0) << run.Error;
        EXPECT_THAT(run.Output, StartsWith("head\x89PNG")) << name;
    }
    EXPECT_EQ(m_folder.Run({"thumb", "film.mkv", "/dev/zivora-test.png"}).Status, 1);
}

TEST_F(FilmCommands, KeepTheFilmThatIsNamedAsItsPicture)
{
    MakeFilm("film.mkv");
    fs::create_symlink("film.mkv", "link.jpg");
    const std::string before = WorkFolder::Read("film.mkv");
    for (const char* const picture : {"film.mkv", "link.jpg"})
        EXPECT_EQ(m_folder.Run({"thumb", "film.mkv", picture, "--format", "jpg"}).Status, 2) << picture;
    EXPECT_TRUE(WorkFolder::Read("film.mkv") == before) << "the film was changed";
}

TEST_F(FilmCommands, LeaveNoPictureWhereNoneCanBe)
{
    MakeFilm("film.mkv");
    Make("-f lavfi -i sine=d=1 sound.flac");
    WorkFolder::Write("old.png", "what was there before");
    WorkFolder::Write("file", "");
    struct Failure
    {
        const char* Film;
        const char* Picture;
        const char* Reason;
    };
    const Failure failures[] = {
        {"sound.flac",  "old.png",       "zivora: sound.flac: "                                                       },
        {"missing.mkv", "old.png",       "zivora: missing.mkv: "                                                      },
        {"film.mkv",    "missing/a.png", "zivora: the file missing/a.png cannot be written: No such file or directory"},
        {"film.mkv",    "file/a.png",    "zivora: the file file/a.png cannot be written: Not a directory"             },
    };
    for (const Failure& failure : failures)
    {
        const CallerRun run = m_folder.Run({"thumb", failure.Film, failure.Picture});
        EXPECT_EQ(run.Status, 1) << failure.Reason;
        EXPECT_THAT(run.Error, StartsWith(failure.Reason));
    }
    EXPECT_EQ(WorkFolder::Read("old.png"), "what was there before");
    EXPECT_FALSE(fs::exists("missing"));
}

TEST_F(FilmCommands, CutOffTheBarsThatAreSure)
{
    const std::string made = "-c:v libx264 -preset ultrafast -g 16 -bf 0 ";
    Make("-f lavfi -i testsrc2=s=320x180:r=8:d=120 -vf pad=320:240:0:30 " + made + "bars.mkv");
    // A bar of another height in each of four seconds.
    Make("-f lavfi -i testsrc2=s=320x240:r=8:d=120 -vf "
         "\"drawbox=h=20:w=320:c=black:t=fill:enable='lt(mod(t,4),1)',drawbox=h=40:w=320:"
         "c=black:t=fill:enable='between(mod(t,4),1,2)',drawbox=h=60:w=320:c=black:t=fill:enable='between(mod(t,4),2,3)'\" " +
         made + "unsure.mkv");
    const CallerRun bars = m_folder.Run({"crop", "bars.mkv"});
    EXPECT_EQ(bars.Status, 0) << bars.Error;
    EXPECT_THAT(bars.Output, StartsWith("crop=320:180:0:30\n--video-crop=320x180+0+30\n\nScore: 5\n"));
    // The filter takes it as it stands.
    Make("-i bars.mkv -frames:v 1 -vf " + bars.Output.substr(0, bars.Output.find('\n')) + " cut.png");
    EXPECT_EQ(Probe("cut.png")["streams"][0]["height"], 180);
    EXPECT_EQ(json::parse(m_folder.Run({"crop", "bars.mkv", "--json"}).Output)["crop"], "crop=320:180:0:30");

    EXPECT_THAT(m_folder.Run({"crop", "unsure.mkv"}).Output, StartsWith("do not crop: too little speaks for crop="));
    const json unsure = json::parse(m_folder.Run({"crop", "unsure.mkv", "--json"}).Output);
    EXPECT_LT(unsure.at("Video Black Bar Score"), 3);
    EXPECT_TRUE(unsure.at("crop").is_null()) << unsure;
}
}
