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

TEST_F(CLocalReaderTest, ReadsFilesAndMemoryFromAnyPlace)
{
    const std::string content = MakeContent(300000);
    m_folder.Write("f\xc3\xa4 x.bin", content);
    const ReaderPointer file = Make("f\xc3\xa4 x.bin");
    const ReaderPointer memory(CreateFromMemoryReaderDLL(content.data(), 300000));
    for (IZVReader* const reader : {file.get(), memory.get()})
    {
        SCOPED_TRACE(reader == file.get() ? "file" : "memory");
        EXPECT_EQ(ReadBytes(*reader, 1), "");
        EXPECT_TRUE(reader->HasFailed()) << "it is not open";
        ASSERT_TRUE(reader->Open());
        EXPECT_EQ(reader->GetSize(), 300000);
        EXPECT_EQ(ReadBytes(*reader, 10), content.substr(0, 10));
        EXPECT_EQ(reader->Seek(299990), 299990);
        EXPECT_EQ(ReadBytes(*reader, 0x100000), content.substr(299990)) << "fewer only where it ends";
        EXPECT_EQ(ReadBytes(*reader, 1), "");
        EXPECT_EQ(reader->Seek(300000), 300000) << "the end is a place";
        EXPECT_EQ(reader->Seek(300001), 300000);
        EXPECT_EQ(reader->Seek(-1), 300000);
        EXPECT_EQ(reader->Read(nullptr, -5), 0);
        ASSERT_TRUE(reader->Open());
        EXPECT_EQ(reader->GetPosition(), 0) << "opened anew";
        EXPECT_EQ(GetInfo(*reader, L"StatusCode"), "");
    }
    m_folder.Write("f\xc3\xa4 x.bin", content + "more");
    EXPECT_EQ(file->GetSize(), 300004) << "a recording grows";
    EXPECT_EQ(file->Seek(300000), 300000);
    EXPECT_EQ(ReadAll(*file), "more");
    for (IZVReader* const reader : {file.get(), memory.get()})
    {
        reader->Cancel();
        EXPECT_EQ(reader->Seek(0), 0);
        EXPECT_EQ(ReadBytes(*reader, 10), "");
        EXPECT_TRUE(reader->HasFailed());
        EXPECT_FALSE(reader->Open());
    }
    EXPECT_EQ(CreateFromMemoryReaderDLL(nullptr, 1), nullptr);
    EXPECT_EQ(CreateFromMemoryReaderDLL(content.data(), -1), nullptr);
    EXPECT_TRUE(ReaderPointer(CreateFromMemoryReaderDLL(nullptr, 0))->Open());
}

TEST_F(CLocalReaderTest, RefusesWhatIsNoFileAndSaysWhy)
{
    ASSERT_EQ(mkfifo(m_folder.PathOf("pipe").c_str(), 0600), 0);
    m_folder.Write("folder/file", "x");
    for (const auto& [name, reason] : {std::pair("pipe", "it is a pipe"), std::pair("folder/", "it is a folder"),
                                       std::pair("missing", "No such file or directory")})
    {
        const ReaderPointer reader = Make(name);
        EXPECT_FALSE(reader->Open()) << name;
        EXPECT_TRUE(reader->HasFailed() && !reader->IsOpen());
        EXPECT_THAT(TakeLog(), testing::AllOf(HasSubstr(m_folder.PathOf(name)), HasSubstr(reason)));
    }
    EXPECT_FALSE(ReaderPointer(CreateLocalReaderDLL(L"/dev/zero"))->Open()) << "it has no end";
}

TEST_F(CLocalReaderTest, AFileThatHidesItsSizeIsRead)
{
    m_folder.Write("empty", "");
    for (const auto& [name, size] : {std::pair(ZVString(L"/proc/self/status"), -1), std::pair(m_folder.AsString() + L"empty", 0)})
    {
        const ReaderPointer reader(CreateLocalReaderDLL(name));
        ASSERT_TRUE(reader->Open());
        EXPECT_EQ(reader->GetSize(), size);
        EXPECT_EQ(ReadAll(*reader).empty(), size == 0);
    }
}

TEST_F(CLocalReaderTest, TakesFileAddresses)
{
    m_folder.Write("a b.txt", "escaped");
    m_folder.Write("c%20d.txt", "raw");
    m_folder.Write("c d.txt", "wrong");
    const auto read = [this](const wchar_t* start, const wchar_t* name)
    {
        const ReaderPointer reader(CreateGenericReaderDLL(start + m_folder.AsString() + name));
        return reader->Open() ? ReadAll(*reader) : "(closed)";
    };
    EXPECT_EQ(read(L"FILE://", L"a%20b.txt"), "escaped");
    EXPECT_EQ(read(L"file://localhost", L"a%20%62.txt"), "escaped");
    EXPECT_EQ(read(L"file://", L"c%20d.txt"), "raw");
    EXPECT_EQ(read(L"", L"a%20b.txt"), "(closed)") << "a path has no escapes";
}

TEST_F(CLocalReaderTest, TheFactoriesKnowTheirNames)
{
    const std::tuple<const wchar_t*, bool, bool> rows[] = {
        {nullptr,        false, false},
        {L"/a/http://b", true,  false},
        {L"HTTPS://a/b", false, true },
        {L"m01p://a/b",  false, true },
        {L"httpx://a/b", false, false},
        {L"http:/a/b",   true,  false},
    };
    for (const auto& [name, isLocal, isInternet] : rows)
    {
        SCOPED_TRACE(name == nullptr ? "null" : ZVStringUTF8(name).Get());
        EXPECT_EQ(ReaderPointer(CreateLocalReaderDLL(name)) != nullptr, isLocal);
        EXPECT_EQ(ReaderPointer(CreateInternetReaderDLL(name)) != nullptr, isInternet);
        EXPECT_EQ(ReaderPointer(CreateGenericReaderDLL(name)) != nullptr, isLocal || isInternet);
    }
}

TEST(CResourceName, MakesAddressesForTheWireAndForTheLog)
{
    const std::tuple<const wchar_t*, const char*, const char*> rows[] = {
        {L"http://h/a b/\u00e4?q=c d", "http://h/a%20b/%C3%A4?q=c%20d", "http://h/a%20b/%C3%A4"},
        {L"m01ps://h/%41%zz",          "https://h/%41%zz",              "https://h/%41%zz"     },
        {L"http://u:p@h:1/x@y#f",      "http://u:p@h:1/x@y#f",          "http://h:1/x@y"       },
        {L"http://h?u@v",              "http://h?u@v",                  "http://h"             },
        {L"http://h/a\r\nX: y",        "",                              ""                     },
    };
    for (const auto& [name, expected, logged] : rows)
    {
        const std::string address = CResourceName::GetAddress(name);
        EXPECT_EQ(address, expected);
        EXPECT_EQ(address.empty() ? "" : CResourceName::GetLoggedAddress(address), logged);
    }
    EXPECT_EQ(CResourceName::DecodePercent("%41%4g%4%00%c3%A4%"), "A%4g%4%00\xc3\xa4%");
}
}
