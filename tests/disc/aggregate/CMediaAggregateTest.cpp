#include "disc/aggregate/CMediaAggregate.h"

#include "core/string/ZVStringUTF8.h"
#include "process/WorkFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

namespace
{
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class CMediaAggregateTest : public testing::Test
{
protected:
    void Put(const std::string& name, const std::string& content = "") const
    {
        fs::create_directories(fs::path(m_folder.PathOf(name)).parent_path());
        WorkFolder::Write(m_folder.PathOf(name), content);
    }

    ZVString TextOf(const std::string& name) const { return ZVString::FromUTF8(m_folder.PathOf(name).c_str()); }

    // The bare names of the files, in their order.
    static std::vector<std::string> GetNames(const CMediaAggregate& aggregate, bool recursive)
    {
        ZVStringArray files;
        aggregate.GetFiles(files, recursive);
        std::vector<std::string> names;
        for (const ZVString& file : files)
            names.push_back(fs::path(ZVStringUTF8(file).Get()).filename());
        return names;
    }

    WorkFolder m_folder;
};

TEST_F(CMediaAggregateTest, ANameMayCarryItsType)
{
    ZVFilename name(L"/films/disc.bdmv3d");
    name.SetProperty(L"FileType", L"BLURAY;x");
    EXPECT_EQ(CMediaAggregate::GetType(name, L"bdmv3d"), 3);
    EXPECT_EQ(CMediaAggregate::GetType(name, L"BDMV3D"), 0);
    name.SetProperty(L"MediaAggregate", L"1");
    EXPECT_EQ(CMediaAggregate::GetType(name, L"bdmv3d"), 1);

    ZVFilename noFolder(L"film.mkv");
    noFolder.SetProperty(L"MediaAggregate", L"3");
    CMediaAggregate aggregate;
    EXPECT_TRUE(aggregate.Detect(noFolder.GetSerialized()));
    EXPECT_EQ(aggregate.Type, 3);
    EXPECT_STREQ(aggregate.MainFile, L"film.mkv");
    EXPECT_FALSE(aggregate.Detect(L""));
    EXPECT_FALSE(aggregate.Detect(nullptr));
    EXPECT_EQ(aggregate.Type, 0);
}

TEST_F(CMediaAggregateTest, FindsDiscsInFolders)
{
    Put("both/VIDEO_TS.IFO");
    Put("both/index.bdmv");
    Put("flat/index.bdmv");
    Put("deep/index.bdmv");
    Put("deep/STREAM/SSIF/00001.ssif");
    Put("small/video_ts.ifo");
    Put("none/film.mkv");
    const std::tuple<const char*, int32_t, const wchar_t*> rows[] = {
        {"both",  1, L"VIDEO_TS.IFO"},
        {"flat",  2, L"index.bdmv"  },
        {"deep",  3, L"index.bdmv"  },
        {"small", 1, L"video_ts.ifo"},
        {"none",  0, L""            },
    };
    for (const auto& [folder, type, mainFile] : rows)
    {
        CMediaAggregate aggregate;
        EXPECT_EQ(aggregate.Detect(TextOf(folder) + L"/x.ifo"), type != 0) << folder;
        EXPECT_EQ(aggregate.Type, type) << folder;
        EXPECT_STREQ(aggregate.MainFile, mainFile) << folder;
    }
    EXPECT_FALSE(CMediaAggregate().DetectInFolder(L""));
}

TEST_F(CMediaAggregateTest, RestoresALostMainFileAlsoTwiceAtOnce)
{
    const std::string content(300'000, 'b');
    Put("VIDEO_TS/VIDEO_TS.BUP", content);
    for (int worker = 0; worker < 4; ++worker)
        if (fork() == 0)
            _exit(CMediaAggregate().DetectInFolder(TextOf("VIDEO_TS")) ? 0 : 1);
    int status = 0;
    while (wait(&status) > 0)
        EXPECT_EQ(status, 0);
    EXPECT_EQ(WorkFolder::Read(m_folder.PathOf("VIDEO_TS/VIDEO_TS.IFO")), content);
    std::vector<std::string> left;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_folder.PathOf("VIDEO_TS")))
        left.push_back(entry.path().filename());
    EXPECT_THAT(left, UnorderedElementsAre("VIDEO_TS.BUP", "VIDEO_TS.IFO"));
}

TEST_F(CMediaAggregateTest, ListsADVDInTheOrderOfTheDisc)
{
    for (const char* name : {"VIDEO_TS.BUP", "VIDEO_TS.IFO", "VTS_01_0.BUP", "VTS_01_0.IFO", "VTS_01_0.VOB", "VTS_01_1.VOB",
                             "vts_01_2.vob", "VTS_01_4.VOB", "VTS_02_0.IFO", "VTS_04_0.IFO", "notes.txt"})
        Put(std::string("Disc/VIDEO_TS/") + name, "12345");
    CMediaAggregate aggregate;
    ASSERT_TRUE(aggregate.DetectInFolder(TextOf("Disc/VIDEO_TS")));
    EXPECT_STREQ(aggregate.GetRootFolder(), TextOf("Disc") + L"/");
    EXPECT_THAT(GetNames(aggregate, true),
                ElementsAre("VIDEO_TS.IFO", "VIDEO_TS.BUP", "VTS_01_0.IFO", "VTS_01_0.VOB", "VTS_01_1.VOB", "vts_01_2.vob",
                            "VTS_01_0.BUP", "VTS_02_0.IFO", "VTS_01_4.VOB", "VTS_04_0.IFO"));
    EXPECT_EQ(aggregate.GetTotalSize(true), 50);
    EXPECT_EQ(aggregate.GetTotalSize(false), 0) << "the root has no files of its own";
}
}
