#include "system/file/ZVFile.h"

#include "FileFixture.h"
#include "core/containers/ZVBuffer.h"
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
            EXPECT_TRUE(GetAt("new") == newContent && GetAt("old") == oldContent) << static_cast<int>(creation);
        }
}

TEST_F(ZVFileTest, AFailedOpenTellsWhy)
{
    ZVFile file;
    EXPECT_TRUE(!file.Open(NameAt(""), ZVFileAccess::Read) && errno == EISDIR);
    EXPECT_TRUE(!file.Open(NameAt("missing"), ZVFileAccess::Read) && errno == ENOENT);
    ExpectLogged("1|ZVFile::Reopen|Error 2 opening file: " + At("missing"));
    EXPECT_TRUE(!file.IsOpen() && file.Close());
    EXPECT_TRUE(file.GetPosition() == -1 && file.Seek(0, ZVSeekOrigin::Start) == -1 && file.GetLength() == -1);
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
        EXPECT_TRUE(second.Open(NameAt("file"), ZVFileAccess::Write, Shared) && second.Open(NameAt("file"), ZVFileAccess::Read));
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
    EXPECT_TRUE(file.Seek(-6, ZVSeekOrigin::End) == 4 && file.Seek(2, ZVSeekOrigin::Current) == 6);
    // Where space can be had in advance the file grows and never shrinks; for no bytes at all it cannot be had.
    for (const int64_t position : {5, 0, 20})
    {
        EXPECT_TRUE(file.Seek(position, ZVSeekOrigin::Start) == position && file.SetEndOfFile());
        EXPECT_EQ(file.GetLength(), position == 5 ? 10 : position);
    }
    file.Close();
    EXPECT_TRUE(file.GetLength() == 20 && !file.SetEndOfFile());
    EXPECT_TRUE(file.SetFileTime({1000, 0}, {2000, 500000}));
    EXPECT_EQ(ZVFileInfo(TextAt("file")).GetModificationTime(), 2000.5);
}

TEST_F(ZVFileTest, AWriteIsTrueOnlyWhenEverythingWasTaken)
{
    Put("file", "abc");
    ZVFile file;
    ASSERT_TRUE(file.Open(NameAt("file"), ZVFileAccess::Read));
    int64_t count = 7;
    EXPECT_TRUE(!file.Write("abc", 3, count) && count == 0);
    ExpectLogged("1|ZVFile::Write|Error 9 writing file: " + At("file"));
    char buffer[8];
    EXPECT_TRUE(file.Read(buffer, sizeof buffer, count) && count == 3 && !file.Read(buffer, -1, count) && errno == EINVAL);
    const std::string block(48 * 1024, 'x');
    const auto fillDisk = [&]
    {
        ASSERT_TRUE(file.Open(NameAt("disk/file"), ZVFileAccess::Write, Alone, ZVFileCreation::CreateNew));
        EXPECT_TRUE(file.Write(block.data(), 48 * 1024) && !file.Write(block.data(), 48 * 1024));
        EXPECT_EQ(file.GetLength(), 64 * 1024);
    };
    WithSmallDisk(fillDisk);
}

TEST_F(ZVFileTest, TextIsWrittenInEachForm)
{
    const ZVString text = L"a\u00e4\u65e5";
    ZVFile file;
    ZVBuffer scratch;
    ASSERT_TRUE(file.Open(NameAt("file"), ZVFileAccess::ReadWrite, Alone, ZVFileCreation::CreateNew));
    EXPECT_TRUE(file.WriteUTF8(text, scratch) && file.WriteUTF8(L"") && file.WriteUTF8(L"|") && file.WriteNarrow(text));
    EXPECT_TRUE(file.WriteWide(text) && file.Flush());
    EXPECT_EQ(GetAt("file"), "a\xc3\xa4\xe6\x97\xa5|a\xe4?" + std::string(reinterpret_cast<const char*>(text.GetText()), 12));
    ASSERT_TRUE(file.Open(ZVFilename::FromPath(L"/dev/full"), ZVFileAccess::Write, Shared));
    EXPECT_TRUE(file.WriteNarrow(text) && !file.WriteUTF8(text));
}

TEST_F(ZVFileTest, LinesAreReadOneByOne)
{
    ZVFile file;
    const auto readLines = [&](bool (ZVFile::*readLine)(ZVString&), const std::string& content)
    {
        Put("lines", content);
        EXPECT_TRUE(file.Open(NameAt("lines"), ZVFileAccess::Read));
        std::string lines;
        for (ZVString line; (file.*readLine)(line);)
            lines += Bytes(line) + "|";
        return lines;
    };
    EXPECT_EQ(readLines(&ZVFile::ReadLineUTF8, "a\xc3\xa4\r\n\n\xe6\x97\xa5"), "a\xc3\xa4\r||\xe6\x97\xa5|");
    ZVString line;
    file.Close();
    EXPECT_FALSE(file.ReadLine(line)) << "without an end of the lines of a closed file";
    // The two bytes behind the last value make none.
    const wchar_t wide[] = L"ab\n\nc\0d";
    const std::string wideBytes(reinterpret_cast<const char*>(wide), sizeof wide - sizeof(wchar_t));
    EXPECT_EQ(readLines(&ZVFile::ReadLine, wideBytes + "xy"), "ab||c|d|");
}
}
