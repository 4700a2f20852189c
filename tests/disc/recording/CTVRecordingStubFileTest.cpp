#include "disc/recording/CTVRecordingStubFile.h"

#include "disc/recording/RecordingSize.h"
#include "disc/recording/StubBytes.h"
#include "process/WorkFolder.h"
#include "support/ZVTestServer.h"

#include <gtest/gtest.h>

namespace
{
using StubBytes::Stub;

class CTVRecordingStubFileTest : public testing::Test
{
protected:
    static ZVFilename NameOf(const std::string& path) { return ZVFilename::FromPath(ZVString::FromUTF8(path.c_str())); }

    // Puts a stub into the folder rec/a.
    ZVFilename Put(const std::string& bytes) const
    {
        std::filesystem::create_directories("rec/a");
        WorkFolder::Write("rec/a/show.ztv", bytes);
        return NameOf(m_folder.PathOf("rec/a/show.ztv"));
    }

    // A path below the test's folder.
    ZVString At(const char* name) const { return NameOf(m_folder.PathOf(name)).GetFilename(); }

    WorkFolder m_folder;
};

TEST_F(CTVRecordingStubFileTest, TakesNoNameThatNoFileCanHave)
{
    const std::string ab("a\0\0\0b\0\0", 8);
    const std::string zero(4, '\0');
    const std::tuple<std::string, const char*> rows[] = {
        {ab,                               "rec/a/ab"},
        {ab + "xyz",                       "rec/a/ab"},
        {ab + zero + zero,                 "rec/a/ab"},
        {ab + zero + ab,                   ""        },
        {ab + StubBytes::Number(0x110000), ""        },
        {ab + StubBytes::Number(-0xffff),  ""        },
        {"xyz",                            ""        },
    };
    CTVRecordingStubFile stub;
    for (const auto& [path, expected] : rows)
    {
        EXPECT_TRUE(stub.Read(Put(Stub(2) + StubBytes::Path(path))));
        EXPECT_STREQ(stub.StreamPath, *expected == '\0' ? ZVString() : At(expected)) << testing::PrintToString(path);
    }
    // The largest string that a count can tell.
    EXPECT_TRUE(stub.Read(Put(Stub(2, std::u32string(UINT16_MAX / 4, U'c')))));
    EXPECT_EQ(stub.StreamPath.GetLength(), At("rec/a/").GetLength() + UINT16_MAX / 4);
}

TEST_F(CTVRecordingStubFileTest, OnlyAStubOfAServerLeadsToAServer)
{
    ZVTestServer server;
    ZVTestAnswer film;
    film.Body = "12345";
    server.SetAnswer("/film.ts", film);
    ZVTestAnswer remote;
    std::u32string address;
    const ZVString url = server.GetURL("/film.ts");
    for (const wchar_t character : url.View())
        address.push_back(static_cast<char32_t>(character));
    remote.Body = Stub(1, address, U"show.ztf", U"../x", address);
    server.SetAnswer("/show.ztv", remote);

    const ZVFilename local = Put(remote.Body);
    EXPECT_EQ(GetRecordingSize(local), static_cast<int64_t>(remote.Body.size()));
    Put(Stub(1, U"/x/" + address, U".././/" + address, U"\\" + address, U"http:\\\\" + address.substr(7)));
    GetRecordingSize(local);
    GetRecordingSize(ZVFilename::FromPath(L"file://" + local.GetFilename()));
    EXPECT_EQ(server.GetRequests().size(), 0u);

    // The product's own name for the scheme.
    ZVString name = server.GetURL("/show.ztv");
    name.Replace(L"http", L"m01p");
    CTVRecordingStubFile stub;
    ASSERT_TRUE(stub.Read(ZVFilename(name)));
    EXPECT_STREQ(stub.FirstPath, server.GetURL("/film.ts"));
    EXPECT_STREQ(stub.SecondPath, L"show.ztf");
    EXPECT_STREQ(stub.ThirdPath, L"../x");
    EXPECT_EQ(GetRecordingSize(ZVFilename(server.GetURL("/show.ztv"))), static_cast<int64_t>(remote.Body.size() + 2 * 5));
}
}
