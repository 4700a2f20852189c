#include "LoaderFixture.h"

#include "core/string/ZVStringUTF8.h"
#include "system/file/ZVFileSystem.h"
#include "system/loader/CFileLoaderThread.h"
#include "system/loader/ZVMultipartForm.h"

#include <gmock/gmock.h>

namespace
{
class CFileLoaderToFileTest : public LoaderFixture
{
protected:
    // Loads "/file", or a local file, over what the target holds and gives what it then holds.
    std::string LoadOver(const char* old, ZVLoadToFileMode mode, bool isLoaded, const ZVString& source = ZVString())
    {
        const std::string folder = m_folder + "to";
        std::filesystem::remove_all(folder);
        std::filesystem::create_directory(folder);
        if (old != nullptr)
            Put("to/target", old);
        CFileLoader loader;
        ZVFilename target = ZVFilename::FromPath(TextAt("to/target"));
        EXPECT_EQ(loader.LoadToFile(ZVFilename(source.IsEmpty() ? m_server.GetURL("/file") : source), target, mode), isLoaded);
        const std::string content = Get("to/target");
        std::filesystem::remove(folder + "/target");
        EXPECT_TRUE(std::filesystem::is_empty(folder)) << "something was left behind";
        return content;
    }
};

TEST_F(CFileLoaderToFileTest, GoesOnBehindWhatIsThere)
{
    const std::string content = "0123456789";
    const ZVString local = Put("source", content);
    // What is there is not compared, so it shows that only the rest came.
    const auto check = [&](const char* old, const std::string& resumed, const std::string& withoutRanges)
    {
        SCOPED_TRACE(resumed);
        for (const ZVLoadToFileMode mode : {ZVLoadToFileMode::Resume, ZVLoadToFileMode::KeepPartial})
        {
            m_server.SetAnswer("/file", {.Body = content, .AnswersRanges = true});
            EXPECT_EQ(LoadOver(old, mode, true), resumed);
            m_server.SetAnswer("/file", {.Body = content});
            EXPECT_EQ(LoadOver(old, mode, true), withoutRanges);
            EXPECT_EQ(LoadOver(old, mode, true, local), resumed);
        }
    };
    check("", content, content);
    check("abcd", "abcd456789", content);
    check("abcdefghij", "abcdefghij", "abcdefghij");
    check("abcdefghijk", content, content);
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

    m_server.SetAnswer("/file", {.Body = content});
    for (const ZVString& path : {TextAt("missing folder/target"), ZVString(L"/dev/full")})
    {
        CFileLoader loader;
        ZVFilename target = ZVFilename::FromPath(path);
        EXPECT_FALSE(loader.LoadToFile(ZVFilename(m_server.GetURL("/file")), target, ZVLoadToFileMode::Replace));
    }
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));
}

TEST_F(CFileLoaderToFileTest, LoadsOnlyWhatIsNewer)
{
    const auto check = [this](const ZVTestAnswer& answer, const char* after)
    {
        m_server.SetAnswer("/file", answer);
        EXPECT_EQ(LoadOver("old", ZVLoadToFileMode::IfNewer, true), after);
        EXPECT_THAT(m_server.GetRequests("/file").back().GetHeader("If-Modified-Since"), testing::EndsWith(" GMT"));
    };
    check({.Headers = {"Last-Modified: Mon, 06 Nov 2000 08:49:37 GMT"}, .Body = "new"}, "old");
    check({.Headers = {"Last-Modified: Mon, 06 Nov 2000 08:49:37 GMT"}, .Body = "newer"}, "newer");
    check({.Headers = {"Last-Modified: Wed, 06 Nov 2999 08:49:37 GMT"}, .Body = "new"}, "new");
    check({.Headers = {"Last-Modified: yesterday"}, .Body = "new"}, "new");
    check({.Body = "new"}, "new");
    check({.Status = 304}, "old");

    // The answer to an earlier load is none to one that never began.
    CFileLoader loader;
    ZVFilename target = ZVFilename::FromPath(Put("target", "old"));
    EXPECT_TRUE(loader.LoadToFile(ZVFilename(m_server.GetURL("/file")), target, ZVLoadToFileMode::IfNewer));
    loader.Cancel();
    EXPECT_FALSE(loader.LoadToFile(ZVFilename(m_server.GetURL("/file")), target, ZVLoadToFileMode::IfNewer));

    m_server.SetAnswer("/file", {.Body = "new"});
    EXPECT_EQ(LoadOver(nullptr, ZVLoadToFileMode::IfNewer, true), "new");
    EXPECT_EQ(m_server.GetRequests("/file").back().GetHeader("If-Modified-Since"), "");
}

TEST_F(CFileLoaderToFileTest, MakesATemporaryFile)
{
    // The longest name of a file has 255 bytes, those of addresses are longer.
    const std::string longName = "/" + std::string(300, 'a') + ".jpg?" + std::string(300, 'b');
    CFileLoader loader;
    // Makes a file of the name that the load has chosen for its own, but not yet made.
    ZVString rival;
    Watcher watcher;
    watcher.OnPoll = [&]
    {
        if (rival.IsEmpty())
            std::ofstream(ZVStringUTF8(rival = ZVFileSystem::GetUniqueFilename(ZVString(), L"cover", L"jpg")).Get()) << "rival";
        return false;
    };
    loader.SetProgressCallback(&watcher);
    for (const std::string& name : {std::string("/cover.jpg"), longName})
    {
        m_server.SetAnswer(name, {.Body = "picture"});
        ZVFilename target = ZVFilename::FromPath(TextAt("untouched"));
        ASSERT_TRUE(loader.LoadToFile(ZVFilename(m_server.GetURL(name)), target, ZVLoadToFileMode::Temporary));
        EXPECT_EQ(target.GetExtension(), L"jpg");
        ZVString text;
        EXPECT_TRUE(text.LoadFromFile(target.GetPathOnly()));
        EXPECT_EQ(text, L"picture");
        EXPECT_TRUE(text.LoadFromFile(rival));
        EXPECT_EQ(text, L"rival");
    }
    EXPECT_EQ(Get("untouched"), "(none)");
}

TEST_F(CFileLoaderToFileTest, SendsAForm)
{
    m_server.SetAnswer("/form", {.Status = 500, .Body = "the reason"});
    ZVMultipartForm form;
    form.AddText(L"na\"me\r\n", L"gr\u00fcn");
    EXPECT_TRUE(form.AddFile(L"cover", ZVFilename::FromPath(Put("a b.jpg", std::string("\0\x01\xff", 3)))));
    EXPECT_FALSE(form.AddFile(L"data", ZVFilename::FromPath(TextAt("missing"))));
    form.Finish();

    CFileLoader loader;
    ZVBuffer buffer;
    for (const bool succeedOnError : {false, true})
    {
        loader.SetForm(ZVRequestMethod::Post, form, succeedOnError);
        EXPECT_EQ(loader.Load(ZVFilename(m_server.GetURL("/form")), buffer), succeedOnError);
        EXPECT_EQ(Bytes(buffer), succeedOnError ? "the reason" : "");
    }
    const std::string boundary = "----------ieoau._._+2_8_GoodLuck8.3-ds0d0J0S0Kl234324jfLdsjfdAuaoei-----";
    const ZVTestRequest request = m_server.GetRequests("/form").back();
    EXPECT_EQ(request.Method, "POST");
    EXPECT_EQ(request.GetHeader("Content-Type"), "multipart/form-data; boundary=" + boundary.substr(2));
    EXPECT_EQ(request.Body, boundary + "\r\nContent-Disposition: form-data; name=\"na%22me%0D%0A\"\r\n\r\ngr\xC3\xBCn\r\n" +
                                boundary + "\r\nContent-Disposition: form-data; name=\"cover\"; filename=\"a b.jpg\"\r\n" +
                                "Content-Type: image/jpeg\r\n\r\n" + std::string("\0\x01\xff\r\n", 5) + boundary + "--\r\n");
}

TEST_F(CFileLoaderToFileTest, RunsOnAThread)
{
    m_server.SetAnswer("/silent", {.DelayMilliseconds = 60'000});
    CFileLoaderThread thread(ZVFilename(Put("first", "1")), ZVFilename(Put("second", "22")));
    EXPECT_TRUE(thread.Start(0, false, 0));
    thread.WaitForExit();
    EXPECT_TRUE(thread.Stop(ZVThread::NoTimeout));
    EXPECT_EQ(Bytes(thread.GetBuffer()) + Bytes(thread.GetSecondBuffer()), "122");

    // The end of the object cancels the load.
    CFileLoaderThread stopped(ZVFilename(m_server.GetURL("/silent")), ZVFilename(TextAt("first")));
    EXPECT_TRUE(stopped.Start(0, false, 0));
    while (m_server.GetRequests("/silent").empty())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}
}
