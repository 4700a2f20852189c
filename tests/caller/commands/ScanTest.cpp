#include "CallerFolder.h"
#include "caller/catalog/CStatement.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::StartsWith;

constexpr uid_t Nobody = 65534;

// In the new process: an ordinary user.
void BecomeNobody()
{
    if (setgid(Nobody) != 0 || setuid(Nobody) != 0)
        _exit(126);
}

std::shared_ptr<sqlite3> Open(const char* name)
{
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open(name, &database), SQLITE_OK);
    return {database, sqlite3_close};
}

class Scan : public testing::Test
{
protected:
    // Scans with the stand-in and expects what is said at the end.
    void ExpectScan(const std::string& counts, const std::vector<std::string>& more = {}) const
    {
        const CallerRun run = m_folder.Run(CallerFolder::StandInScan(more));
        EXPECT_THAT(run.Output, StartsWith(counts)) << run.Error;
    }
    // The names of the films that a list shows.
    std::vector<std::string> Names(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> names;
        for (const auto& [name, film] : m_folder.List(more))
            names.push_back(name);
        return names;
    }

    const CallerFolder m_folder;
};

TEST_F(Scan, ReadsWhatIsNewOrChangedAlone)
{
    CallerFolder::AddFilms({"a.mkv", "b.MP4", "c.mp3", "d.txt", ".hidden.mkv", "no extension", ".mkv"});
    ExpectScan("3 films looked at, 0 failed; 0 unchanged, 0 vanished\n");
    EXPECT_THAT(CallerFolder::TakeRuns(), ElementsAre("/AnalyzeZVVid a.mkv", "/AnalyzeZVVid b.MP4", "/AnalyzeZVVid c.mp3"));

    ExpectScan("0 films looked at, 0 failed; 3 unchanged, 0 vanished\n");
    EXPECT_THAT(CallerFolder::TakeRuns(), IsEmpty());

    // The time alone, the size alone, and a file in its place with the time and the size of the old one.
    const auto time = fs::last_write_time("films/c.mp3");
    fs::last_write_time("films/a.mkv", time + std::chrono::nanoseconds(1));
    const auto timeOfB = fs::last_write_time("films/b.MP4");
    WorkFolder::Write("films/b.MP4", "longer than before");
    fs::last_write_time("films/b.MP4", timeOfB);
    WorkFolder::Write("films/new", "c.mp3");
    fs::last_write_time("films/new", time);
    fs::rename("films/new", "films/c.mp3");
    ExpectScan("3 films looked at, 0 failed; 0 unchanged, 0 vanished\n");
}

TEST_F(Scan, MarksWhatVanishedAndKnowsItAgain)
{
    CallerFolder::AddFilms({"a.mkv", "b.mkv", "c.mkv"});
    fs::create_directory("films/below");
    CallerFolder::AddFilms({"below/d.mkv"});
    ExpectScan("4 films looked at, 0 failed; 0 unchanged, 0 vanished\n");
    fs::rename("films/a.mkv", "films/below/moved.mkv");
    fs::rename("films/b.mkv", "aside");
    fs::rename("films/below/d.mkv", "films/d.txt");
    ExpectScan("1 film looked at, 0 failed; 1 unchanged, 3 vanished\n");
    EXPECT_THAT(Names(), ElementsAre("below/moved.mkv", "c.mkv"));
    EXPECT_EQ(Names({"--vanished"}).size(), 5U);
    EXPECT_EQ(m_folder.List({"--vanished"})["b.mkv"].value("vanished", false), true);
    CallerFolder::TakeRuns();

    fs::rename("aside", "films/b.mkv");
    ExpectScan("0 films looked at, 0 failed; 3 unchanged, 0 vanished\n");
    EXPECT_THAT(Names(), ElementsAre("b.mkv", "below/moved.mkv", "c.mkv"));
    EXPECT_THAT(CallerFolder::TakeRuns(), IsEmpty());

    // A part of the library says nothing about the rest.
    const CallerRun part = m_folder.Run({"scan", "films/below", "--to", "films.db", "--basic", "--worker", ZV_WORKER_STAND_IN});
    EXPECT_EQ(part.Output, "0 films looked at, 0 failed; 1 unchanged, 0 vanished\n") << part.Error;
}

TEST_F(Scan, TriesAgainAndAddsTasksWhenItIsTold)
{
    CallerFolder::AddFilms({"a.mkv", "refuse.mkv"});
    ExpectScan("2 films looked at, 1 failed");
    ExpectScan("0 films looked at, 0 failed; 2 unchanged");
    CallerFolder::TakeRuns();
    ExpectScan("1 film looked at, 1 failed; 1 unchanged", {"--retry"});
    EXPECT_THAT(CallerFolder::TakeRuns(), ElementsAre("/AnalyzeZVVid refuse.mkv"));

    ExpectScan("2 films looked at, 1 failed; 0 unchanged", {"--bars"});
    EXPECT_THAT(CallerFolder::TakeRuns(), ElementsAre("/AnalyzeVideoBlackBars a.mkv", "/AnalyzeVideoBlackBars refuse.mkv"));
    EXPECT_EQ(m_folder.List()["a.mkv"].value("Width", 0), 1920) << "what was known before is lost";

    // What is known of a film that changes is found out anew, all of it.
    WorkFolder::Write("films/a.mkv", "changed");
    ExpectScan("1 film looked at, 0 failed; 1 unchanged");
    EXPECT_THAT(CallerFolder::TakeRuns(), ElementsAre("/AnalyzeVideoBlackBars a.mkv", "/AnalyzeZVVid a.mkv"));
}

TEST_F(Scan, EndsInLoopsOfLinksAndPassesOverWhatIsNoFile)
{
    CallerFolder::AddFilms({"a.mkv"});
    fs::create_directory("films/below");
    CallerFolder::AddFilms({"below/b.mkv"});
    fs::create_directory_symlink("..", "films/below/up");
    fs::create_symlink("itself.mkv", "films/itself.mkv");
    fs::create_symlink("nowhere", "films/gone.mkv");
    fs::create_symlink("below/b.mkv", "films/same.mkv");
    mkfifo("films/pipe.mkv", 0600);
    ExpectScan("3 films looked at, 0 failed; 0 unchanged, 0 vanished\n");
    EXPECT_THAT(Names(), ElementsAre("a.mkv", "below/b.mkv", "same.mkv"));
}

TEST_F(Scan, LeavesAFilmThatWentAwayMeanwhileToTheNextOne)
{
    CallerFolder::AddFilms({"away.mkv", "b.mkv"});
    ExpectScan("1 film looked at, 0 failed; 0 unchanged, 0 vanished; 1 file or folder cannot be read\n");
    EXPECT_THAT(Names(), ElementsAre("b.mkv"));
}

TEST_F(Scan, FindsFilmsBesideADiscAndInFoldersThatAreNone)
{
    CallerFolder::AddFilms({"a.mkv"});
    fs::create_directories("films/disc/BDMV/STREAM");
    fs::create_directories("films/VIDEO_TS");
    CallerFolder::AddFilms({"disc/BDMV/index.bdmv", "disc/BDMV/STREAM/0.m2ts", "disc/extra.mkv", "VIDEO_TS/part.vob"});
    fs::create_directory_symlink("disc", "films/0");
    ExpectScan("4 films looked at, 0 failed");
    EXPECT_THAT(Names(), ElementsAre("VIDEO_TS/part.vob", "a.mkv", "disc", "disc/extra.mkv"));
}

TEST_F(Scan, TakesNothingForGoneThatItMayNotSee)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    fs::create_directory("films/closed");
    CallerFolder::AddFilms({"a.mkv", "closed/b.mkv"});
    ExpectScan("2 films looked at");
    fs::permissions("films/closed", fs::perms::owner_all);
    for (const char* const name : {".", "films", "temporary", "films.db", "films.db.lock", "runs"})
        EXPECT_EQ(chown(name, Nobody, Nobody), 0);
    const CallerRun run = m_folder.Run(CallerFolder::StandInScan(), BecomeNobody);
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, "0 films looked at, 0 failed; 1 unchanged, 0 vanished; 1 file or folder cannot be read\n");
    EXPECT_THAT(run.Error, HasSubstr("films/closed: Permission denied"));
    EXPECT_THAT(Names(), ElementsAre("a.mkv", "closed/b.mkv"));
}

TEST_F(Scan, RefusesACatalogThatIsNoneAndLeavesItAsItIs)
{
    CallerFolder::AddFilms({"a.mkv"});
    ExpectScan("1 film looked at");
    const std::string catalog = WorkFolder::Read("films.db");
    struct Wrong
    {
        const char* Name;
        std::string Content;
        const char* Change;  // by SQL
        const char* Reason;
    };
    const Wrong wrongs[] = {
        {"a text",             std::string(5000,           'x'),                      "",              "is no catalog"},
        {"another database",   "",                         "CREATE TABLE films (id)", "is no catalog"},
        {"a later version",             catalog, "PRAGMA user_version = 99",     "has the version 99,"               },
        {"a part", catalog.substr(0,                         catalog.size() / 2),               "",                "malformed"               },
    };
    for (const Wrong& wrong : wrongs)
    {
        WorkFolder::Write("other.db", wrong.Content);
        if (*wrong.Change != '\0')
            CStatement(Open("other.db").get(), wrong.Change).Run();
        const std::string before = WorkFolder::Read("other.db");
        for (const std::vector<std::string>& command : {
                 std::vector<std::string> {"scan",      "films", "--to", "other.db"},
                  {"list", "other.db"       }
        })
        {
            const CallerRun refused = m_folder.Run(command);
            EXPECT_EQ(refused.Status, 1) << wrong.Name;
            EXPECT_THAT(refused.Error, HasSubstr("other.db")) << wrong.Name;
            EXPECT_THAT(refused.Error, HasSubstr(wrong.Reason)) << wrong.Name;
        }
        EXPECT_TRUE(WorkFolder::Read("other.db") == before) << wrong.Name << " was changed";
    }
}

TEST_F(Scan, RefusesASecondScanOfTheSameCatalog)
{
    CallerFolder::AddFilms({"hang.mkv"});
    CallerProcess first = m_folder.Start(CallerFolder::StandInScan());
    EXPECT_TRUE(m_folder.WaitForRun("hang.mkv"));
    const CallerRun second = m_folder.Run(CallerFolder::StandInScan());
    EXPECT_EQ(second.Status, 1);
    EXPECT_EQ(second.Error, "zivora: another scan is at work on the catalog films.db\n");
    EXPECT_THAT(Names(), IsEmpty());
    first.Kill(SIGINT);
    EXPECT_EQ(first.Finish().Status, 130);
}

TEST_F(Scan, KeepsWhatItHasWhenTheDiskIsFull)
{
    fs::create_directory("small");
    if (mount("tmpfs", "small", "tmpfs", 0, "size=2m") != 0)
        GTEST_SKIP() << "no file system can be mounted here";
    const std::vector<std::string> scan = {"scan", "films", "--to", "small/films.db", "--basic", "--worker", ZV_WORKER_STAND_IN};
    CallerFolder::AddFilms({"a.mkv"});
    EXPECT_EQ(m_folder.Run(scan).Status, 0);
    for (int film = 0; film < 150; ++film)
        CallerFolder::AddFilms({std::string(200, 'n') + std::to_string(film) + ".mkv"});
    WorkFolder::Write("small/filler", std::string(1'990'000, 'x'));
    const CallerRun full = m_folder.Run(scan);
    EXPECT_EQ(full.Status, 1);
    EXPECT_THAT(full.Error, HasSubstr("small/films.db: database or disk is full"));
    m_folder.ExpectNothingLeft();
    EXPECT_THAT(m_folder.Run({"list", "small/films.db", "--json"}).Output, HasSubstr("/a.mkv"));

    fs::remove("small/filler");
    const CallerRun next = m_folder.Run(scan);
    EXPECT_EQ(next.Status, 0) << next.Error << next.Output;
    umount("small");
}

TEST_F(Scan, MakesACatalogThatOthersCanRead)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    CallerFolder::AddFilms({"a.mkv"});
    ExpectScan("1 film looked at");
    fs::permissions(".", fs::perms::owner_all | fs::perms::others_exec | fs::perms::others_read);
    const CallerRun list = m_folder.Run({"list", "films.db", "--json"}, BecomeNobody);
    EXPECT_EQ(list.Status, 0) << list.Error;
    EXPECT_THAT(list.Output, HasSubstr("films/a.mkv"));
    const CallerRun scan = m_folder.Run(CallerFolder::StandInScan(), BecomeNobody);
    EXPECT_EQ(scan.Status, 1);
    EXPECT_EQ(scan.Error, "zivora: the catalog films.db cannot be written: Permission denied\n");
}
}
