#include "siblings/reader/CLocalReader.h"

#include "siblings/reader/CResourceName.h"
#include "siblings/reader/ReaderFixture.h"
#include "siblings/tools/ToolsFolder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace
{
using testing::HasSubstr;

class CLocalReaderTest : public ReaderTest
{
protected:
    ReaderPointer Make(const std::string& name)
    {
        return ReaderPointer(CreateGenericReaderDLL(m_folder.AsString() + ZVString::FromUTF8(name.c_str())));
    }

    ToolsFolder m_folder;
};

TEST_F(CLocalReaderTest, ReadsAFileFromAnyPlace)
{
    const std::string content = MakeBytes(300000);
    m_folder.Write("f\xc3\xa4 x.bin", content);
    const ReaderPointer reader = Make("f\xc3\xa4 x.bin");
    EXPECT_FALSE(reader->IsOpen());
    EXPECT_EQ(ReadBytes(*reader, 1), "");
    EXPECT_TRUE(reader->HasFailed()) << "it is not open";
    EXPECT_EQ(reader->GetSize(), -1);
    ASSERT_TRUE(reader->Open());
    EXPECT_FALSE(reader->HasFailed());
    EXPECT_EQ(reader->GetSize(), 300000);
    EXPECT_EQ(ReadBytes(*reader, 10), content.substr(0, 10));
    EXPECT_EQ(reader->Seek(299990), 299990);
    EXPECT_EQ(ReadBytes(*reader, 0x100000), content.substr(299990)) << "fewer only where it ends";
    EXPECT_EQ(ReadBytes(*reader, 1), "");
    EXPECT_FALSE(reader->HasFailed());
    EXPECT_EQ(reader->Seek(300000), 300000) << "the end is a place";
    EXPECT_EQ(reader->Seek(300001), 300000);
    EXPECT_EQ(reader->Seek(-1), 300000);
    EXPECT_EQ(reader->Read(nullptr, 0), 0);
    EXPECT_EQ(reader->Read(nullptr, -5), 0);
    EXPECT_EQ(reader->Seek(7), 7);
    EXPECT_EQ(reader->GetPosition(), 7);
    EXPECT_EQ(ReadAll(*reader), content.substr(7));
    ASSERT_TRUE(reader->Open());
    EXPECT_EQ(reader->GetPosition(), 0) << "opened anew";
    EXPECT_EQ(GetInfo(*reader, L"StatusCode"), "");

    m_folder.Write("f\xc3\xa4 x.bin", content + "more");
    EXPECT_EQ(reader->GetSize(), 300004) << "a recording grows";
    EXPECT_EQ(reader->Seek(300000), 300000);
    EXPECT_EQ(ReadAll(*reader), "more");

    reader->Cancel();
    EXPECT_EQ(reader->Seek(0), 0);
    EXPECT_EQ(ReadBytes(*reader, 10), "");
    EXPECT_TRUE(reader->HasFailed());
    EXPECT_FALSE(reader->Open());
}

TEST_F(CLocalReaderTest, RefusesWhatIsNoFileAndSaysWhy)
{
    ASSERT_EQ(mkfifo(m_folder.PathOf("pipe").c_str(), 0600), 0);
    m_folder.Write("folder/file", "x");
    const struct
    {
        const char* Name;
        const char* Reason;
    } rows[] = {
        {"pipe",    "it is a pipe"             },
        {"folder",  "it is a folder"           },
        {"folder/", "it is a folder"           },
        {"missing", "No such file or directory"},
    };
    for (const auto& row : rows)
    {
        const ReaderPointer reader = Make(row.Name);
        EXPECT_FALSE(reader->Open()) << row.Name;
        EXPECT_TRUE(reader->HasFailed());
        EXPECT_FALSE(reader->IsOpen());
        const std::string log = TakeLog();
        EXPECT_THAT(log, HasSubstr(m_folder.PathOf(row.Name)));
        EXPECT_THAT(log, HasSubstr(row.Reason));
    }
    const ReaderPointer device(CreateLocalReaderDLL(L"/dev/zero"));
    EXPECT_FALSE(device->Open()) << "it has no end";
}

TEST_F(CLocalReaderTest, AFileThatHidesItsSizeIsRead)
{
    const ReaderPointer hidden(CreateLocalReaderDLL(L"/proc/self/status"));
    ASSERT_TRUE(hidden->Open());
    EXPECT_EQ(hidden->GetSize(), -1);
    EXPECT_THAT(ReadAll(*hidden), HasSubstr("Name:"));
    m_folder.Write("empty", "");
    const ReaderPointer empty = Make("empty");
    ASSERT_TRUE(empty->Open());
    EXPECT_EQ(empty->GetSize(), 0);
}

TEST_F(CLocalReaderTest, TakesFileAddresses)
{
    m_folder.Write("a b.txt", "escaped");
    m_folder.Write("c%20d.txt", "raw");
    m_folder.Write("c d.txt", "wrong");
    const struct
    {
        const wchar_t* Start;
        const wchar_t* Name;
        const char* Content;
    } rows[] = {
        {L"file://",          L"a b.txt",     "escaped"},
        {L"FILE://",          L"a%20b.txt",   "escaped"},
        {L"file://localhost", L"a%20%62.txt", "escaped"},
        {L"file://",          L"c%20d.txt",   "raw"    },
    };
    for (const auto& row : rows)
    {
        const ReaderPointer reader(CreateGenericReaderDLL(row.Start + m_folder.AsString() + row.Name));
        ASSERT_TRUE(reader->Open()) << TakeLog();
        EXPECT_EQ(ReadAll(*reader), row.Content);
    }
    const ReaderPointer plain(CreateGenericReaderDLL(m_folder.AsString() + L"a%20b.txt"));
    EXPECT_FALSE(plain->Open()) << "a path has no escapes";
}

TEST_F(CLocalReaderTest, TheFactoriesKnowTheirNames)
{
    const struct
    {
        const wchar_t* Name;
        bool IsLocal;
        bool IsInternet;
    } rows[] = {
        {nullptr,        false, false},
        {L"",            false, false},
        {L"film.mkv",    true,  false},
        {L"/a/http://b", true,  false},
        {L"C:\\a\\b",    true,  false},
        {L"file:///a",   true,  false},
        {L"HTTPS://a/b", false, true },
        {L"m01p://a/b",  false, true },
        {L"ftp://a/b",   false, false},
        {L"rtmp://a/b",  false, false},
        {L"httpx://a/b", false, false},
        {L"http:/a/b",   true,  false},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name == nullptr ? "null" : ZVStringUTF8(row.Name).Get());
        EXPECT_EQ(ReaderPointer(CreateLocalReaderDLL(row.Name)) != nullptr, row.IsLocal);
        EXPECT_EQ(ReaderPointer(CreateInternetReaderDLL(row.Name)) != nullptr, row.IsInternet);
        EXPECT_EQ(ReaderPointer(CreateGenericReaderDLL(row.Name)) != nullptr, row.IsLocal || row.IsInternet);
    }
}

TEST_F(CLocalReaderTest, MemoryIsReadInPlace)
{
    const std::string bytes = "0123456789";
    EXPECT_EQ(CreateFromMemoryReaderDLL(nullptr, 1), nullptr);
    EXPECT_EQ(CreateFromMemoryReaderDLL(bytes.data(), -1), nullptr);
    const ReaderPointer reader(CreateFromMemoryReaderDLL(bytes.data(), 10));
    ASSERT_TRUE(reader->Open());
    EXPECT_EQ(reader->GetSize(), 10);
    EXPECT_EQ(ReadBytes(*reader, 4), "0123");
    EXPECT_EQ(reader->Seek(8), 8);
    EXPECT_EQ(ReadBytes(*reader, 4), "89");
    EXPECT_FALSE(reader->HasFailed());
    EXPECT_EQ(reader->Seek(11), 10);
    const ReaderPointer empty(CreateFromMemoryReaderDLL(nullptr, 0));
    ASSERT_TRUE(empty->Open());
    EXPECT_EQ(ReadBytes(*empty, 4), "");
    EXPECT_FALSE(empty->HasFailed());
}

TEST(CResourceName, MakesAddressesForTheWireAndForTheLog)
{
    const struct
    {
        const wchar_t* Name;
        const char* Address;
        const char* Logged;
    } rows[] = {
        {L"http://h/a b/\u00e4?q=c d", "http://h/a%20b/%C3%A4?q=c%20d", "http://h/a%20b/%C3%A4"},
        {L"m01ps://h/%41%zz",          "https://h/%41%zz",              "https://h/%41%zz"     },
        {L"http://u:p@h:1/x@y#f",      "http://u:p@h:1/x@y#f",          "http://h:1/x@y"       },
        {L"http://h?u@v",              "http://h?u@v",                  "http://h"             },
        {L"http://h/a\r\nX: y",        "",                              ""                     },
        {L"http://h/a\tb",             "",                              ""                     },
    };
    for (const auto& row : rows)
    {
        const std::string address = CResourceName::GetAddress(row.Name);
        EXPECT_EQ(address, row.Address);
        EXPECT_EQ(address.empty() ? "" : CResourceName::GetLoggedAddress(address), row.Logged);
    }
    EXPECT_EQ(CResourceName::DecodePercent("%41%4g%4"), "A%4g%4");
    EXPECT_EQ(CResourceName::DecodePercent("%00%c3%A4%"), "%00\xc3\xa4%");
}
}
