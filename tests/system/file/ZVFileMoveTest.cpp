#include "FileFixture.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVSafeReplace.h"

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
        WithSmallDisk([&] { function("disk/"); });
    }
};

TEST_F(ZVFileMoveTest, MovesAndCopies)
{
    const auto moveAndCopy = [&](const std::string& source)
    {
        for (const std::string& name : {std::string("a b'c.mkv"), std::string("\xff\xf0\x9f\x8e\xac\\"), std::string(255, 'n')})
        {
            SCOPED_TRACE(source + name);
            const std::string from = source + name;
            Put(from, "new");
            Put(name, "old");
            EXPECT_TRUE(ZVFileSystem::CopyFile(TextAt(from), TextAt(name)));
            EXPECT_EQ(GetAt(name) + GetAt(from), "newnew");
            Put(from, "newer");
            EXPECT_TRUE(ZVFileSystem::MoveFile(TextAt(from), TextAt(name)));
            EXPECT_EQ(GetAt(name) + GetAt(from), "newer(none)");
            Put(from, "newest");
            EXPECT_TRUE(ZVFileSystem::SafeReplaceFile(TextAt(name), TextAt(from), 1, true));
            EXPECT_EQ(GetAt(name) + List(source), "newest");
            std::filesystem::remove(At(name));
        }
        Put(source + "folder/file", "x");
        EXPECT_TRUE(ZVFileSystem::MoveFile(TextAt(source + "folder/"), TextAt("moved")));
        EXPECT_EQ(List("moved"), "file ");
        std::filesystem::remove_all(At("moved"));
    };
    OnOneDeviceAndOnTwo(moveAndCopy);
}

TEST_F(ZVFileMoveTest, NothingIsLostWhereItFails)
{
    const auto failToMove = [&](const std::string& source)
    {
        SCOPED_TRACE(source);
        const ZVString file = TextAt(source + "file");
        Put(source + "file", "new");
        MakeFolder("folder");
        for (const auto move : {ZVFileSystem::MoveFile, ZVFileSystem::CopyFile})
        {
            EXPECT_FALSE(move(TextAt("missing"), TextAt("to")) || move(file, TextAt("folder")) ||
                         move(file, TextAt("missing/to")));
            AsNobody([&] { EXPECT_FALSE(move(file, L"/var/zv")); });
        }
        EXPECT_FALSE(ZVFileSystem::CopyFile(TextAt("folder"), TextAt("to")) ||
                     ZVFileSystem::MoveFile(file + L"/x", TextAt("to")));
        ExpectLogged("1|ZVFileSystem::MoveFile|Error 20 moving file: ");
        ExpectLogged("1|ZVFileSystem::MoveFile|Error 2 moving file: " + At("missing"));
        ExpectLogged("1|ZVFileSystem::CopyFile|Error 21 copying file: " + At("folder"));
        EXPECT_EQ(GetAt(source + "file") + List("folder"), "new");
    };
    OnOneDeviceAndOnTwo(failToMove);
}

TEST_F(ZVFileMoveTest, AFullDiskKeepsTheOldFile)
{
    const auto fillDisk = [&]
    {
        Put("big", std::string(100'000, 'x'));
        Put("disk/file", "old");
        EXPECT_FALSE(ZVFileSystem::CopyFile(TextAt("big"), TextAt("disk/file")));
        EXPECT_FALSE(ZVFileSystem::MoveFile(TextAt("big"), TextAt("disk/file")));
        EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(TextAt("disk/file"), TextAt("big"), 1));
        ExpectLogged("1|ZVFileSystem::MoveFile|Command failed with 1: ");
        EXPECT_EQ(List("disk") + GetAt("disk/file"), "file old");
    };
    WithSmallDisk(fillDisk);
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
    using ZVSafeReplace::ZVSafeReplace;

    bool RunUntil(int badStep, bool ends)
    try
    {
        m_stepsLeft = badStep;
        m_ends = ends;
        return Run(3, true);
    }
    catch (const BrokenReplace*)
    {
        return false;
    }

    bool WasBroken() const { return m_stepsLeft < 0; }

protected:
    bool Move(const ZVString& from, const ZVString& to) override { return Take() && ZVSafeReplace::Move(from, to); }
    bool Copy(const ZVString& from, const ZVString& to) override { return Take() && ZVSafeReplace::Copy(from, to); }
    bool Delete(const ZVString& path) override { return Take() && ZVSafeReplace::Delete(path); }

private:
    bool Take()
    {
        const bool isBad = m_stepsLeft-- == 0;
        if (isBad && m_ends)
            throw this;
        return !isBad;
    }

    int m_stepsLeft = 0;
    bool m_ends = false;
};

using ZVSafeReplaceTest = ZVFileMoveTest;

TEST_F(ZVSafeReplaceTest, NothingIsLostWhicheverStepFails)
{
    const auto breakStep = [&](const std::string& source, int badStep, int lastStep, bool ends)
    {
        SCOPED_TRACE(source + (ends ? " ends before step " : " fails in step ") + std::to_string(badStep));
        Put("t/film", "old");
        Put(source + "new", "new one");
        BrokenReplace replace(TextAt("t/film"), TextAt(source + "new"));
        const bool isDone = replace.RunUntil(badStep, ends);
        EXPECT_EQ(replace.WasBroken(), badStep <= lastStep);
        // The old file may stay where the new one is in place.
        EXPECT_EQ(isDone, badStep > lastStep || (badStep == lastStep && !ends));
        const bool isReplaced = badStep >= lastStep;
        const bool isSetAside = IsAt("t/film.zvoriginal");
        EXPECT_EQ(isSetAside, badStep == lastStep || (ends && badStep == lastStep - 1));
        EXPECT_EQ(GetAt("t/film"), isReplaced ? "new one" : isSetAside ? "(none)" : "old");
        EXPECT_EQ(GetAt("t/film.zvoriginal"), isSetAside ? "old" : "(none)");
        EXPECT_TRUE(ends || !(IsAt(source + "new") || IsAt("t/film.zvnew")));
        // The next replacement puts the original back even when it fails itself.
        EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(TextAt("t/film"), TextAt("missing"), 1));
        EXPECT_EQ(GetAt("t/film"), isReplaced ? "new one" : "old");
        std::filesystem::remove_all(At("t"));
    };
    const auto breakEachStep = [&](const std::string& source)
    {
        // Bring beside, back up, set aside, put in place, delete.
        const int lastStep = source == "one/" ? 3 : 4;
        for (const bool ends : {false, true})
            for (int badStep = 0; badStep <= lastStep + 1; ++badStep)
                breakStep(source, badStep, lastStep, ends);
    };
    OnOneDeviceAndOnTwo(breakEachStep);
}

TEST_F(ZVSafeReplaceTest, KeepsTheOldFileUnlessTheNewOneIsGood)
{
    const auto replace = [&](const std::string& name, const std::string& content, bool keepBackup = false)
    { return ZVFileSystem::SafeReplaceFile(TextAt(name), ZVNativePath::ToText(Put("new", content).c_str()), 3, keepBackup); };
    Put("film", "old");
    EXPECT_FALSE(replace("film", "12"));
    ExpectLogged("1|ZVFileSystem::SafeReplaceFile|The new file has 2 bytes and not 3: ");
    // A file cannot replace itself, and is not lost either.
    EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(TextAt("film"), TextAt("./film"), 1));
    MakeFolder("folder");
    EXPECT_FALSE(replace("folder", "123"));
    Put("film.zvoriginal/full");
    EXPECT_FALSE(replace("film", "123"));
    EXPECT_THAT(m_tools.Manager.Lines, testing::Contains("1|ZVFileSystem::SafeReplaceFile|Error renaming original file"));
    EXPECT_EQ(List() + GetAt("film"), "film film.zvoriginal folder old");
    std::filesystem::remove_all(At("film.zvoriginal"));

    EXPECT_TRUE(replace("film", "123") && replace("other", "456", true));
    EXPECT_EQ(List() + GetAt("film") + GetAt("other"), "film folder other 123456");
    EXPECT_TRUE(replace("film", "789", true));
    EXPECT_EQ(GetAt("film") + GetAt("film.bak"), "789123");
}

TEST_F(ZVSafeReplaceTest, ReplacementsOfOneFileComeOneAfterTheOther)
{
    Put("film", "old");
    const auto replace = [&](const std::string& name)
    { return ZVFileSystem::SafeReplaceFile(TextAt("film"), ZVNativePath::ToText(Put(name, "new").c_str()), 3); };
    InChildren(replace);
    EXPECT_EQ(List() + GetAt("film"), "film new");
}
}
