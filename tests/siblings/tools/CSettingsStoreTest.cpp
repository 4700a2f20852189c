#include "siblings/tools/settings/CSettingsStore.h"

#include "FakeTools.h"
#include "ToolsFolder.h"
#include "siblings/tools/log/CLogManager.h"
#include "system/library/ZVDescriptor.h"
#include "system/library/ZVDllString.h"
#include "system/log/ZVElapsedTime.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <thread>

namespace
{
using testing::ElementsAre;
using testing::HasSubstr;

constexpr char FileName[] = "Settings.db";
constexpr char MaskName[] = "Logs/log-mask";

class CSettingsStoreTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!m_sqlite.Load("libsqlite3.so.0"))
            GTEST_SKIP() << "libsqlite3.so.0 is not installed";
    }

    // What the store reads, or "(none)".
    static std::wstring Read(CSettingsStore& store, const wchar_t* section, const wchar_t* name)
    {
        ZVString text = L"left over";
        ZVDllString value(text);
        if (store.GetSetting(section, name, value))
            return text.GetText();
        EXPECT_STREQ(text, L"");
        return L"(none)";
    }

    // What a store of its own reads in a folder in which nothing can be changed.
    std::wstring ReadUnwritable(const ZVString& folder)
    {
        CSettingsStore store(folder, m_log);
        EXPECT_FALSE(store.SetSetting(L"S", L"n", L"changed"));
        EXPECT_EQ(Read(store, L"S", L"missing"), L"(none)");
        return Read(store, L"S", L"n");
    }

    ToolsFolder m_folder;
    FakeLogManager m_log;
    CSQLiteLibrary m_sqlite;
};

TEST_F(CSettingsStoreTest, KeepsSettings)
{
    const ZVString folder = m_folder.AsString() + L"made/on the way/";
    CSettingsStore store(folder, m_log);
    EXPECT_EQ(Read(store, L"A", L"x"), L"(none)");
    EXPECT_TRUE(store.RemoveSetting(L"A", L"x"));
    EXPECT_FALSE(m_folder.Has("made")) << "reading and removing have made files";
    for (const wchar_t* name : {L"x", L"X", L"gone"})
        EXPECT_TRUE(store.SetSetting(L"A", name, ZVString(name) + L"; '\"\n\u00e4 \u0416"));
    EXPECT_TRUE(store.SetSetting(L"A", L"X", L""));
    EXPECT_TRUE(store.RemoveSetting(L"A", L"gone"));
    CSettingsStore other(folder, m_log);
    EXPECT_EQ(Read(other, L"A", L"x"), L"x; '\"\n\u00e4 \u0416");
    EXPECT_EQ(Read(other, L"A", L"X"), L"");
    EXPECT_EQ(Read(other, L"A", L"gone"), L"(none)");
    EXPECT_THAT(m_log.Lines, testing::IsEmpty());
}

TEST_F(CSettingsStoreTest, ProcessesBeginAtOnceWithNoFileOrADamagedOne)
{
    constexpr int ProcessCount = 6, SettingCount = 10;
    for (int round = 0; round < 10; ++round)
    {
        const bool isDamaged = round % 2 == 1;
        const std::string folder = std::to_string(round) + "/";
        const ZVString path = m_folder.AsString() + ZVString::FromInt(round) + L"/";
        if (isDamaged)
            m_folder.Write(folder + FileName, "no database");
        const auto set = [&](int process)
        {
            CSettingsStore store(path, m_log);
            bool isGood = true;
            for (int index = 0; index < SettingCount; ++index)
                isGood &= store.SetSetting(L"S", ZVFormat(L"%d-%d", process, index), L"v");
            return isGood;
        };
        ASSERT_TRUE(RunProcesses(ProcessCount, set));
        EXPECT_EQ(m_folder.Read(folder + "Settings.db.damaged"), isDamaged ? "no database" : "");
        CSettingsStore store(path, m_log);
        for (int setting = 0; setting < ProcessCount * SettingCount; ++setting)
            EXPECT_EQ(Read(store, L"S", ZVFormat(L"%d-%d", setting / SettingCount, setting % SettingCount)), L"v");
    }
}

TEST_F(CSettingsStoreTest, SetsADamagedFileAside)
{
    {
        // Enough for several pages.
        CSettingsStore store(m_folder.AsString(), m_log);
        for (int index = 0; index < 200; ++index)
            ASSERT_TRUE(store.SetSetting(L"Section", ZVFormat(L"Name %d", index), L"some value that fills the pages"));
    }
    const std::string sound = m_folder.Read(FileName);
    ASSERT_GT(sound.size(), 3 * 4096u);
    std::string emptyPage = sound;
    emptyPage.replace(4096, 4096, 4096, '\0');
    for (const std::string& content : {sound.substr(0, 4096), emptyPage})
    {
        SCOPED_TRACE(content.size());
        m_log.Lines.clear();
        m_folder.Write(FileName, content);
        m_folder.Write("Settings.db.damaged-wal", "of an earlier one");
        CSettingsStore store(m_folder.AsString(), m_log);
        EXPECT_EQ(Read(store, L"Section", L"Name 1"), L"(none)");
        EXPECT_TRUE(store.SetSetting(L"Section", L"Name 1", L"new"));
        EXPECT_EQ(m_folder.Read("Settings.db.damaged"), content);
        EXPECT_NE(m_folder.Read("Settings.db.damaged-wal"), "of an earlier one");
        EXPECT_THAT(m_log.Lines, ElementsAre(HasSubstr("damaged")));
    }
}

TEST_F(CSettingsStoreTest, WaitsFiveSecondsInAllForWhoeverHoldsTheFile)
{
    // Outside the write-ahead mode every statement that opens it meets the lock.
    sqlite3* holder = nullptr;
    ASSERT_EQ(
        m_sqlite.sqlite3_open_v2(m_folder.PathOf(FileName).c_str(), &holder, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr),
        SQLITE_OK);
    for (const char* text : {"CREATE TABLE t (x)", "BEGIN EXCLUSIVE"})
    {
        sqlite3_stmt* statement = nullptr;
        ASSERT_EQ(m_sqlite.sqlite3_prepare_v2(holder, text, -1, &statement, nullptr), SQLITE_OK);
        EXPECT_EQ(m_sqlite.sqlite3_step(statement), SQLITE_DONE);
        m_sqlite.sqlite3_finalize(statement);
    }
    const ZVElapsedTime time;
    CSettingsStore store(m_folder.AsString(), m_log);
    EXPECT_FALSE(store.SetSetting(L"S", L"n", L"v"));
    EXPECT_EQ(Read(store, L"S", L"n"), L"(none)");
    EXPECT_LT(time.GetMilliseconds(), 60'000);
    EXPECT_THAT(m_log.Lines, ElementsAre(HasSubstr("locked")));
    m_sqlite.sqlite3_close(holder);

    // Whoever sets a damaged file aside is waited for as well.
    m_folder.Write("damaged/Settings.db", "no database");
    ZVDescriptor holding(open(m_folder.PathOf("damaged/Settings.db").c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(flock(holding.Get(), LOCK_EX), 0);
    std::thread release(
        [&]
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            holding.Close();
        });
    CSettingsStore waiting(m_folder.AsString() + L"damaged/", m_log);
    EXPECT_TRUE(waiting.SetSetting(L"S", L"n", L"v"));
    release.join();
}

TEST_F(CSettingsStoreTest, IsReadWhereNothingCanBeChanged)
{
    constexpr uid_t Nobody = 65534;
    if (geteuid() != 0 || unshare(CLONE_NEWNS) != 0 || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        GTEST_SKIP() << "neither another user nor a full disk can be had here";
    // Characters that mean something in a name for SQLite.
    const ZVString folder = m_folder.AsString() + L"a ?b#%41/";
    const std::string disk = m_folder.PathOf("a ?b#%41");
    std::filesystem::create_directory(disk);
    ASSERT_EQ(mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=128k"), 0);
    CSettingsStore owner(folder, m_log);
    ASSERT_TRUE(owner.SetSetting(L"S", L"n", L"kept"));
    std::filesystem::permissions(disk, std::filesystem::perms(0555));
    std::filesystem::permissions(m_folder.PathOf(""), std::filesystem::perms(0755));

    ASSERT_EQ(seteuid(Nobody), 0);
    EXPECT_EQ(ReadUnwritable(folder), L"kept") << "while its owner has it open";
    ASSERT_EQ(seteuid(0), 0);
    owner.Close();
    ASSERT_EQ(seteuid(Nobody), 0);
    EXPECT_EQ(ReadUnwritable(folder), L"kept") << "while nobody has it open";
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_NE(system(("head -c 200000 /dev/zero > '" + disk + "/full' 2>/dev/null").c_str()), 0) << "the disk is not full";
    EXPECT_EQ(ReadUnwritable(folder), L"kept") << "on a full disk";
    umount(disk.c_str());
}

TEST_F(CSettingsStoreTest, WithoutAFileOrALibraryReadsAsEmptyAndSaysSoOnce)
{
    m_folder.Write("file", "");
    m_folder.Write(FileName, "");
    CSettingsStore unwritable(m_folder.AsString() + L"file/", m_log);
    CSettingsStore withoutLibrary(m_folder.AsString(), m_log, "libzv-nobody-has-it.so");
    for (CSettingsStore* store : {&unwritable, &withoutLibrary})
    {
        m_log.Lines.clear();
        for (int tries = 0; tries < 2; ++tries)
            EXPECT_FALSE(store->SetSetting(L"S", L"n", L"v"));
        EXPECT_EQ(Read(*store, L"S", L"n"), L"(none)");
        EXPECT_THAT(m_log.Lines, testing::SizeIs(1));
    }
}

TEST_F(CSettingsStoreTest, TheLogMaskIsAlsoInItsFile)
{
    CSettingsStore store(m_folder.AsString(), m_log);
    EXPECT_TRUE(store.SetSetting(L"Logging", L"Other", L"1"));
    EXPECT_TRUE(store.SetSetting(L"Other", L"Category Mask", L"1"));
    EXPECT_FALSE(m_folder.Has(MaskName));
    EXPECT_TRUE(store.SetSetting(L"Logging", L"Category Mask", L"0x101"));
    EXPECT_EQ(CLogManager(m_folder.AsString()).GetCategoryMask(), 257u);
    EXPECT_TRUE(store.SetSetting(L"Logging", L"Category Mask", L"all"));
    EXPECT_FALSE(m_folder.Has(MaskName)) << "a text that is no mask has left the old one";
    EXPECT_TRUE(store.SetSetting(L"Logging", L"Category Mask", L"3"));
    EXPECT_TRUE(store.RemoveSetting(L"Logging", L"Category Mask"));
    EXPECT_FALSE(m_folder.Has(MaskName));

    // What cannot be in both is in neither.
    std::filesystem::create_directories(m_folder.PathOf(MaskName) + "/in the way");
    EXPECT_FALSE(store.SetSetting(L"Logging", L"Category Mask", L"5"));
    EXPECT_EQ(Read(store, L"Logging", L"Category Mask"), L"(none)");
    EXPECT_THAT(m_log.Lines, ElementsAre(testing::EndsWith("log mask could not be changed, error: 21")));
}
}
