#include "FileFixture.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVSafeReplace.h"

#include <functional>

namespace
{
class ZVFileMoveTest : public FileFixture
{
protected:
    // Runs a function with the folder that a new file comes from: on the same device and, where that can be, on another.
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
            EXPECT_TRUE(ZVFileSystem::CopyFile(TextAt(from), TextAt(name)) && GetAt(name) == "new" && GetAt(from) == "new");
            Put(from, "newer");
            EXPECT_TRUE(ZVFileSystem::MoveFile(TextAt(from), TextAt(name)) && GetAt(name) == "newer" && !IsAt(from));
            Put(from, "newest");
            EXPECT_TRUE(ZVFileSystem::SafeReplaceFile(TextAt(name), TextAt(from), 1, true));
            EXPECT_EQ(GetAt(name) + List(source), "newest");
            std::filesystem::remove(At(name));
        }
        Put(source + "folder/file");
        EXPECT_TRUE(ZVFileSystem::MoveFile(TextAt(source + "folder/"), TextAt("moved")));
        EXPECT_EQ(List("moved"), "file ");
        std::filesystem::remove_all(At("moved"));
    };
    OnOneDeviceAndOnTwo(moveAndCopy);
    // A copy goes where the target leads.
    Put("new", "new");
    Put("real", "old");
    Link("real", "link");
    EXPECT_TRUE(ZVFileSystem::CopyFile(TextAt("new"), TextAt("link")) && ZVFileSystem::CopyFile(TextAt("new"), L"/dev/null"));
    EXPECT_TRUE(GetAt("real") == "new" && std::filesystem::is_character_file("/dev/null"));
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
        const ZVString file = TextAt("disk/file");
        EXPECT_FALSE(ZVFileSystem::CopyFile(TextAt("big"), file) || ZVFileSystem::MoveFile(TextAt("big"), file) ||
                     ZVFileSystem::SafeReplaceFile(file, TextAt("big"), 1));
        ExpectLogged("1|ZVFileSystem::MoveFile|Command failed with 1: ");
        EXPECT_EQ(List("disk") + GetAt("disk/file"), "file old");
    };
    WithSmallDisk(fillDisk);
}

// A replacement of which one step fails or, in a process that ends, that step and all behind it.
class BrokenReplace final : public ZVSafeReplace
{
public:
    using ZVSafeReplace::ZVSafeReplace;

    int GoodSteps = 0;
    bool Ends = false;

protected:
    bool Move(const ZVString& from, const ZVString& to) override { return Take() && ZVSafeReplace::Move(from, to); }
    bool Copy(const ZVString& from, const ZVString& to) override { return Take() && ZVSafeReplace::Copy(from, to); }
    bool Delete(const ZVString& path) override { return Take() && ZVSafeReplace::Delete(path); }

private:
    bool Take() { return GoodSteps-- > 0 || (!Ends && GoodSteps < -1); }
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
        replace.GoodSteps = badStep;
        replace.Ends = ends;
        const bool isReplaced = replace.Run(3, true);
        EXPECT_EQ(isReplaced, badStep >= lastStep);
        EXPECT_EQ(replace.GoodSteps < 0, badStep <= lastStep);
        // The old file may stay where the new one is in place.
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
        for (int badStep = 0; badStep <= lastStep + 1; ++badStep)
            for (const bool ends : {false, true})
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
    ExpectLogged("1|ZVFileSystem::SafeReplaceFile|Error renaming original file");
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
    { return !Put(name, "new").empty() && ZVFileSystem::SafeReplaceFile(TextAt("film"), TextAt(name), 3); };
    InChildren(replace);
    EXPECT_EQ(List() + GetAt("film"), "film new");
}
}
