#include "FileFixture.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVFolderLock.h"
#include "system/file/ZVSafeReplace.h"
#include "system/file/ZVTransferPlace.h"

#include <functional>
#include <sys/xattr.h>

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
            EXPECT_TRUE(ZVFileSystem::CopyFile(TextAt(from), TextAt(name)));
            EXPECT_EQ(GetAt(name), "new");
            Put(from, "newer");
            chmod(At(from).c_str(), 0604);
            EXPECT_TRUE(ZVFileSystem::MoveFile(TextAt(from), TextAt(name)));
            EXPECT_EQ(GetAt(name), "newer");
            EXPECT_EQ(ZVFileSystem::GetFileAttributes(TextAt(name)), S_IFREG | 0604u);
            EXPECT_THAT(List(source), IsEmpty());
            std::filesystem::remove(At(name));
        }
        Put(source + "folder/file");
        EXPECT_TRUE(ZVFileSystem::MoveFile(TextAt(source + "folder/"), TextAt("moved")));
        EXPECT_THAT(List("moved"), ElementsAre("file"));
        std::filesystem::remove_all(At("moved"));
        // Somebody who may delete the file, but not give it a second name.
        Put(source + "foreign", "foreign");
        chmod(At(source).c_str(), 0777);
        AsNobody([&] { EXPECT_TRUE(ZVFileSystem::MoveFile(TextAt(source + "foreign"), TextAt("foreign"))); });
        EXPECT_EQ(GetAt("foreign"), "foreign");
        std::filesystem::remove(At("foreign"));
        EXPECT_THAT(List(source), IsEmpty());
        EXPECT_THAT(List(), testing::IsSubsetOf({"disk", "one"})) << "something hidden is left";
    };
    OnOneDeviceAndOnTwo(moveAndCopy);
}

TEST_F(ZVFileMoveTest, ACopyGoesWhereTheTargetLeads)
{
    const ZVString from = ZVNativePath::ToText(Put("new", "new").c_str());
    Put("real", "old");
    Link("real", "link");
    Put("closed/open", "old");
    chmod(At("closed/open").c_str(), 0666);
    chmod(At("closed").c_str(), 0555);
    EXPECT_TRUE(ZVFileSystem::CopyFile(from, TextAt("link")));
    EXPECT_EQ(GetAt("real"), "new");
    EXPECT_TRUE(ZVFileSystem::CopyFile(from, L"/dev/null"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    AsNobody([&] { EXPECT_TRUE(ZVFileSystem::CopyFile(from, TextAt("closed/open"))); });
    EXPECT_EQ(GetAt("closed/open"), "new") << "in a folder that takes no new files";
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
            EXPECT_FALSE(move(TextAt("missing"), TextAt("to")));
            for (const char* to : {"folder", "missing/to", "/var/zv"})
                AsNobody([&] { EXPECT_FALSE(move(file, TextAt(to))) << to; });
        }
        EXPECT_FALSE(ZVFileSystem::CopyFile(TextAt("folder"), TextAt("to")));
        EXPECT_FALSE(ZVFileSystem::MoveFile(file + L"/x", TextAt("to")));
        // A source that could not be deleted is not copied first.
        chmod(At(source).c_str(), 0555);
        AsNobody([&] { EXPECT_FALSE(ZVFileSystem::MoveFile(file, TextAt("folder/to"))); });
        ExpectLogged("1|ZVFileSystem::MoveFile|Error 2 moving file: " + At("missing"));
        ExpectLogged("1|ZVFileSystem::CopyFile|Error 21 copying file: " + At("folder"));
        EXPECT_EQ(GetAt(source + "file"), "new");
        EXPECT_THAT(List("folder"), IsEmpty());
    };
    OnOneDeviceAndOnTwo(failToMove);
}

TEST_F(ZVFileMoveTest, AFullDiskKeepsTheOldFile)
{
    const auto fillDisk = [&]
    {
        const ZVString big = ZVNativePath::ToText(Put("big", std::string(100'000, 'x')).c_str());
        Put("disk/file", "old");
        const ZVString file = TextAt("disk/file");
        EXPECT_FALSE(ZVFileSystem::CopyFile(big, file));
        EXPECT_FALSE(ZVFileSystem::MoveFile(big, file));
        EXPECT_TRUE(ZVFileSystem::Exists(big));
        EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(file, big, 1));
        ExpectLogged("1|ZVFileSystem::MoveFile|Command failed with 1: ");
        EXPECT_EQ(GetAt("disk/file"), "old");
        EXPECT_THAT(List("disk"), ElementsAre("file"));
    };
    WithSmallDisk(fillDisk);
}

TEST_F(ZVFileMoveTest, WhatADeadProcessLeftHiddenIsSwept)
{
    const std::string hidden = Bytes(ZVTransferPlace::FolderStart) + std::to_string(geteuid());
    Put(hidden + "/film", "a part");
    Put(hidden + "/folder/file");
    {
        const ZVTransferPlace place(TextAt(""));
        EXPECT_THAT(List(hidden), IsEmpty());
        Put(Bytes(place.GetPath()), "mine");
        EXPECT_TRUE(ZVString(L"x").SaveToFile(TextAt("other"), 2));
        EXPECT_EQ(GetAt(Bytes(place.GetPath())), "mine") << "a live process is not disturbed";
    }
    EXPECT_THAT(List(), ElementsAre("other"));
    // A name that somebody else has taken is not used.
    MakeFolder(Bytes(ZVTransferPlace::FolderStart) + "65534");
    AsNobody([&] { EXPECT_TRUE(ZVString(L"x").SaveToFile(TextAt("nobody"), 2)); });
    EXPECT_EQ(GetAt("nobody"), "x");
}

// A replacement of which one step fails or, in a process that ends, that step and all after it. It also looks whether the folder
// is locked in each step. Without links the file system is one where a file has one name.
class BrokenReplace final : public ZVSafeReplace
{
public:
    BrokenReplace(const ZVString& path, const ZVString& newPath, bool hasLinks)
        : ZVSafeReplace(path, newPath, {.MinimumSize = 3, .Backup = ZVReplaceOptions::OldFile::StaysAsBackup}),
          m_path(path),
          m_hasLinks(hasLinks)
    {
    }

    int GoodSteps = INT_MAX;
    bool Ends = false;
    std::string LockedSteps;

protected:
    bool Bring(const ZVString& from, const ZVTransferPlace& place) override
    {
        return Take("bring") && ZVSafeReplace::Bring(from, place);
    }
    bool Link(const ZVString& from, const ZVString& to) override
    {
        errno = EPERM;
        if (!m_hasLinks)
            return false;
        errno = EIO;
        return Take("link") && ZVSafeReplace::Link(from, to);
    }
    bool Move(const ZVString& from, const ZVString& to) override { return Take("move") && ZVSafeReplace::Move(from, to); }
    bool Copy(const ZVString& from, const ZVString& to) override { return Take("copy") && ZVSafeReplace::Copy(from, to); }
    bool Delete(const ZVString& path) override { return Take("delete") && ZVSafeReplace::Delete(path); }

private:
    bool Take(const char* step)
    {
        const ZVNativePath folder(ZVFilename::FromPath(m_path).GetDirectory());
        if (!ZVFolderLock::Try(ZVDescriptor(open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC)), LOCK_EX))
            LockedSteps.append(step).append(" ");
        errno = EIO;
        return GoodSteps-- > 0 || (!Ends && GoodSteps < -1);
    }

    ZVString m_path;
    bool m_hasLinks;
};

using ZVSafeReplaceTest = ZVFileMoveTest;

TEST_F(ZVSafeReplaceTest, NothingIsLostWhicheverStepFails)
{
    const auto breakStep = [&](const std::string& source, int badStep, int firstRename, bool ends, bool hasLinks)
    {
        SCOPED_TRACE(source + (hasLinks ? "" : " without links") + (ends ? " ends before step " : " fails in step ") +
                     std::to_string(badStep));
        Put("t/film", "old");
        Put(source + "new", "new one");
        BrokenReplace replace(TextAt("t/film"), TextAt(source + "new"), hasLinks);
        replace.GoodSteps = badStep;
        replace.Ends = ends;
        const bool isReplaced = replace.Run();
        EXPECT_EQ(isReplaced, badStep > firstRename + 1);
        const bool isSetAside = ends && badStep == firstRename + 1;
        EXPECT_EQ(GetAt("t/film"), isReplaced ? "new one" : isSetAside && !hasLinks ? "(none)" : "old");
        if (!isReplaced)
        {
            EXPECT_EQ(GetAt("t/film.zvoriginal"), isSetAside ? "old" : "(none)");
            EXPECT_EQ(GetAt(source + "new"), ends ? "new one" : "(none)");
        }
        // The next replacement puts the original back, or clears its second name away, even if it fails itself.
        EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(TextAt("t/film"), TextAt("missing"), 1));
        EXPECT_EQ(GetAt("t/film"), isReplaced ? "new one" : "old");
        EXPECT_EQ(GetAt("t/film.zvoriginal"), "(none)");
        std::filesystem::remove_all(At("t"));
    };
    const auto breakEachStep = [&](const std::string& source)
    {
        // Bring it from another device, back up, set aside, put in place, delete the old one.
        const int firstRename = source == "one/" ? 1 : 2;
        for (int badStep = 0; badStep <= firstRename + 3; ++badStep)
            for (const bool ends : {false, true})
                for (const bool hasLinks : {false, true})
                    breakStep(source, badStep, firstRename, ends, hasLinks);
    };
    OnOneDeviceAndOnTwo(breakEachStep);
}

TEST_F(ZVSafeReplaceTest, TheFolderIsLockedForTheRenamesAlone)
{
    const auto replace = [&](const std::string& source)
    {
        for (const auto& [hasLinks, steps] : {std::pair(true, "link move delete "), std::pair(false, "move move delete ")})
        {
            Put("film", "old");
            Put(source + "new", "new");
            BrokenReplace replacement(TextAt("film"), TextAt(source + "new"), hasLinks);
            EXPECT_TRUE(replacement.Run());
            EXPECT_EQ(replacement.LockedSteps, steps);
        }
    };
    OnOneDeviceAndOnTwo(replace);
}

// Also when it comes from another device. The owner can be kept by root alone.
TEST_F(ZVSafeReplaceTest, ANewFileCanTakeWhatBelongsToTheOldOne)
{
    const auto replace = [&](const std::string& source)
    {
        const ZVReplaceOptions options {.From = ZVReplaceOptions::Attributes::OfOldFile};
        Put("film", "old");
        Put("film.zvoriginal", "left by a killed process");
        std::filesystem::create_hard_link(At("film"), At("second"));
        ASSERT_EQ(chown(At("film").c_str(), 1234, 5678), 0);
        ASSERT_EQ(chmod(At("film").c_str(), 04640), 0);
        ASSERT_EQ(setxattr(At("film").c_str(), "user.mood", "good", 4, 0), 0);
        Put(source + "new", "new");
        EXPECT_TRUE(ZVSafeReplace(TextAt("film"), TextAt(source + "new"), options).Run());
        struct stat status;
        ASSERT_EQ(stat(At("film").c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, 1234u);
        EXPECT_EQ(status.st_gid, 5678u);
        EXPECT_EQ(status.st_mode, S_IFREG | 04640u);
        char mood[8] = {};
        EXPECT_EQ(getxattr(At("film").c_str(), "user.mood", mood, sizeof mood), 4);
        EXPECT_EQ(GetAt("film"), "new");
        EXPECT_EQ(GetAt("second"), "old");
        ExpectLogged("The other names of the file keep the old content: " + At("film"));
        EXPECT_FALSE(IsAt("film.zvoriginal"));
        chmod(At("film").c_str(), 0666);
        const auto replaceForeign = [&]
        {
            Put("nobodys", "newest");
            EXPECT_FALSE(ZVSafeReplace(TextAt("film"), TextAt("nobodys"), options).Run());
            ExpectLogged("Error 1 giving a new file the owner of: " + At("film"));
        };
        AsNobody(replaceForeign);
        EXPECT_EQ(GetAt("film"), "new");
        std::filesystem::remove(At("film"));
        std::filesystem::remove(At("second"));
    };
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can give files to others";
    OnOneDeviceAndOnTwo(replace);
}

// A second name that a killed replacement has left changes the status of the file when it goes, and that is no change of the file.
TEST_F(ZVSafeReplaceTest, ReplacesOnlyTheFileThatIsExpected)
{
    Put("film", "old");
    std::filesystem::create_hard_link(At("film"), At("film.zvoriginal"));
    ZVReplaceOptions options {.Expected = ZVFileVersion(ZVFileInfo(TextAt("film")).GetStatus())};
    Put("new", "new");
    EXPECT_TRUE(ZVSafeReplace(TextAt("film"), TextAt("new"), options).Run());
    EXPECT_FALSE(IsAt("film.zvoriginal"));
    Put("new", "newer");
    EXPECT_FALSE(ZVSafeReplace(TextAt("film"), TextAt("new"), options).Run());
    EXPECT_THAT(List(), ElementsAre("film"));
    EXPECT_EQ(GetAt("film"), "new");
}

TEST_F(ZVSafeReplaceTest, KeepsTheOldFileUnlessTheNewOneIsGood)
{
    const auto replace = [&](const char* name, const char* content)
    { return ZVFileSystem::SafeReplaceFile(TextAt(name), ZVNativePath::ToText(Put("new", content).c_str()), 3, true); };
    Put("film", "old");
    MakeFolder("folder");
    EXPECT_FALSE(replace("film", "12"));
    EXPECT_FALSE(replace("folder", "123"));
    EXPECT_FALSE(ZVFileSystem::SafeReplaceFile(TextAt("film"), TextAt("./film"), 1)) << "a file cannot replace itself";
    Put("film.zvoriginal/full");
    EXPECT_FALSE(replace("film", "123"));
    ExpectLogged("1|ZVFileSystem::SafeReplaceFile|Error renaming original file");
    EXPECT_EQ(GetAt("film"), "old");
    std::filesystem::remove_all(At("film.zvoriginal"));
    EXPECT_TRUE(replace("film", "123"));
    EXPECT_TRUE(replace("other", "456")) << "where there is no old file";
    EXPECT_EQ(GetAt("film"), "123");
    EXPECT_EQ(GetAt("film.bak"), "old");
    EXPECT_THAT(List(), ElementsAre("film", "film.bak", "folder", "other"));
}

TEST_F(ZVSafeReplaceTest, ReplacementsOfOneFileComeOneAfterTheOther)
{
    Put("film", "old");
    const auto replace = [&](const std::string& name)
    { return ZVFileSystem::SafeReplaceFile(TextAt("film"), ZVNativePath::ToText(Put(name, "new").c_str()), 3, true); };
    InChildren(replace);
    EXPECT_EQ(GetAt("film"), "new");
    EXPECT_THAT(List(), ElementsAre("film", "film.bak"));
}
}
