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

TEST_F(CLocalReaderTest, ReadsFromAnyPlace)
{
    const std::string content = MakeContent(300000);
    m_folder.Write("f\xc3\xa4 x.bin", content);
    const ReaderPointer file = Make("f\xc3\xa4 x.bin");
    const ReaderPointer memory(CreateFromMemoryReaderDLL(content.data(), 300000));
    for (IZVReader* const reader : {file.get(), memory.get()})
    {
        SCOPED_TRACE(reader == file.get() ? "file" : "memory");
        ASSERT_TRUE(reader->Open());
        EXPECT_EQ(reader->GetSize(), 300000);
        EXPECT_EQ(ReadBytes(*reader, 10), content.substr(0, 10));
        EXPECT_EQ(reader->Seek(299990), 299990);
        EXPECT_EQ(ReadBytes(*reader, 0x100000), content.substr(299990)) << "fewer only where it ends";
        EXPECT_EQ(reader->Seek(300000), 300000) << "the end can be reached";
        EXPECT_EQ(reader->Seek(300001), 300000);
        EXPECT_EQ(reader->Seek(-1), 300000);
        reader->Cancel();
        EXPECT_EQ(reader->Seek(0), 0);
        EXPECT_EQ(ReadBytes(*reader, 10), "");
        EXPECT_TRUE(reader->HasFailed());
        EXPECT_FALSE(reader->Open());
    }
}

TEST_F(CLocalReaderTest, FollowsAFileThatGrowsAndOneThatHidesItsSize)
{
    m_folder.Write("recording", "");
    const ReaderPointer recording = Make("recording");
    ASSERT_TRUE(recording->Open());
    EXPECT_EQ(recording->GetSize(), 0);
    m_folder.Write("recording", "more");
    EXPECT_EQ(recording->GetSize(), 4);
    EXPECT_EQ(ReadAll(*recording), "more");

    const ReaderPointer hidden(CreateLocalReaderDLL(L"/proc/self/status"));
    ASSERT_TRUE(hidden->Open());
    EXPECT_EQ(hidden->GetSize(), -1);
    EXPECT_THAT(ReadAll(*hidden), HasSubstr("Name:"));
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
        EXPECT_FALSE(reader->IsOpen());
        EXPECT_THAT(TakeLog(), testing::AllOf(HasSubstr(m_folder.PathOf(name)), HasSubstr(reason)));
    }
    EXPECT_FALSE(ReaderPointer(CreateLocalReaderDLL(L"/dev/zero"))->Open()) << "it has no end";
}

TEST_F(CLocalReaderTest, TakesFileAddresses)
{
    m_folder.Write("a b.txt", "escaped");
    m_folder.Write("c%20d.txt", "raw");
    m_folder.Write("c d.txt", "wrong");
    m_folder.Write("d.txt;1", "whole");
    m_folder.Write("d.txt", "cut");
    const auto read = [this](const wchar_t* start, const wchar_t* name)
    {
        const ReaderPointer reader(CreateGenericReaderDLL(start + m_folder.AsString() + name));
        return reader->Open() ? ReadAll(*reader) : "(closed)";
    };
    EXPECT_EQ(read(L"FILE://", L"a%20b.txt"), "escaped");
    EXPECT_EQ(read(L"file://localhost", L"a%20%62.txt"), "escaped");
    EXPECT_EQ(read(L"file://", L"c%20d.txt"), "raw");
    EXPECT_EQ(read(L"", L"a%20b.txt"), "(closed)") << "a path has no escapes";
    EXPECT_EQ(read(L"", L"d.txt;1"), "whole") << "a path is not parsed";
}

TEST(CResourceName, TellsPathsFromAddressesAndMakesTheseForTheWireAndTheLog)
{
    using Kind = CResourceName::Kind;
    const std::tuple<const wchar_t*, Kind, const char*, const char*> rows[] = {
        {L"",                          Kind::None,  "",                              ""                     },
        {L"/a/http://b",               Kind::Local, "",                              ""                     },
        {L"http:/a/b",                 Kind::Local, "",                              ""                     },
        {L"httpx://a/b",               Kind::None,  "",                              ""                     },
        {L"http://h/a b/\u00e4?q=c d", Kind::HTTP,  "http://h/a%20b/%C3%A4?q=c%20d", "http://h/a%20b/%C3%A4"},
        {L"m01ps://h/%41%zz",          Kind::HTTP,  "https://h/%41%zz",              "https://h/%41%zz"     },
        {L"HTTP://u:p@h:1/x@y#f",      Kind::HTTP,  "HTTP://u:p@h:1/x@y#f",          "HTTP://h:1/x@y"       },
        {L"http://h?u@v",              Kind::HTTP,  "http://h?u@v",                  "http://h"             },
        {L"http://h/a\r\nX: y",        Kind::HTTP,  "",                              ""                     },
    };
    for (const auto& [name, kind, wire, log] : rows)
    {
        EXPECT_EQ(CResourceName::GetKind(name), kind) << ZVStringUTF8(name);
        const std::string address = kind == Kind::HTTP ? CResourceName::GetAddress(name) : "";
        EXPECT_EQ(address, wire);
        EXPECT_EQ(address.empty() ? "" : CResourceName::GetLoggedAddress(address), log);
    }
    EXPECT_EQ(CResourceName::DecodePercent("%41%4g%4%00%c3%A4%"), "A%4g%4%00\xc3\xa4%");
}
}
