#include "FilmFolder.h"
#include "LoneWorker.h"
#include "disc/bluray/BlurayBytes.h"
#include "disc/recording/StubBytes.h"
#include "mp4/AtomBytes.h"
#include "mp4/quicktime/KeyBytes.h"
#include "mp4/quicktime/MetadataKeys.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using Lines = std::set<std::string>;

Lines operator+(Lines left, const Lines& right)
{
    left.insert(right.begin(), right.end());
    return left;
}

const std::string Tags = "-metadata title=T -metadata artist=A -metadata album_artist=AA -metadata album=AL -metadata genre=G "
                         "-metadata comment=C -metadata track=3/9 -metadata disc=1/2 -metadata date=2024-05-06 "
                         "-metadata copyright=CR ";
const std::string Sound = "-f lavfi -i sine=r=44100:d=3 ";
const std::string Stereo = Sound + "-ac 2 -c:a ";
const std::string Film = FilmPicture + Sound + Tags;
const std::string WithoutTool = "-fflags +bitexact ";

// What the tags become in a container that has some of them.
const Lines FewTags = {"Artist=A", "Genre=G", "Description=C", "Track #=3/9", "Date=45418", "Copyright=CR"};
const Lines AllTags = FewTags + Lines {"Album Artist=AA", "Album=AL", "Disc #=1/2"};
const Lines Seconds = {"Duration=3"};
const Lines Picture = {"Media Type=Video", "FPS=25", "Width=320", "Height=180"};

Lines SoundOf(const std::string& channels, const std::string& depth = "16", const std::string& rate = "44100")
{
    return {"Sample Rate=" + rate, "Channels=" + channels, "Bit Depth=" + depth};
}

Lines SoundFile(const std::string& compression)
{
    return Seconds + Lines {"Media Type=Audio", "Name=T", "Compression=" + compression};
}

Lines FilmFile(const std::string& type, const std::string& video, const std::string& audio)
{
    return Seconds + Picture + Lines {"Compression=" + type + " video (video: " + video + ", audio: " + audio + ")"};
}

class AnalyzeBasic : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!FilmFolder::IsUsable())
            GTEST_SKIP() << "ffmpeg, mkvmerge or the codec component is not there";
    }

    static FilmAnalysis Analyze(const std::string& name)
    {
        FilmAnalysis analysis = FilmFolder::AnalyzeForLibrary(name);
        EXPECT_EQ(analysis.Run.Status, 0) << analysis.Log;
        EXPECT_TRUE(analysis.HasResult) << analysis.Log;
        return analysis;
    }

    // Expects what a result has beside the extended analysis, of which all is there, and beside the sizes, which hang on the encoder. The
    // type is that of the name, and the size that of the file unless it is given.
    static void ExpectOwn(const std::string& name, const Lines& expected, uintmax_t size = 0)
    {
        SCOPED_TRACE(name);
        Lines own = Analyze(name).Properties;
        for (const std::string& line : FilmFolder::Analyze(name).Properties)
            EXPECT_EQ(own.erase(line), 1U) << line;
        const std::string type = fs::path(name).extension().string();
        EXPECT_EQ(own.erase("File Type=" + type.substr(1)), 1U);
        EXPECT_EQ(own.erase("File Size=" + std::to_string(size == 0 ? fs::file_size(name) : size)), 1U);
        EXPECT_EQ(std::erase_if(own, [](const std::string& line) { return line.starts_with("Bitrate=") && line[8] > '0'; }), 1U);
        EXPECT_EQ(own, expected);
    }

    FilmFolder m_folder;
};

TEST_F(AnalyzeBasic, TellsWhatSoundFilesWereMadeOf)
{
    FilmFolder::Make("-f lavfi -i color=red:s=64x64 -frames:v 1 cover.jpg");
    const std::string cover = Sound + "-i cover.jpg -map 0 -map 1 -c:v copy -disposition:v attached_pic -ac 2 -c:a ";
    struct Row
    {
        const char* Name;
        std::string Arguments;
        Lines Expected;
    };
    // clang-format off
    const Row rows[] = {
        {"a.mp3",  cover + "libmp3lame",            SoundFile("MP3") + AllTags + SoundOf("2")},
        {"a.flac", Stereo + "flac -sample_fmt s32", SoundFile("FLAC") + AllTags + SoundOf("2", "24")},
        {"a.ogg",  Stereo + "libvorbis",            SoundFile("Vorbis") + AllTags + SoundOf("2")},
        {"a.opus", Stereo + "libopus",              SoundFile("Opus") + AllTags + SoundOf("2", "16", "48000")},
        {"a.wma",  Stereo + "wmav2",                SoundFile("WMAV2") + AllTags + SoundOf("2")},
        {"a.wav",  Stereo + "pcm_s24le",            SoundFile("PCM_S24LE") + FewTags + Lines {"Album=AL"} + SoundOf("2", "24")},
        {"a.m4a",  Stereo + "aac -metadata composer=CO " + WithoutTool,
         SoundFile("AAC") + AllTags + SoundOf("2") + Lines {"Comment=C", "Composer=CO", "Language=und"}},
    };
    // clang-format on
    for (const Row& row : rows)
    {
        FilmFolder::Make(row.Arguments + " " + Tags + row.Name);
        ExpectOwn(row.Name, row.Expected);
    }
    // The size of a sound without compression is known.
    EXPECT_THAT(Analyze("a.wav").Properties, Contains("Bitrate=2117"));
}

TEST_F(AnalyzeBasic, TellsWhatFilmsWereMadeOf)
{
    const std::string windows =
        "-c:v wmv2 -c:a wmav2 -metadata WM/SubTitle=Ep -metadata WM/MediaIsMovie=1 -metadata composer=CO ";
    const std::string h264 = FilmH264 + "-c:a aac ";
    struct Row
    {
        const char* Name;
        std::string Arguments;
        Lines Expected;
    };
    FilmFolder::Write("chapters", ";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\nEND=1500\ntitle=One|Two\n[CHAPTER]\n"
                                  "TIMEBASE=1/1000\nSTART=1500\nEND=3000\ntitle=Ünde\n");
    const Lines chapters = {"$!@_Chapters=2", "$!@_ChapterNames=One|Two|Ünde", "$!@_ChapterTimes=0|1500"};
    const Lines mp4 = {"Name=T", "Comment=C", "Language=und"};
    // clang-format off
    const Row rows[] = {
        {"a.mkv", FilmPicture + Sound + "-i chapters -map_chapters 2 " + Tags + FilmH264 + "-c:a flac ",
         FilmFile("mkv", "H264", "FLAC") + AllTags + SoundOf("1") + chapters},
        {"a.avi", Film + "-c:v mpeg4 -c:a libmp3lame ", FilmFile("avi", "MPEG4", "MP3") + FewTags + SoundOf("1")},
        {"a.wmv", Film + windows, FilmFile("wmv", "WMV2", "WMAV2") + AllTags + SoundOf("1")},
        {"a.mp4", Film + h264 + WithoutTool, FilmFile("mp4", "H264", "AAC") + AllTags + mp4 + SoundOf("2")},
        {"bare.mp4", "-i a.mp4 -map_metadata -1 -c copy " + WithoutTool,
         FilmFile("mp4", "H264", "AAC") + Lines {"Language=und"} + SoundOf("2")},
        {"a.ts", Film + h264 + "-metadata service_provider=SP -metadata service_name=SN ",
         FilmFile("ts", "H264", "AAC") + SoundOf("1") + Lines {"Service Provider=SP", "Service Name=SN"}},
        {"silent.mp4", FilmPicture + FilmH264 + WithoutTool +
             "-metadata location=+48.8577-002.295/ -metadata creation_time=2024-05-06T07:08:09Z ",
         Seconds + Picture + Lines {"Compression=mp4 video (video: H264)", "Language=und", "Latitude=+48.8577",
                                    "Longitude=-002.2950", "Altitude=", "Date Created=1714979289"}},
    };
    // clang-format on
    for (const Row& row : rows)
    {
        FilmFolder::Make(row.Arguments + row.Name);
        ExpectOwn(row.Name, row.Expected);
    }
    // The same bytes under another name.
    fs::copy_file("a.wmv", "a.dvr-ms");
    ExpectOwn("a.dvr-ms", FilmFile("dvr-ms", "WMV2", "WMAV2") + AllTags + SoundOf("1") +
                              Lines {"Name=Ep", "Series=T", "Media Sub Type=Movie", "Composer=CO"});
    // QuickTime of old times has no ftyp.
    FilmFolder::Make(Film + h264 + WithoutTool + "a.mov");
    const std::string film = FilmFolder::Read("a.mov");
    ASSERT_EQ(film.substr(4, 4), "ftyp");
    std::string old = film;
    FilmFolder::Write("old.mov", old.replace(4, 4, "wide"));
    ExpectOwn("old.mov", FilmFile("mov", "H264", "AAC") + SoundOf("1") +
                             Lines {"Artist=A", "Album=AL", "Genre=G", "Description=C", "Date=45418", "Copyright=CR"});
    EXPECT_THAT(Analyze("old.mov").Log, Not(HasSubstr("Error reading tags")));
    FilmFolder::Write("old.mp4", old);
    EXPECT_THAT(Analyze("old.mp4").Log, HasSubstr("Error reading tags.  Missing FTYP Atom"));
}

TEST_F(AnalyzeBasic, TellsWhatIsInATelevisionRecording)
{
    FilmFolder::Make(
        FilmPicture + Sound +
        "-c:v mpeg2video -c:a mp2 -metadata title=Show -metadata WM/SubTitle=Ep -metadata WM/SubTitleDescription=New "
        "-metadata description=Old -metadata 'WM/MediaCredits=A/B;C;;D' -metadata WM/MediaIsMovie=false "
        "-metadata WM/ParentalRating=PG -metadata WM/WMRVEncodeTime=2024-05-06T06:00:00 "
        "-metadata WM/OriginalReleaseTime=2023-05-06 -metadata WM/MediaStationName=ARD "
        "-metadata WM/MediaStationCallSign=DAS -metadata WM/Provider=P a.wtv");
    const Lines tags = {"Name=Ep",
                        "Series=Show",
                        "Actors=A;B;D",
                        "Credits=A;B;C;D",
                        "Director=C",
                        "MPAA Rating=PG",
                        "Date=45052",
                        "Provider=P",
                        "Date Recorded=45418.25",
                        "Media Sub Type=TV Show",
                        "Service Name=ARD",
                        "Station Name=ARD",
                        "Description=New",
                        "Series Description=Old",
                        "Service Provider=DAS",
                        "Station Call Sign=DAS"};
    ExpectOwn("a.wtv", FilmFile("wtv", "MPEG-2", "MP2") + tags + SoundOf("1"));
    FilmFolder::Make("-i a.wtv -vn -c copy radio.wtv");
    EXPECT_THAT(Analyze("radio.wtv").Properties, IsSupersetOf({"Media Type=Audio", "Name=Ep", "Series=Show"}));
}

TEST_F(AnalyzeBasic, TellsWhatIsOnABlurayDisc)
{
    using namespace BlurayBytes;
    for (const char* folder : {"BDMV/CLIPINF", "BDMV/PLAYLIST", "BDMV/STREAM"})
        fs::create_directories(folder);
    FilmFolder::Write("BDMV/index.bdmv", "INDX0200");
    FilmFolder::Write("other.bin", std::string(1000, 'x'));
    FilmFolder::Make(
        FilmPicture + Sound + FilmH264 +
        "-ar 48000 -c:a ac3 -ac 2 -streamid 0:4113 -streamid 1:4352 -f mpegts -mpegts_m2ts_mode 1 BDMV/STREAM/00001.m2ts");
    FilmFolder::Write("BDMV/CLIPINF/00001.clpi", Clip({Video(), BlurayBytes::Audio(0x1100, "eng")}));
    constexpr uint32_t Second = 45'000;
    const std::vector<Item> items = {
        {.Name = "00001", .Out = 90 * Second, .Audio = {BlurayBytes::Audio(0x1100, "eng")}}
    };
    const std::vector<Mark> marks = {
        {0, 0          },
        {0, 30 * Second}
    };
    FilmFolder::Write("BDMV/PLAYLIST/00001.mpls", Playlist(items, marks));
    uintmax_t size = 1000;
    for (const auto& entry : fs::recursive_directory_iterator("BDMV"))
        size += entry.is_regular_file() ? entry.file_size() : 0;
    // The folder of a disc has nothing but the disc.
    fs::create_directory("disc");
    fs::rename("BDMV", "disc/BDMV");
    fs::rename("other.bin", "disc/other.bin");
    ExpectOwn("disc/BDMV/index.bdmv",
              Picture + SoundOf("2", "16", "48000") +
                  Lines {"Duration=90", "Compression=bdmv video (video: H264, audio: AC-3)", "$!@_Chapters=2",
                         "$!@_ChapterNames=|", "$!@_ChapterTimes=0|30000", "Service Provider=FFmpeg", "Service Name=Service01"},
              size);
}

TEST_F(AnalyzeBasic, TellsWhatIsOnADVD)
{
    if (system("dvdauthor --version 2>&1 | grep -q DVDAuthor") != 0)
        GTEST_SKIP() << "dvdauthor is not there";
    FilmFolder::Make("-f lavfi -i testsrc2=s=720x576:r=25 -f lavfi -i sine -g 25 -bf 0 -t 4 -ac 2 -target pal-dvd film.mpg");
    FilmFolder::Write("disc.xml", "<dvdauthor><vmgm/><titleset><titles><pgc><vob file='film.mpg' chapters='0,2'/></pgc></titles>"
                                  "</titleset></dvdauthor>");
    FilmFolder::RunProgram("VIDEO_FORMAT=pal dvdauthor -o disc -x disc.xml");
    uintmax_t size = 0;
    for (const auto& entry : fs::directory_iterator("disc/VIDEO_TS"))
        size += entry.file_size();
    FilmFolder::Write("disc/readme.txt", "No part of the film.");
    const Lines lines = Analyze("disc/VIDEO_TS/VIDEO_TS.IFO").Properties;
    EXPECT_THAT(lines, IsSupersetOf(Lines {"File Type=IFO", "File Size=" + std::to_string(size), "Duration=4", "FPS=25",
                                           "Width=720", "Height=576", "Channels=2", "Sample Rate=48000", "$!@_Chapters=2",
                                           "$!@_ChapterTimes=0|2000", "Compression=IFO video (video: MPEG-2, audio: AC-3)"}));
    EXPECT_FALSE(lines.contains("Video Scan=Interlaced")) << "the extended analysis does not look at a DVD";
}

TEST_F(AnalyzeBasic, TellsWhatARecordingIs)
{
    fs::create_directory("live");
    FilmFolder::Make(Film + FilmH264 + "-c:a aac -f mpegts live/show.zts");
    FilmFolder::Write("live/show.ztr", std::string(100, 'x'));
    FilmFolder::Write("live/1.cnk", std::string(1000, 'x'));
    const uintmax_t size = fs::file_size("live/show.zts") + 1100;
    const Lines film = SoundOf("1") + Lines {"Service Provider=FFmpeg", "Service Name=T"};
    ExpectOwn("live/show.zts", FilmFile("zts", "H264", "AAC") + film, size);

    const std::string stub = StubBytes::Stub(2, U"live/show.zts");
    FilmFolder::Write("show.ztv", stub);
    EXPECT_THAT(Analyze("show.ztv").Properties,
                IsSupersetOf(FilmFile("ztv", "H264", "AAC") + film +
                             Lines {"File Type=ztv", "File Size=" + std::to_string(size + stub.size())}));
    // In capitals it is a file as any other, which is no film.
    FilmFolder::Write("show.ZTV", stub);
    EXPECT_EQ(FilmFolder::AnalyzeForLibrary("show.ZTV").Run.Status, 255);
}

// The keys of every tag that the MP4 reader knows are found in results, and in the document.
TEST_F(AnalyzeBasic, ExplainsTheTagsOfMp4Files)
{
    using namespace AtomBytes;
    FilmFolder::Make(Sound + "-c:a aac -map_metadata -1 " + WithoutTool + "bare.m4a");
    std::string bare = FilmFolder::Read("bare.m4a");
    // It has an empty list of tags.
    bare.replace(bare.find("udta"), 4, "free");
    const size_t moov = bare.find("moov") - 4;
    ASSERT_EQ(Number(bare.size() - moov, 4), bare.substr(moov, 4)) << "the movie is not at the end";
    Lines keys;
    // Analyzes the file with another atom at the end of its movie.
    const auto analyzeWith = [&](const Bytes& atom)
    {
        const std::string tagged = bare + atom;
        FilmFolder::Write("tagged.m4a", tagged.substr(0, moov) + Number(tagged.size() - moov, 4) + tagged.substr(moov + 4));
        for (const std::string& line : Analyze("tagged.m4a").Properties)
            keys.insert(line.substr(0, line.find('=')));
    };

    const char* const types[] = {"\xa9nam",
                                 "\xa9"
                                 "ART",
                                 "aART",
                                 "\xa9"
                                 "alb",
                                 "\xa9"
                                 "cmt",
                                 "\xa9"
                                 "day",
                                 "\xa9gen",
                                 "trkn",
                                 "disk",
                                 "\xa9wrt",
                                 "\xa9"
                                 "con",
                                 "\xa9"
                                 "dir",
                                 "\xa9prd",
                                 "\xa9pub",
                                 "\xa9wrk",
                                 "\xa9mvn",
                                 "\xa9mvi",
                                 "\xa9mvc",
                                 "shwm",
                                 "tmpo",
                                 "cpil",
                                 "rtng",
                                 "\xa9grp",
                                 "stik",
                                 "pcst",
                                 "catg",
                                 "keyw",
                                 "purl",
                                 "egid",
                                 "desc",
                                 "\xa9lyr",
                                 "tvnn",
                                 "tvsh",
                                 "tven",
                                 "tves",
                                 "tvsn",
                                 "purd",
                                 "pgap",
                                 "sonm",
                                 "soar",
                                 "soaa",
                                 "soal",
                                 "soco",
                                 "sosn",
                                 "\xa9too",
                                 "cprt"};
    // Each tag as a text, and as a number of eight bytes, which has room for all forms.
    for (const auto& [form, value] : {
             std::pair {1U,                   Bytes("2024")},
              std::pair { 21U, Zeros(3) + Number(9, 1) + Zeros(4)}
    })
    {
        Bytes items;
        for (const char* const type : types)
            items += Tag(type, value, form);
        for (const char* const name : {"replaygain_track_gain", "replaygain_track_peak", "initialkey", "MEDIA"})
            items += FreeForm(name, "2024");
        analyzeWith(Atom("udta", FullAtom("meta", Handler("mdir") + Atom("ilst", items))));
    }
    std::vector<Bytes> names;
    Bytes items;
    for (const MetadataKey& key : MDTAKeys)
    {
        items += Item(static_cast<uint32_t>(names.size()), "2024");
        names.push_back(Key(ZVStringUTF8(key.Key).Get()));
    }
    analyzeWith(Atom("meta", Handler("mdta") + Keys(names) + Atom("ilst", items)));
    // The reader gives no values for these yet, or they are no tags of such a file.
    Lines documented = ResultKeys::GetDocumented("More tags of the MP4 family");
    for (const char* const other : {"Episode", "Season", "Access Rating", "UITS Payload", "Image File"})
        documented.erase(other);
    EXPECT_THAT(keys, IsSupersetOf(documented));
}

TEST_F(AnalyzeBasic, LosesNothingThatAnotherLayerFound)
{
    const std::string h264 = FilmH264 + "-c:a aac ";
    FilmFolder::Make(Film + h264 + "whole.mp4");
    const Lines film = FilmFile("mp4", "H264", "AAC") + AllTags + SoundOf("1");
    std::string damaged = FilmFolder::Read("whole.mp4");
    const size_t ilst = damaged.find("ilst");
    // A tag that is larger than the list it is in.
    FilmFolder::Write("tag.mp4", damaged.replace(ilst + 4, 2, "\xff\xff"));
    EXPECT_THAT(Analyze("tag.mp4").Properties, IsSupersetOf({"Media Type=Video", "Width=320", "Video Codec=H264 High L4.1"}));
    // Without the reader the player tells all.
    damaged = FilmFolder::Read("whole.mp4");
    FilmFolder::Write("twice.mp4", damaged + damaged.substr(0, 32));
    const FilmAnalysis analysis = Analyze("twice.mp4");
    EXPECT_THAT(analysis.Log, HasSubstr("Error reading tags.  Too many FTYP atoms in file"));
    EXPECT_THAT(analysis.Properties, IsSupersetOf(film + Lines {"Video Codec=H264 High L4.1"}));
}

TEST_F(AnalyzeBasic, TakesAnyTextForATag)
{
    const std::string megabytes(3'000'000, 'x');
    FilmFolder::Write("tags", ";FFMETADATA1\ntitle=" + megabytes +
                                  "\nartist=a\x01\x1f|b\\;c<&\nalbum=\xff\xfe\xc3\ngenre=\xe2\x82\xac\n");
    FilmFolder::Make(Sound + "-i tags -map_metadata 1 -c:a flac a.flac");
    const Lines lines = Analyze("a.flac").Properties;
    EXPECT_TRUE(lines.contains("Name=" + megabytes));
    EXPECT_THAT(lines, IsSupersetOf({"Genre=€", "Album=ÿþÃ"}));
    EXPECT_TRUE(lines.contains("Artist=a\x01?|b;c<&"));
    // What Windows would never write.
    FilmFolder::Make(FilmPicture +
                     "-c:v wmv2 -metadata 'WM/MediaCredits=;;;;;////' -metadata WM/MediaIsMovie= -metadata WM/SubTitle=" +
                     std::string(60'000, 'y') +
                     " -metadata WM/WMRVEncodeTime=99999999999999999999 "
                     "-metadata WM/OriginalReleaseTime=-1e999 a.asf");
    for (const char* const name : {"a.dvr-ms", "a.wtv"})
    {
        fs::copy_file("a.asf", name);
        const Lines television = Analyze(name).Properties;
        EXPECT_THAT(television, IsSupersetOf({"Actors=", "Credits=", "Media Type=Video", "Width=320"})) << name;
        EXPECT_FALSE(television.contains("Date=0")) << name;
    }
}

TEST_F(AnalyzeBasic, FailsWhenThePlayerCannotOpenTheFile)
{
    FilmFolder::Write("text.mp4", "No film, but a text.");
    FilmFolder::Write("empty.mp3", "");
    FilmFolder::Write("self.ztv", StubBytes::Stub(2, U"self.ztv"));
    FilmFolder::Write("short.ztv", "ZTVS");
    // Texts of 65,535 bytes that are not there, and lengths that were never meant.
    FilmFolder::Write("huge.ztv", StubBytes::Stub(1) + std::string(6, '\xff'));
    ASSERT_EQ(mkfifo("pipe.mp4", 0600), 0);
    for (const char* const name : {"text.mp4", "empty.mp3", "missing.mkv", "self.ztv", "short.ztv", "huge.ztv", "pipe.mp4", "."})
    {
        const FilmAnalysis analysis = FilmFolder::AnalyzeForLibrary(name);
        EXPECT_EQ(analysis.Run.Status, 255) << name;
        EXPECT_FALSE(analysis.HasResult) << name;
        EXPECT_THAT(analysis.Log, HasSubstr("\tCZVVideoAnalyzeHelper::AnalyzeFileZVVideo\tOpening file failed.")) << name;
    }
}

TEST_F(AnalyzeBasic, FailsWithoutTheCodecComponent)
{
    if (void* const library = dlopen("libavutil.so.59", RTLD_LAZY); library != nullptr)
    {
        dlclose(library);
        GTEST_SKIP() << "the system has libraries that take the component's place";
    }
    FilmFolder::Make(Stereo + "flac a.flac");
    const fs::path folder = fs::path(GetWorkerProgram()).parent_path();
    const LoneWorker worker(folder / "libZVTools.so");
    const FilmAnalysis withoutPlayer = FilmFolder::AnalyzeForLibrary("a.flac");
    EXPECT_EQ(withoutPlayer.Run.Status, 255);
    EXPECT_THAT(withoutPlayer.Log, HasSubstr("libZVPlayer.so"));
    fs::copy_file(folder / "libZVPlayer.so", worker.PathOf("libZVPlayer.so"));
    const FilmAnalysis withoutComponent = FilmFolder::AnalyzeForLibrary("a.flac");
    EXPECT_EQ(withoutComponent.Run.Status, 255);
    EXPECT_FALSE(withoutComponent.HasResult);
    EXPECT_THAT(withoutComponent.Log, HasSubstr("/Plugins/linux_avcodec64_v17"));
}
}
