#include "LoaderFixture.h"

#include "core/string/ZVStringUTF8.h"
#include "system/file/ZVFileSystem.h"
#include "system/loader/CFileLoaderThread.h"
#include "system/loader/IZVFileLoaderProgress.h"
#include "system/loader/ZVMultipartForm.h"

#include <gmock/gmock.h>

namespace
{
class CFileLoaderToFileTest : public LoaderFixture
{
protected:
    // Loads "/file" over what the target holds and gives what it then holds.
    std::string LoadOver(const char* old, ZVLoadToFileMode mode, bool isLoaded)
    {
        std::filesystem::remove(m_folder + "target");
        if (old != nullptr)
            Put("target", old);
        CFileLoader loader;
        ZVFilename target = TextAt("target");
        EXPECT_EQ(loader.LoadToFile(m_server.GetURL("/file"), target, mode), isLoaded);
        EXPECT_EQ(CountFiles(), Get("target") == "(none)" ? 0 : 1) << "something was left behind";
        return Get("target");
    }
};

TEST_F(CFileLoaderToFileTest, GoesOnBehindWhatIsThere)
{
    const std::string content = "0123456789";
    for (const bool answersRanges : {true, false})
        for (const ZVLoadToFileMode mode : {ZVLoadToFileMode::Resume, ZVLoadToFileMode::KeepPartial})
        {
            SCOPED_TRACE(answersRanges ? "with ranges" : "without ranges");
            m_server.SetAnswer("/file", {.Body = content, .AnswersRanges = answersRanges});
            EXPECT_EQ(LoadOver(nullptr, mode, true), content);
            EXPECT_EQ(LoadOver("", mode, true), content);
            // What is there is not compared, so it shows that only the rest came.
            EXPECT_EQ(LoadOver("abcd", mode, true), answersRanges ? "abcd456789" : content);
            EXPECT_EQ(LoadOver("abcdefghij", mode, true), "abcdefghij");
            EXPECT_EQ(LoadOver("abcdefghijk", mode, true), content);
        }

    // The same from a local file.
    Put("source", content);
    for (const auto& [old, expected] : {std::pair("abcd", "abcd456789"), std::pair("abcdefghij", "abcdefghij"),
                                        std::pair("abcdefghijk", "0123456789"), std::pair("", "0123456789")})
    {
        CFileLoader loader;
        ZVFilename target = Put("local", old);
        EXPECT_TRUE(loader.LoadToFile(TextAt("source"), target, ZVLoadToFileMode::Resume));
        EXPECT_EQ(Get("local"), expected);
    }
}

TEST_F(CFileLoaderToFileTest, LeavesNothingOfAFailureButWhatIsWanted)
{
    const std::string content = MakeContent(300'000);
    m_server.SetAnswer("/file", {.Body = content, .CutAfter = 200'000});
    EXPECT_EQ(LoadOver(nullptr, ZVLoadToFileMode::Replace, false), "(none)");
    EXPECT_EQ(LoadOver(nullptr, ZVLoadToFileMode::Resume, false), "(none)");
    EXPECT_EQ(LoadOver(nullptr, ZVLoadToFileMode::IfNewer, false), "(none)");
    EXPECT_EQ(LoadOver("old", ZVLoadToFileMode::IfNewer, false), "old");
    const std::string partial = LoadOver(nullptr, ZVLoadToFileMode::KeepPartial, false);
    EXPECT_EQ(partial, content.substr(0, partial.size()));
    EXPECT_GT(partial.size(), 100'000u);

    m_server.SetAnswer("/file", {.Status = 404});
    EXPECT_EQ(LoadOver("old", ZVLoadToFileMode::Replace, false), "old");
    EXPECT_EQ(LoadOver("old", ZVLoadToFileMode::Resume, false), "old");
    EXPECT_EQ(LoadOver(nullptr, ZVLoadToFileMode::KeepPartial, false), "(none)");

    CFileLoader loader;
    ZVFilename target = TextAt("missing folder/target");
    m_server.SetAnswer("/file", {.Body = content});
    EXPECT_FALSE(loader.LoadToFile(m_server.GetURL("/file"), target, ZVLoadToFileMode::Replace));
    target = L"/dev/full";
    EXPECT_FALSE(loader.LoadToFile(m_server.GetURL("/file"), target, ZVLoadToFileMode::Replace));
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));
}

TEST_F(CFileLoaderToFileTest, LoadsOnlyWhatIsNewer)
{
    const struct
    {
        const char* Name;
        ZVTestAnswer Answer;
        const char* After;
    } rows[] = {
        {"the server says so", {.Status = 304}, "old"},
        {"older and as large", {.Headers = {"Last-Modified: Mon, 06 Nov 2000 08:49:37 GMT"}, .Body = "new"}, "old"},
        {"older and larger", {.Headers = {"Last-Modified: Mon, 06 Nov 2000 08:49:37 GMT"}, .Body = "newer"}, "newer"},
        {"newer", {.Headers = {"Last-Modified: Wed, 06 Nov 2999 08:49:37 GMT"}, .Body = "new"}, "new"},
        {"no date", {.Body = "new"}, "new"},
        {"a date that is none", {.Headers = {"Last-Modified: yesterday"}, .Body = "new"}, "new"},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        m_server.SetAnswer("/file", row.Answer);
        EXPECT_EQ(LoadOver("old", ZVLoadToFileMode::IfNewer, true), row.After);
        EXPECT_THAT(m_server.GetRequests("/file").back().GetHeader("If-Modified-Since"), testing::EndsWith(" GMT"));
    }
    LoadOver(nullptr, ZVLoadToFileMode::IfNewer, true);
    EXPECT_FALSE(m_server.GetRequests("/file").back().HasHeader("If-Modified-Since"));

    // The answer to an earlier load is none to one that never began.
    m_server.SetAnswer("/file", {.Status = 304});
    CFileLoader loader;
    ZVFilename target = TextAt("target");
    EXPECT_TRUE(loader.LoadToFile(m_server.GetURL("/file"), target, ZVLoadToFileMode::IfNewer));
    loader.Cancel();
    EXPECT_FALSE(loader.LoadToFile(m_server.GetURL("/file"), target, ZVLoadToFileMode::IfNewer));
}

// Makes a file of the name that the load has chosen for its own, but not yet made.
class Rival final : public IZVFileLoaderProgress
{
public:
    bool Poll() override
    {
        if (Path.IsEmpty())
        {
            Path = ZVFileSystem::GetUniqueFilename(ZVString(), L"cover", L"jpg");
            std::ofstream(ZVStringUTF8(Path).Get()) << "rival";
        }
        return false;
    }
    void Notify(double) override {}

    ZVString Path;
};

TEST_F(CFileLoaderToFileTest, MakesATemporaryFile)
{
    m_server.SetAnswer("/cover.jpg", {.Body = "picture"});
    CFileLoader loader;
    ZVFilename target = TextAt("untouched");
    ASSERT_TRUE(loader.LoadToFile(m_server.GetURL("/cover.jpg"), target, ZVLoadToFileMode::Temporary));
    EXPECT_EQ(target.GetExtension(), L"jpg");
    ZVString text;
    EXPECT_TRUE(text.LoadFromFile(target.GetPathOnly()));
    EXPECT_EQ(text, L"picture");
    EXPECT_EQ(Get("untouched"), "(none)");

    Rival rival;
    loader.SetProgressCallback(&rival);
    ASSERT_TRUE(loader.LoadToFile(m_server.GetURL("/cover.jpg"), target, ZVLoadToFileMode::Temporary));
    EXPECT_TRUE(text.LoadFromFile(target.GetPathOnly()));
    EXPECT_EQ(text, L"picture");
    EXPECT_TRUE(text.LoadFromFile(rival.Path));
    EXPECT_EQ(text, L"rival");
}

TEST_F(CFileLoaderToFileTest, SendsAForm)
{
    m_server.SetAnswer("/form", {.Status = 500, .Body = "the reason"});
    ZVMultipartForm form;
    form.AddText(L"na\"me\r\n", L"gr\u00fcn");
    EXPECT_TRUE(form.AddFile(L"cover", Put("a b.jpg", std::string("\0\x01\xff", 3))));
    EXPECT_TRUE(form.AddFile(L"data", Put("data.unknown", "")));
    EXPECT_FALSE(form.AddFile(L"data", TextAt("missing")));
    form.Finish();

    CFileLoader loader;
    ZVBuffer buffer;
    loader.SetForm(ZVRequestMethod::Post, form, false);
    EXPECT_FALSE(loader.Load(m_server.GetURL("/form"), buffer));
    loader.SetForm(ZVRequestMethod::Post, form, true);
    EXPECT_TRUE(loader.Load(m_server.GetURL("/form"), buffer));
    EXPECT_EQ(Bytes(buffer), "the reason");

    const std::string boundary = "----------ieoau._._+2_8_GoodLuck8.3-ds0d0J0S0Kl234324jfLdsjfdAuaoei-----";
    const ZVTestRequest request = m_server.GetRequests("/form").back();
    EXPECT_EQ(request.Method, "POST");
    EXPECT_EQ(request.GetHeader("Content-Type"), "multipart/form-data; boundary=" + boundary.substr(2));
    EXPECT_EQ(request.Body, boundary +
                                "\r\nContent-Disposition: form-data; name=\"na%22me%0D%0A\"\r\n\r\ngr\xC3\xBCn\r\n" + boundary +
                                "\r\nContent-Disposition: form-data; name=\"cover\"; filename=\"a b.jpg\"\r\n"
                                "Content-Type: image/jpeg\r\n\r\n" +
                                std::string("\0\x01\xff\r\n", 5) + boundary +
                                "\r\nContent-Disposition: form-data; name=\"data\"; filename=\"data.unknown\"\r\n\r\n\r\n" +
                                boundary + "--\r\n");
}

TEST_F(CFileLoaderToFileTest, RunsOnAThread)
{
    m_server.SetAnswer("/silent", {.Body = "x", .DelayMilliseconds = 60'000});
    CFileLoaderThread thread(Put("first", "1"), Put("second", "22"));
    EXPECT_TRUE(thread.Start(0, false, 0));
    thread.WaitForExit();
    EXPECT_TRUE(thread.Stop(ZVThread::NoTimeout));
    EXPECT_EQ(Bytes(thread.GetBuffer()) + Bytes(thread.GetSecondBuffer()), "122");

    CFileLoaderThread stopped(m_server.GetURL("/silent"), TextAt("first"));
    EXPECT_TRUE(stopped.Start(0, false, 0));
    while (m_server.GetRequests("/silent").empty())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}
}
