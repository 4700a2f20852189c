#include "system/file/ZVFile.h"

#include "FileFixture.h"
#include "system/file/ZVFileInfo.h"

#include <cerrno>
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
    };
    for (const auto& [creation, newContent, oldContent] : rows)
        for (const ZVFileShare share : {Alone, Shared})
        {
            Put("old", "abc");
            std::filesystem::remove(At("new"));
            for (const char* name : {"new", "old"})
                if (ZVFile file; file.Open(NameAt(name), ZVFileAccess::Write, share, creation))
                    file.Write("xy", 2);
            EXPECT_EQ(GetAt("new"), newContent) << static_cast<int>(creation);
            EXPECT_EQ(GetAt("old"), oldContent) << static_cast<int>(creation);
        }
}

TEST_F(ZVFileTest, AFailedOpenTellsWhy)
{
    ZVFile file;
    EXPECT_FALSE(file.Open(NameAt(""), ZVFileAccess::Read));
    EXPECT_EQ(errno, EISDIR);
    EXPECT_FALSE(file.Open(NameAt("missing"), ZVFileAccess::Read));
    EXPECT_EQ(errno, ENOENT);
    ExpectLogged("1|ZVFile::Reopen|Error 2 opening file: " + At("missing"));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(file.GetPosition(), -1);
    EXPECT_TRUE(file.Close());
}

TEST_F(ZVFileTest, ASecondWriterIsKeptOutUnlessTheFirstShares)
{
    Put("file", "abc");
    const auto open = [&](ZVFile& file, ZVFileShare share)
    { return file.Open(NameAt("file"), ZVFileAccess::Write, share, ZVFileCreation::CreateAndTruncate); };
    ZVFile first;
    ASSERT_TRUE(first.Open(NameAt("file"), ZVFileAccess::ReadWrite));
    const auto openLocked = [&]
    {
        ZVFile second;
        EXPECT_FALSE(open(second, Alone));
        // The refused writer must not have emptied the file either.
        EXPECT_EQ(GetAt("file"), "abc");
        EXPECT_TRUE(second.Open(NameAt("file"), ZVFileAccess::Write, Shared));
        EXPECT_TRUE(second.Open(NameAt("file"), ZVFileAccess::Read));
    };
    openLocked();
    InChild(openLocked);
    EXPECT_TRUE(open(first, Shared));

    // Programs that use the other kind of lock, which belongs to a process, are writers too.
    const struct flock lock = {F_WRLCK, SEEK_SET, 0, 0, 0};
    const int descriptor = ::open(Put("file", "abc").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(fcntl(descriptor, F_SETLK, &lock), 0);
    InChild(openLocked);
    close(descriptor);
}

TEST_F(ZVFileTest, PositionsAndLengthsAreThoseOfTheFile)
{
    constexpr int64_t BeyondFourGigabytes = 0x1'0000'0001;
    Put("file", "0123456789");
    ZVFile file;
    ASSERT_TRUE(file.Open(NameAt("file"), ZVFileAccess::ReadWrite));
    EXPECT_EQ(file.Seek(BeyondFourGigabytes, ZVSeekOrigin::Start), BeyondFourGigabytes);
    EXPECT_EQ(file.Seek(-6, ZVSeekOrigin::End), 4);
    EXPECT_EQ(file.Seek(2, ZVSeekOrigin::Current), 6);
    EXPECT_EQ(file.Seek(3, static_cast<ZVSeekOrigin>(5)), 3) << "every other origin is the start";
    // Where space can be had in advance the file grows and never shrinks; for no bytes at all it cannot be had.
    for (const auto& [position, length] : {std::pair(5, 10), std::pair(0, 0), std::pair(20, 20)})
    {
        EXPECT_EQ(file.Seek(position, ZVSeekOrigin::Start), position);
        EXPECT_TRUE(file.SetEndOfFile());
        EXPECT_EQ(file.GetLength(), length);
    }
    file.Close();
    EXPECT_EQ(file.GetLength(), 20) << "of the name when it is closed";
    EXPECT_FALSE(file.SetEndOfFile());
    EXPECT_TRUE(file.SetFileTime({1000, 0}, {2000, 500000}));
    EXPECT_EQ(ZVFileInfo(TextAt("file")).GetModificationTime(), 2000.5);
}

TEST_F(ZVFileTest, AWriteIsTrueOnlyIfEverythingWasTaken)
{
    Put("file", "abc");
    ZVFile file;
    ASSERT_TRUE(file.Open(NameAt("file"), ZVFileAccess::Read));
    int64_t count = 7;
    EXPECT_FALSE(file.Write("abc", 3, count));
    EXPECT_EQ(count, 0);
    ExpectLogged("1|ZVFile::Write|Error 9 writing file: " + At("file"));
    char buffer[8];
    EXPECT_TRUE(file.Read(buffer, sizeof buffer, count));
    EXPECT_EQ(count, 3);
    EXPECT_FALSE(file.Read(buffer, -1, count));
    const std::string block(48 * 1024, 'x');
    const auto fillDisk = [&]
    {
        ASSERT_TRUE(file.Open(NameAt("disk/file"), ZVFileAccess::Write, Alone, ZVFileCreation::CreateNew));
        EXPECT_TRUE(file.Write(block.data(), 48 * 1024));
        EXPECT_FALSE(file.Write(block.data(), 48 * 1024));
        EXPECT_EQ(file.GetLength(), 64 * 1024);
    };
    WithSmallDisk(fillDisk);
}

TEST_F(ZVFileTest, TextIsWrittenInEachForm)
{
    const ZVString text = L"a\u00e4\u65e5";
    ZVFile file;
    ASSERT_TRUE(file.Open(NameAt("file"), ZVFileAccess::ReadWrite, Alone, ZVFileCreation::CreateNew));
    EXPECT_TRUE(file.WriteUTF8(text));
    EXPECT_TRUE(file.WriteNarrow(text));
    EXPECT_TRUE(file.WriteWide(text));
    EXPECT_EQ(GetAt("file"), "a\xc3\xa4\xe6\x97\xa5"
                             "a\xe4?" +
                                 std::string(reinterpret_cast<const char*>(text.GetText()), 12));
    ASSERT_TRUE(file.Open(ZVFilename::FromPath(L"/dev/full"), ZVFileAccess::Write, Shared));
    EXPECT_FALSE(file.WriteUTF8(text));
    EXPECT_TRUE(file.WriteNarrow(text)) << "whatever became of the write";
}

TEST_F(ZVFileTest, LinesAreReadOneByOne)
{
    ZVFile file;
    const auto readLines = [&](bool (ZVFile::*readLine)(ZVString&), const std::string& content)
    {
        Put("lines", content);
        EXPECT_TRUE(file.Open(NameAt("lines"), ZVFileAccess::Read));
        std::vector<std::string> lines;
        for (ZVString line; (file.*readLine)(line);)
            lines.push_back(Bytes(line));
        return lines;
    };
    EXPECT_THAT(readLines(&ZVFile::ReadLineUTF8, "a\xc3\xa4\r\n\n\xe6\x97\xa5"), ElementsAre("a\xc3\xa4\r", "", "\xe6\x97\xa5"));
    // The two bytes after the last value make none.
    const wchar_t wide[] = L"ab\n\nc\0d";
    const std::string wideBytes(reinterpret_cast<const char*>(wide), sizeof wide - sizeof(wchar_t));
    EXPECT_THAT(readLines(&ZVFile::ReadLine, wideBytes + "xy"), ElementsAre("ab", "", "c", "d"));
    ZVString line;
    file.Close();
    EXPECT_FALSE(file.ReadLine(line)) << "a closed file would have lines without end";
}
}
