#include "FileFixture.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVSafeReplace.h"

#include <algorithm>
#include <functional>

namespace
{
class ZVFileMoveTest : public FileFixture
{
protected:
    // Runs a function on the own folder and, where that can be, on two devices: the second stands for the folder that the new
    // file comes from.
    void OnOneDeviceAndOnTwo(const std::function<void(const std::string& source)>& function) const
    {
        MakeFolder("one");
        function("one/");
        const std::string reason = MissingSmallDisk();
        if (!reason.empty())
            GTEST_SKIP() << reason;
        EXPECT_TRUE(WithSmallDisk([&] { function("disk/"); }));
    }
};

TEST_F(ZVFileMoveTest, MovesAndCopies)
{
    OnOneDeviceAndOnTwo(
        [&](const std::string& source)
        {
            const std::string longest(255, 'n');
            for (const std::string& name : {std::string("a b'c.mkv"), std::string("\xff\xf0\x9f\x8e\xac\\"), longest})
            {
                SCOPED_TRACE(source + name);
                const std::string& target = name;
                Put(source + name, "new");
                Put(target, "old");
                EXPECT_TRUE(ZVFileSystem::CopyFile(TextAt(source + name), TextAt(target)));
                EXPECT_EQ(GetAt(target) + GetAt(source + name), "newnew");
                Put(source + name, "newer");
                EXPECT_TRUE(ZVFileSystem::MoveFile(TextAt(source + name), TextAt(target)));
                Put(source + name, "newest");
                EXPECT_TRUE(ZVFileSystem::SafeReplaceFile(TextAt(target), TextAt(source + name), 1, true));
                EXPECT_EQ(GetAt(target), "newest");
                EXPECT_EQ(List(source), "");
                std::filesystem::remove(At(target));
            }
            Put(source + "folder/file", "x");
            EXPECT_TRUE(ZVFileSystem::MoveFile(TextAt(source + "folder/"), TextAt("moved")));
            EXPECT_EQ(List("moved"), "file ");
            std::filesystem::remove_all(At("moved"));
        });
}

TEST_F(ZVFileMoveTest, NothingIsLostWhereItFails)
{
    OnOneDeviceAndOnTwo(
        [&](const std::string& source)
        {
            SCOPED_TRACE(source);
            Put(source + "file", "new");
            MakeFolder("folder");
            for (const auto move : {ZVFileSystem::MoveFile, ZVFileSystem::CopyFile})
            {
                EXPECT_FALSE(move(TextAt("missing"), TextAt("to")));
                EXPECT_FALSE(move(TextAt(source + "file"), TextAt("folder")));
                EXPECT_FALSE(move(TextAt(source + "file"), TextAt("missing/to")));
                EXPECT_TRUE(AsNobody([&] { EXPECT_FALSE(move(TextAt(source + "file"), L"/var/zv")); }));
            }
            ExpectLogged("1|ZVFileSystem::MoveFile|Error 2 moving file: " + At("missing"));
            ExpectLogged("1|ZVFileSystem::CopyFile|Error 21 copying file: " + At("folder"));
            EXPECT_FALSE(ZVFileSystem::CopyFile(TextAt("folder"), TextAt("to")));
            EXPECT_EQ(GetAt(source + "file"), "new");
            EXPECT_EQ(List("folder"), "");
        });
}

TEST_F(ZVFileMoveTest, AFullDiskKeepsTheOldFile)
{
    const std::string reason = MissingSmallDisk();
    if (!reason.empty())
        GTEST_SKIP() << reason;
    EXPECT_TRUE(WithSmallDisk(
        [&]
        {
            Put("big", std::string(100'000, 'x'));
            Put("disk/file", "old");
            EXPECT_FALSE(ZVFileSystem::CopyFile(TextAt("big"), TextAt("disk/file")));
            EXPECT_FALSE(ZVFileSystem::MoveFile(TextAt("big"), TextAt("disk/file")));
            EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(TextAt("disk/file"), TextAt("big"), 1));
            ExpectLogged("1|ZVFileSystem::MoveFile|Command failed with 1: ");
            EXPECT_EQ(GetAt("disk/file"), "old");
            EXPECT_EQ(List("disk"), "file ");
        }));
}

TEST_F(ZVFileMoveTest, ACopyFollowsWhereTheTargetLeads)
{
    Put("new", "new");
    Put("real", "old");
    Link("real", "link");
    EXPECT_TRUE(ZVFileSystem::CopyFile(TextAt("new"), TextAt("link")));
    EXPECT_EQ(GetAt("real"), "new");
    EXPECT_TRUE(ZVFileSystem::CopyFile(TextAt("new"), L"/dev/null"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

// A replacement of which one step fails, or is the last thing that the process does.
class BrokenReplace final : public ZVSafeReplace
{
public:
    struct ProcessEnd
    {
    };

    BrokenReplace(const ZVString& path, const ZVString& newPath, int badStep, bool ends)
        : ZVSafeReplace(path, newPath), m_stepsLeft(badStep), m_ends(ends)
    {
    }

    // The bad step was reached.
    bool IsBroken = false;

protected:
    bool Move(const ZVString& from, const ZVString& to) override { return Take() && ZVSafeReplace::Move(from, to); }
    bool Copy(const ZVString& from, const ZVString& to) override { return Take() && ZVSafeReplace::Copy(from, to); }
    bool Delete(const ZVString& path) override { return Take() && ZVSafeReplace::Delete(path); }

private:
    bool Take()
    {
        if (m_stepsLeft-- != 0)
            return true;
        IsBroken = true;
        if (m_ends)
            throw ProcessEnd();
        return false;
    }

    int m_stepsLeft;
    bool m_ends;
};

class ZVSafeReplaceTest : public ZVFileMoveTest
{
protected:
    static bool RunToItsEnd(BrokenReplace& replace)
    {
        try
        {
            return replace.Run(3, true);
        }
        catch (const BrokenReplace::ProcessEnd&)
        {
            return false;
        }
    }

    // The original is whole under one of its two names, and the next replacement puts it back even when it fails itself.
    void ExpectTheOldFileIsFoundAgain() const
    {
        const bool isReplaced = GetAt("t/film") == "new one";
        EXPECT_EQ(GetAt(IsAt("t/film") && !isReplaced ? "t/film" : "t/film.zvoriginal"), "old");
        EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(TextAt("t/film"), TextAt("missing"), 1));
        EXPECT_EQ(GetAt("t/film"), isReplaced ? "new one" : "old");
    }
};

TEST_F(ZVSafeReplaceTest, NothingIsLostWhicheverStepFails)
{
    OnOneDeviceAndOnTwo(
        [&](const std::string& source)
        {
            // Bring beside, back up, set aside, put in place, delete.
            const int lastStep = source == "one/" ? 3 : 4;
            for (const bool ends : {false, true})
                for (int badStep = 0; badStep <= lastStep + 1; ++badStep)
                {
                    SCOPED_TRACE(source + (ends ? " ends before step " : " fails in step ") + std::to_string(badStep));
                    Put("t/film", "old");
                    Put(source + "new", "new one");
                    BrokenReplace replace(TextAt("t/film"), TextAt(source + "new"), badStep, ends);
                    const bool isDone = RunToItsEnd(replace);
                    // The old file may stay where the new one is in place.
                    EXPECT_EQ(isDone, badStep > lastStep || (badStep == lastStep && !ends));
                    EXPECT_EQ(replace.IsBroken, badStep <= lastStep);
                    if (ends && replace.IsBroken)
                    {
                        ExpectTheOldFileIsFoundAgain();
                    }
                    else
                    {
                        EXPECT_EQ(GetAt("t/film"), isDone ? "new one" : "old");
                        EXPECT_EQ(List(source), "");
                        EXPECT_EQ(IsAt("t/film.zvoriginal"), badStep == lastStep);
                        EXPECT_FALSE(IsAt("t/film.zvnew"));
                    }
                    std::filesystem::remove_all(At("t"));
                    std::filesystem::remove(At(source + "new"));
                }
        });
}

TEST_F(ZVSafeReplaceTest, KeepsTheOldFileUnlessTheNewOneIsGood)
{
    Put("film", "old");
    Put("new", "12");
    EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(TextAt("film"), TextAt("new"), 3));
    EXPECT_EQ(List(), "film ");
    ExpectLogged("1|ZVFileSystem::SafeReplaceFile|The new file has 2 bytes and not 3: ");
    // A file cannot replace itself, and is not lost either.
    EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(TextAt("film"), TextAt("./film"), 1));
    EXPECT_EQ(GetAt("film"), "old");

    Put("new", "123");
    Put("film.zvoriginal/full");
    EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(TextAt("film"), TextAt("new"), 3));
    ExpectLogged("|Error renaming original file: " + At("film"));
    EXPECT_EQ(List(), "film film.zvoriginal ");
    std::filesystem::remove_all(At("film.zvoriginal"));

    Put("new", "123");
    EXPECT_TRUE(ZVFileSystem::SafeReplaceFile(TextAt("film"), TextAt("new"), 3));
    Put("new", "456");
    EXPECT_TRUE(ZVFileSystem::SafeReplaceFile(TextAt("other"), TextAt("new"), 3, true));
    EXPECT_EQ(List(), "film other ");
    EXPECT_EQ(GetAt("film") + GetAt("other"), "123456");

    Put("new", "789");
    MakeFolder("folder");
    EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(TextAt("folder"), TextAt("new"), 1));
    EXPECT_EQ(List(), "film folder other ");
}

TEST_F(ZVSafeReplaceTest, ReplacementsOfOneFileComeOneAfterTheOther)
{
    Put("film", "old");
    const auto replace = [&](const std::string& name)
    {
        bool isDone = true;
        for (int round = 0; round < 50; ++round)
            isDone = ZVFileSystem::SafeReplaceFile(TextAt("film"), ZVNativePath::ToText(Put(name, "new").c_str()), 3) && isDone;
        return isDone;
    };
    EXPECT_TRUE(InChildren(replace));
    EXPECT_EQ(GetAt("film"), "new");
    EXPECT_EQ(List(), "film ");
}
}
