#include "system/file/ZVFile.h"

#include "FileFixture.h"

#include <cerrno>
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
    const ZVDescriptor other(::open(Put("file", "abc").c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(fcntl(other.Get(), F_SETLK, &lock), 0);
    InChild(openLocked);
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
}
}
