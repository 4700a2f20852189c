#include "siblings/tools/settings/CSettingsStore.h"

#include "FakeTools.h"
#include "ToolsFolder.h"
#include "siblings/tools/log/CLogManager.h"
#include "system/library/ZVDllString.h"

#include <gmock/gmock.h>

namespace
{
using testing::ElementsAre;

constexpr char FileName[] = "Settings.db";
constexpr char MaskName[] = "Logs/log-mask";

class CSettingsStoreTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!CSQLiteLibrary().Load("libsqlite3.so.0"))
            GTEST_SKIP() << "libsqlite3.so.0 is not installed";
    }

    // What the store reads, or "(none)".
    std::wstring Read(CSettingsStore& store, const wchar_t* section, const wchar_t* name)
    {
        ZVString text = L"left over";
        ZVDllString value(text);
        const bool isThere = store.GetSetting(section, name, value);
        EXPECT_TRUE(isThere || text.IsEmpty());
        return isThere ? std::wstring(text.GetText()) : L"(none)";
    }

    ToolsFolder m_folder;
    FakeLogManager m_log;
};

TEST_F(CSettingsStoreTest, KeepsSettings)
{
    {
        CSettingsStore store(m_folder.AsString() + L"made/on the way/", m_log);
        EXPECT_EQ(Read(store, L"A", L"x"), L"(none)");
        EXPECT_TRUE(store.RemoveSetting(L"A", L"x"));
        EXPECT_FALSE(m_folder.Has("made")) << "reading and removing have made files";
        EXPECT_TRUE(store.SetSetting(L"A", L"x", L"one") && store.SetSetting(L"A", L"x", L"two; '\"\n\u00e4 \u0416"));
        EXPECT_TRUE(store.SetSetting(L"A", L"X", L"") && store.SetSetting(L"B", L"x", L"b"));
        EXPECT_TRUE(store.SetSetting(L"B", L"gone", L"b") && store.RemoveSetting(L"B", L"gone"));
    }
    CSettingsStore store(m_folder.AsString() + L"made/on the way/", m_log);
    EXPECT_EQ(Read(store, L"A", L"x"), L"two; '\"\n\u00e4 \u0416");
    EXPECT_EQ(Read(store, L"A", L"X") + Read(store, L"B", L"x") + Read(store, L"B", L"gone"), L"b(none)");
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
        ASSERT_TRUE(RunProcesses(ProcessCount,
                                 [&](int process)
                                 {
                                     CSettingsStore store(path, m_log);
                                     bool isGood = true;
                                     for (int index = 0; index < SettingCount; ++index)
                                         isGood &= store.SetSetting(L"S", ZVFormat(L"%d-%d", process, index), L"v");
                                     return isGood;
                                 }));
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
        EXPECT_THAT(m_log.Lines, ElementsAre(testing::HasSubstr("damaged")));
    }
}

TEST_F(CSettingsStoreTest, FollowsAFileThatAnotherProcessReplaced)
{
    CSettingsStore store(m_folder.AsString(), m_log);
    ASSERT_TRUE(store.SetSetting(L"S", L"n", L"old"));
    for (const char* suffix : {"", "-wal", "-shm"})
        std::filesystem::remove(m_folder.PathOf(FileName) + suffix);
    CSettingsStore other(m_folder.AsString(), m_log);
    ASSERT_TRUE(other.SetSetting(L"S", L"n", L"new"));
    EXPECT_EQ(Read(store, L"S", L"n"), L"new");
}

TEST_F(CSettingsStoreTest, WithoutAFileOrALibraryReadsAsEmptyAndSaysSoOnce)
{
    m_folder.Write("file", "");
    CSettingsStore unwritable(m_folder.AsString() + L"file/", m_log);
    CSettingsStore nowhere(ZVString(), m_log);
    m_folder.Write(FileName, "");
    CSettingsStore withoutLibrary(m_folder.AsString(), m_log, "libzv-nobody-has-it.so");
    for (CSettingsStore* store : {&unwritable, &nowhere, &withoutLibrary})
    {
        m_log.Lines.clear();
        EXPECT_FALSE(store->SetSetting(L"S", L"n", L"v") || store->SetSetting(L"S", L"n", L"v"));
        EXPECT_EQ(Read(*store, L"S", L"n"), L"(none)");
        EXPECT_THAT(m_log.Lines, testing::SizeIs(store == &nowhere ? 0 : 1));
    }
}

TEST_F(CSettingsStoreTest, TheLogMaskIsAlsoInItsFile)
{
    CSettingsStore store(m_folder.AsString(), m_log);
    EXPECT_TRUE(store.SetSetting(L"Logging", L"Other", L"1") && store.SetSetting(L"Other", L"Category Mask", L"1"));
    EXPECT_FALSE(m_folder.Has(MaskName));
    EXPECT_TRUE(store.SetSetting(L"Logging", L"Category Mask", L"0x101"));
    EXPECT_EQ(CLogManager(m_folder.AsString()).GetCategoryMask(), 257u);
    EXPECT_TRUE(store.SetSetting(L"Logging", L"Category Mask", L"all"));
    EXPECT_FALSE(m_folder.Has(MaskName)) << "a text that is no mask has left the old one";
    EXPECT_TRUE(store.SetSetting(L"Logging", L"Category Mask", L"3") && store.RemoveSetting(L"Logging", L"Category Mask"));
    EXPECT_FALSE(m_folder.Has(MaskName));

    // What cannot be in both is in neither.
    std::filesystem::create_directories(m_folder.PathOf(MaskName) + "/in the way");
    EXPECT_FALSE(store.SetSetting(L"Logging", L"Category Mask", L"5"));
    EXPECT_EQ(Read(store, L"Logging", L"Category Mask"), L"(none)");
    EXPECT_THAT(m_log.Lines, ElementsAre(testing::EndsWith("log mask could not be changed, error: 21")));
}
}
