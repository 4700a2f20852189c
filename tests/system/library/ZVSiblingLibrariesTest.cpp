#include "system/library/ZVSiblingLibraries.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "core/string/ZVStringUTF8.h"
#include "system/library/CProcessInfo.h"

#include <gtest/gtest.h>

namespace
{
class ZVSiblingLibrariesTest : public testing::Test
{
protected:
    ZVSiblingLibrariesTest()
    {
        EXPECT_TRUE(m_fake.Load(m_path));
        TakeCalls();
        m_libraries.SetFlag(7);
    }
    ~ZVSiblingLibrariesTest() override
    {
        m_libraries.UnloadAll();
        g_pZVTools = nullptr;
    }

    ZVString TakeCalls() { return m_fake.GetFunction<const wchar_t*()>("TakeCalls")(); }

    const ZVString m_path = ZVString::FromUTF8(ZV_FAKE_SIBLING);
    const ZVString m_rooted = L"\\\\" + m_path;
    ZVSiblingLibraries& m_libraries = ZVSiblingLibraries::Get();
    ZVLoadLibrary m_fake;  // the test's own handle, to find out what happened
};

TEST_F(ZVSiblingLibrariesTest, StartsEachLibraryInItsOwnWayAndUnloadsInReverse)
{
    EXPECT_TRUE(m_libraries.LoadTools(m_rooted));
    EXPECT_NE(g_pZVTools, nullptr);
    EXPECT_TRUE(m_libraries.LoadReader(m_rooted));
    EXPECT_TRUE(m_libraries.LoadDisc(m_rooted));
    EXPECT_TRUE(m_libraries.LoadPlayer(m_rooted));
    EXPECT_TRUE(m_libraries.LoadTelevision(m_rooted));
    EXPECT_STREQ(TakeCalls(),
                 L"Attach Tools.Initialize(7) Attach Reader.Initialize(7) Attach Attach Player.Initialize(7) Attach ");
    EXPECT_NE(m_libraries.GetInterface(ZVSibling::Player), nullptr);
    EXPECT_EQ(m_libraries.GetInterface(ZVSibling::Television), nullptr) << "it has no getter";
    EXPECT_TRUE(m_libraries.LoadPlayer(L"\\\\nowhere\\else.so")) << "a loaded library is not loaded again";
    EXPECT_NE(m_libraries.GetReaderFactory("CreateGenericReaderDLL"), nullptr);
    EXPECT_EQ(m_libraries.GetReaderFactory("CreateLocalReaderDLL"), nullptr) << "a factory that this library does not have";
    EXPECT_EQ(m_libraries.GetReaderFactory("GetAttachValue"), nullptr) << "a symbol that is no factory";
    for (int32_t round = 0; round < 2; ++round)
        m_libraries.UnloadAll();
    EXPECT_STREQ(TakeCalls(), L"Detach Detach Disc.Uninitialize Detach Reader.Uninitialize Detach Detach ");
    EXPECT_EQ(g_pZVTools, nullptr);
    EXPECT_EQ(m_libraries.GetInterface(ZVSibling::Player), nullptr);
}

TEST_F(ZVSiblingLibrariesTest, APathIsTakenAsItStandsOnlyWhenItIsRooted)
{
    FakeTools tools;
    g_pZVTools = &tools;
    const ZVString installed = CProcessInfo::Get().GetInstallPath() + ZVString(L"libZVDisc.so");
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"C:\\Zivora\\lib.so", L"C:/Zivora/lib.so"        },
        {L"\\\\nowhere\\x\\",   L"//nowhere/x/libZVDisc.so"},
        {L"/c:\\lib.so",        installed                  },
        {L"",                   installed                  },
    };
    for (const auto& [path, opened] : rows)
    {
        EXPECT_FALSE(m_libraries.LoadDisc(path));
        const ZVString line = ZVString::FromUTF8(tools.Manager.Lines.back().c_str());
        EXPECT_STREQ(line.GetBetween(L"1|ZVLoadLibrary|Loading ", L" failed, error: "), opened) << ZVStringUTF8(path).Get();
    }
}
}
