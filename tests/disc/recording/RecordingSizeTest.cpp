#include "disc/recording/RecordingSize.h"

#include "disc/recording/StubBytes.h"
#include "process/WorkFolder.h"

#include <gtest/gtest.h>

namespace
{
class RecordingSizeTest : public testing::Test
{
protected:
    // Makes a file of that many bytes.
    static void Put(const std::string& name, size_t size) { PutBytes(name, std::string(size, 'x')); }
    static void PutBytes(const std::string& name, const std::string& bytes)
    {
        std::filesystem::create_directories(std::filesystem::absolute(name).parent_path());
        WorkFolder::Write(name, bytes);
    }
    ZVFilename NameOf(const std::string& name) const
    {
        return ZVFilename::FromPath(ZVString::FromUTF8(m_folder.PathOf(name).c_str()));
    }

    WorkFolder m_folder;
};

// The sizes are different powers of two, so that a wrong sum tells which file is missing or counted twice.
TEST_F(RecordingSizeTest, ATimeShiftRecordingIsAllFilesOfItsNameAndTheChunks)
{
    Put("shift/show.ztf", 1);
    Put("shift/show.zti", 2);
    Put("shift/show.ztr", 4);
    Put("shift/show.zts", 8);
    Put("shift/show.zta", 16);
    Put("shift/other.cnk", 32);
    Put("shift/SHOW.CNK", 64);
    Put("shift/deeper/show.cnk", 128);
    Put("shift/show.ztx", 256);
    Put("alone/show.zts", 3);
    Put("alone/1.cnk", 4);
    Put("capital/show.ZTS", 5);
    Put("capital/1.cnk", 6);
    EXPECT_EQ(GetMediaFileSize(NameOf("shift/show.zts")), 127);
    EXPECT_EQ(GetMediaFileSize(NameOf("alone/show.zts")), 7);
    EXPECT_EQ(GetRecordingSize(NameOf("capital/show.ZTS")), 0);
    EXPECT_EQ(GetMediaFileSize(NameOf("capital/show.ZTS")), 5);
    EXPECT_EQ(GetMediaFileSize(NameOf("capital/none.zts")), 0);
    EXPECT_EQ(GetMediaFileSize(NameOf("capital/none.mkv")), -1);
    std::filesystem::current_path("shift");
    EXPECT_EQ(GetMediaFileSize(ZVFilename(L"show.zts")), 127) << "by a name without a folder";
}
}
