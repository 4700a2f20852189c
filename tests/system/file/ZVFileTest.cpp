#include "system/file/ZVFile.h"

#include "FileFixture.h"
#include "core/containers/ZVBuffer.h"

#include <cerrno>
#include <csignal>
#include <sys/time.h>
#include <tuple>

namespace
{
using ZVFileTest = FileFixture;

constexpr ZVFileShare Alone = ZVFileShare::None;
constexpr ZVFileShare Shared = ZVFileShare::Write;

TEST_F(ZVFileTest, TheCreationModeDecidesWhatAnOpenDoes)
{
    // What is there after writing "xy" to a file that was not there, and to one that held "abc".
    const std::tuple<ZVFileCreation, const char*, const char*> rows[] = {
        {ZVFileCreation::CreateAndTruncate, "xy",     "xy"   },
        {ZVFileCreation::CreateNew,         "xy",     "abc"  },
        {ZVFileCreation::OpenOrCreate,      "xy",     "xyc"  },
        {ZVFileCreation::OpenExisting,      "(none)", "xyc"  },
        {ZVFileCreation::Append,            "(none)", "abcxy"},
        {static_cast<ZVFileCreation>(9),    "(none)", "xyc"  },
    };
    for (const auto& [creation, newContent, oldContent] : rows)
        for (const ZVFileShare share : {Alone, Shared})
        {
            SCOPED_TRACE(static_cast<int>(creation));
            Put("old", "abc");
            for (const char* name : {"new", "old"})
            {
                ZVFile file;
                if (file.Open(TextAt(name), ZVFileAccess::Write, share, creation))
                    file.Write("xy", 2);
            }
            EXPECT_EQ(GetAt("new"), newContent);
            EXPECT_EQ(GetAt("old"), oldContent);
            std::filesystem::remove(At("new"));
        }
}

TEST_F(ZVFileTest, AFailedOpenTellsWhy)
{
    chmod(Put("secret").c_str(), 0);
    ZVFile file;
    EXPECT_FALSE(file.Open(TextAt(""), ZVFileAccess::Read));
    EXPECT_EQ(errno, EISDIR);
    EXPECT_FALSE(file.Open(TextAt("missing"), ZVFileAccess::Read));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(file.GetPosition(), -1);
    EXPECT_EQ(file.Seek(0, ZVSeekOrigin::Start), -1);
    EXPECT_EQ(file.GetLength(), -1);
    EXPECT_TRUE(file.Close());
    EXPECT_THAT(m_tools.Manager.Lines, testing::ElementsAre("1|ZVFile::Reopen|Error 21 opening file: " + m_folder,
                                                            "1|ZVFile::Reopen|Error 2 opening file: " + At("missing")));
    EXPECT_TRUE(AsNobody([&] { EXPECT_FALSE(file.Open(TextAt("secret"), ZVFileAccess::Read)); }));
}

TEST_F(ZVFileTest, ASecondWriterIsKeptOutUnlessTheFirstShares)
{
    Put("file", "abc");
    for (const ZVFileShare share : {Alone, Shared})
    {
        ZVFile first;
        ASSERT_TRUE(first.Open(TextAt("file"), ZVFileAccess::ReadWrite, share));
        const auto openSecond = [&]
        {
            ZVFile second;
            EXPECT_EQ(second.Open(TextAt("file"), ZVFileAccess::Write, Alone, ZVFileCreation::CreateAndTruncate),
                      share == Shared);
            EXPECT_TRUE(second.Open(TextAt("file"), ZVFileAccess::Write, Shared));
            EXPECT_TRUE(second.Open(TextAt("file"), ZVFileAccess::Read));
        };
        openSecond();
        // The refused writer must not have emptied the file either.
        EXPECT_EQ(GetAt("file"), share == Shared ? "" : "abc");
        EXPECT_TRUE(InChild(openSecond));
    }
    ZVFile again;
    EXPECT_TRUE(again.Open(TextAt("file"), ZVFileAccess::Write));
    EXPECT_TRUE(again.Reopen());
}

TEST_F(ZVFileTest, AnotherProgramsLockKeepsAWriterOut)
{
    Put("file", "abc");
    int pipes[2];
    ASSERT_EQ(pipe(pipes), 0);
    const pid_t child = fork();
    if (child == 0)
    {
        struct flock lock
        {
        };
        lock.l_type = F_WRLCK;
        const int descriptor = open(At("file").c_str(), O_RDWR);
        if (fcntl(descriptor, F_SETLK, &lock) == 0 && write(pipes[1], "", 1) == 1)
            pause();
        _exit(0);
    }
    char byte = 0;
    ASSERT_EQ(read(pipes[0], &byte, 1), 1);
    ZVFile file;
    EXPECT_FALSE(file.Open(TextAt("file"), ZVFileAccess::Write));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(file.Open(TextAt("file"), ZVFileAccess::Write));
}

TEST_F(ZVFileTest, PositionsAndLengthsAreThoseOfTheFile)
{
    constexpr int64_t BeyondFourGigabytes = 0x1'0000'0001;
    Put("file", "0123456789");
    ZVFile file;
    ASSERT_TRUE(file.Open(TextAt("file"), ZVFileAccess::ReadWrite));
    EXPECT_EQ(file.Seek(BeyondFourGigabytes, ZVSeekOrigin::Start), BeyondFourGigabytes);
    EXPECT_EQ(file.Seek(4, ZVSeekOrigin::Start), 4);
    EXPECT_EQ(file.Seek(2, ZVSeekOrigin::Current), 6);
    EXPECT_EQ(file.Seek(-3, ZVSeekOrigin::End), 7);
    EXPECT_EQ(file.Seek(5, static_cast<ZVSeekOrigin>(5)), 5);
    EXPECT_EQ(file.GetPosition(), 5);
    EXPECT_TRUE(file.SetEndOfFile());
    EXPECT_EQ(file.GetLength(), 10);
    EXPECT_EQ(file.Seek(20, ZVSeekOrigin::Start), 20);
    EXPECT_TRUE(file.SetEndOfFile());
    file.Close();
    EXPECT_EQ(file.GetLength(), 20);
    EXPECT_FALSE(file.SetEndOfFile());
    EXPECT_TRUE(file.SetFileTime({1000, 0}, {2000, 500000}));
    struct stat status
    {
    };
    stat(At("file").c_str(), &status);
    EXPECT_EQ(status.st_atim.tv_sec, 1000);
    EXPECT_EQ(status.st_mtim.tv_sec, 2000);
    EXPECT_EQ(status.st_mtim.tv_nsec, 500000000);
}

TEST_F(ZVFileTest, AWriteIsTrueOnlyWhenEverythingWasTaken)
{
    Put("file", "abc");
    ZVFile file;
    ASSERT_TRUE(file.Open(TextAt("file"), ZVFileAccess::Read));
    int64_t count = 7;
    EXPECT_FALSE(file.Write("abc", 3, count));
    EXPECT_EQ(count, 0);
    ExpectLogged("1|ZVFile::Write|Error 9 writing file: " + At("file"));
    char buffer[8];
    EXPECT_TRUE(file.Read(buffer, sizeof buffer, count));
    EXPECT_EQ(count, 3);
    EXPECT_FALSE(file.Read(buffer, -1, count));

    const std::string reason = MissingSmallDisk();
    if (!reason.empty())
        GTEST_SKIP() << reason;
    const std::string block(48 * 1024, 'x');
    const auto fillDisk = [&]
    {
        ASSERT_TRUE(file.Open(TextAt("disk/file"), ZVFileAccess::Write, Alone, ZVFileCreation::CreateNew));
        EXPECT_TRUE(file.Write(block.data(), 48 * 1024));
        EXPECT_FALSE(file.Write(block.data(), 48 * 1024));
        EXPECT_EQ(file.GetLength(), 64 * 1024);
    };
    EXPECT_TRUE(WithSmallDisk(fillDisk));
}

TEST_F(ZVFileTest, TextIsWrittenInEachForm)
{
    const ZVString text = L"a\u00e4\u65e5";
    ZVFile file;
    ZVBuffer scratch;
    ASSERT_TRUE(file.Open(TextAt("file"), ZVFileAccess::ReadWrite, Alone, ZVFileCreation::CreateNew));
    EXPECT_TRUE(file.WriteUTF8(text, scratch) && file.WriteUTF8(L"") && file.WriteUTF8(L"|") && file.WriteNarrow(text));
    EXPECT_TRUE(file.WriteWide(text) && file.Flush());
    EXPECT_EQ(GetAt("file"), "a\xc3\xa4\xe6\x97\xa5|a\xe4?" + std::string(reinterpret_cast<const char*>(text.GetText()), 12));
    ASSERT_TRUE(file.Open(L"/dev/full", ZVFileAccess::Write, Shared));
    EXPECT_TRUE(file.WriteNarrow(text));
    EXPECT_FALSE(file.WriteUTF8(text));
}

TEST_F(ZVFileTest, LinesAreReadOneByOne)
{
    Put("utf8", "a\xc3\xa4\r\n\n\xe6\x97\xa5");
    ZVFile file;
    ZVString line;
    ASSERT_TRUE(file.Open(TextAt("utf8"), ZVFileAccess::Read));
    for (const wchar_t* expected : {L"a\u00e4\r", L"", L"\u65e5"})
    {
        EXPECT_TRUE(file.ReadLineUTF8(line));
        EXPECT_EQ(line, expected);
    }
    EXPECT_FALSE(file.ReadLineUTF8(line));
    EXPECT_TRUE(line.IsEmpty());

    // The two bytes behind the last value make none.
    const wchar_t wide[] = L"ab\n\nc\0d";
    Put("wide", std::string(reinterpret_cast<const char*>(wide), sizeof wide - sizeof(wchar_t)) + "xy");
    ASSERT_TRUE(file.Open(TextAt("wide"), ZVFileAccess::Read));
    for (const wchar_t* expected : {L"ab", L"", L"c", L"d"})
    {
        EXPECT_TRUE(file.ReadLine(line));
        EXPECT_EQ(line, expected);
    }
    EXPECT_FALSE(file.ReadLine(line));
}
}
