#include "system/file/ZVLockedTemporaryFile.h"

#include "FileFixture.h"

#include <memory>

namespace
{
class ZVLockedTemporaryFileTest : public FileFixture
{
protected:
    ZVLockedTemporaryFileTest() { setenv("HOME", m_folder.c_str(), 1); }

    static std::unique_ptr<ZVLockedTemporaryFile> Make() { return std::make_unique<ZVLockedTemporaryFile>(L"film", L"mp4"); }

    const std::string m_temp = ".zivora/Generic/Temp/";
};

TEST_F(ZVLockedTemporaryFileTest, ClearsAwayWhatNobodyHasLocked)
{
    for (const char* const name : {"film.mp4", "film - 12.mp4", "film - x.mp4", "film - .mp4", "film2.mp4", "film.mp4.x"})
        Put(m_temp + name, "left");
    const auto first = Make();
    const auto second = Make();
    EXPECT_TRUE(second->IsReady());
    EXPECT_TRUE(first->Write("one", 3));
    EXPECT_TRUE(first->Finish());
    // It is somebody's until the object goes, also when it is written and closed.
    const auto third = Make();
    EXPECT_THAT(List(m_temp), ElementsAre("film - .mp4", "film - 1.mp4", "film - 2.mp4", "film - x.mp4", "film.mp4", "film.mp4.x",
                                          "film2.mp4"));
    EXPECT_EQ(GetAt(m_temp + "film.mp4"), "one");
}

TEST_F(ZVLockedTemporaryFileTest, GoesUnlessItIsHandedOver)
{
    const auto make = [&]
    {
        Make();
        EXPECT_THAT(List(m_temp), IsEmpty());
        Make()->HandOver();
        EXPECT_THAT(List(m_temp), ElementsAre("film.mp4"));
        chmod(At(m_temp).c_str(), 0555);
        const auto file = Make();
        EXPECT_FALSE(file->IsReady());
        EXPECT_EQ(file->GetError(), EACCES);
    };
    chmod(m_folder.c_str(), 0777);
    AsNobody(make);
}

// Of processes that begin at the same time, none takes a file for left that another one has just made.
TEST_F(ZVLockedTemporaryFileTest, ProcessesHaveFilesOfTheirOwn)
{
    const auto use = [](const std::string& number)
    {
        const auto file = Make();
        if (!file->IsReady() || !file->Write(number.data(), 1) || !file->Finish())
            return false;
        std::ifstream content(ZVNativePath(file->GetPath()).Get());
        return content.get() == number.front() && content.get() == EOF;
    };
    InChildren(use);
    EXPECT_THAT(List(m_temp), IsEmpty());
}
}
