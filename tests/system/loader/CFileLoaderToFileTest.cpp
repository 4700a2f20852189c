#include "LoaderFixture.h"

#include "system/loader/ZVMultipartForm.h"

#include <gmock/gmock.h>

namespace
{
namespace fs = std::filesystem;

class CFileLoaderToFileTest : public LoaderFixture
{
protected:
    bool Load(const std::string& name, ZVLoadToFileMode mode, const ZVString& source = ZVString())
    {
        ZVFilename target(TextAt(name));
        return CFileLoader().LoadToFile(ZVFilename(source.IsEmpty() ? m_server.GetURL("/file") : source), target, mode);
    }

    // Loads "/file", or a local file, over what the target holds and returns what it then holds.
    std::string LoadOver(const char* old, ZVLoadToFileMode mode, bool isLoaded, const ZVString& source = ZVString())
    {
        const std::string folder = m_folder + "to";
        fs::remove_all(folder);
        fs::create_directory(folder);
        if (old != nullptr)
            Put("to/target", old);
        EXPECT_EQ(Load("to/target", mode, source), isLoaded);
        const std::string content = Get("to/target");
        fs::remove(folder + "/target");
        EXPECT_TRUE(fs::is_empty(folder)) << "something was left over";
        return content;
    }
};

TEST_F(CFileLoaderToFileTest, ContinuesAfterWhatIsThere)
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

TEST_F(CFileLoaderToFileTest, LeavesOfAFailureOnlyWhatIsWanted)
{
    const std::string content = MakeContent(300'000);
    m_server.SetAnswer("/file", {.Body = content, .CutAfter = 200'000});
    EXPECT_EQ(LoadOver(nullptr, ZVLoadToFileMode::Replace, false), "(none)");
    EXPECT_EQ(LoadOver(nullptr, ZVLoadToFileMode::IfNewer, false), "(none)");
    EXPECT_EQ(LoadOver("old", ZVLoadToFileMode::IfNewer, false), "old");
    const std::string partial = LoadOver(nullptr, ZVLoadToFileMode::KeepPartial, false);
    EXPECT_EQ(partial, content.substr(0, partial.size()));
    EXPECT_GT(partial.size(), 100'000u);

    m_server.SetAnswer("/file", {.Status = 404});
    EXPECT_EQ(LoadOver("old", ZVLoadToFileMode::Replace, false), "old");
    EXPECT_EQ(LoadOver(nullptr, ZVLoadToFileMode::KeepPartial, false), "(none)");

    m_server.SetAnswer("/file", {.Body = content});
    EXPECT_FALSE(Load("missing folder/target", ZVLoadToFileMode::Replace));
    fs::create_symlink("/dev/full", m_folder + "full");
    EXPECT_FALSE(Load("full", ZVLoadToFileMode::Replace));
    EXPECT_TRUE(fs::exists("/dev/full"));
}

TEST_F(CFileLoaderToFileTest, TakesNothingOfABrokenGzipLoadForAFile)
{
    const std::string content = MakeContent(100'000);
    const ZVTestAnswer whole {.Headers = {"Content-Encoding: gzip"}, .Body = Gzip(content), .AnswersRanges = true};
    ZVTestAnswer damaged = whole;
    damaged.Body[damaged.Body.size() / 2] ^= 0x55;
    ZVTestAnswer cut = whole;
    cut.CutAfter = 20'000;
    for (const ZVTestAnswer& answer : {damaged, cut})
        for (const ZVLoadToFileMode mode : {ZVLoadToFileMode::Replace, ZVLoadToFileMode::Resume, ZVLoadToFileMode::KeepPartial})
            for (const char* old : {"", "old"})
            {
                SCOPED_TRACE(testing::Message() << answer.CutAfter << ' ' << static_cast<int>(mode) << old);
                Put("target", old);
                m_server.SetAnswer("/file", answer);
                EXPECT_FALSE(Load("target", mode));
                EXPECT_EQ(Get("target"), "");
                EXPECT_FALSE(Load("target", ZVLoadToFileMode::KeepPartial));
                m_server.SetAnswer("/file", whole);
                Put("target", old);
                EXPECT_TRUE(Load("target", mode));
                EXPECT_TRUE(Get("target") == content);
            }
}

TEST_F(CFileLoaderToFileTest, KeepsALinkAndTheModeOfItsFile)
{
    const ZVTestAnswer plain {.Body = "new"};
    const ZVTestAnswer gzip {.Headers = {"Content-Encoding: gzip"}, .Body = Gzip("new")};
    fs::create_symlink("real/file", m_folder + "link");
    const auto check = [this](const ZVTestAnswer& answer, ZVLoadToFileMode mode, bool isLoaded)
    {
        SCOPED_TRACE(answer.Body);
        Put("real/file", "old");
        fs::permissions(m_folder + "real/file", fs::perms(0640));
        m_server.SetAnswer("/file", answer);
        EXPECT_EQ(Load("link", mode), isLoaded);
        EXPECT_TRUE(fs::is_symlink(m_folder + "link"));
        EXPECT_EQ(Get("real/file"), isLoaded ? "new" : "old");
        EXPECT_EQ(fs::status(m_folder + "real/file").permissions(), fs::perms(0640));
        fs::remove(m_folder + "real/file");
        EXPECT_TRUE(fs::is_empty(m_folder + "real")) << "something was left over";
    };
    check(plain, ZVLoadToFileMode::IfNewer, true);
    check(gzip, ZVLoadToFileMode::IfNewer, true);
    check(gzip, ZVLoadToFileMode::Replace, true);
    check({.Body = "short", .CutAfter = 0}, ZVLoadToFileMode::IfNewer, false);

    // A link to a file that is not there yet.
    m_server.SetAnswer("/file", {.Body = MakeContent(200'000), .CutAfter = 100'000});
    EXPECT_FALSE(Load("link", ZVLoadToFileMode::IfNewer));
    EXPECT_TRUE(fs::is_symlink(m_folder + "link"));
    EXPECT_TRUE(fs::is_empty(m_folder + "real"));
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
    check({.Body = "new"}, "new");
    check({.Status = 304}, "old");

    // The answer to an earlier load says nothing about one that never began.
    CFileLoader loader;
    const ZVFilename url(m_server.GetURL("/file"));
    ZVFilename target(Put("target", "old"));
    EXPECT_TRUE(loader.LoadToFile(url, target, ZVLoadToFileMode::IfNewer));
    loader.Cancel();
    EXPECT_FALSE(loader.LoadToFile(url, target, ZVLoadToFileMode::IfNewer));
}

TEST_F(CFileLoaderToFileTest, MakesATemporaryFile)
{
    // The longest name of a file has 255 bytes, those of addresses are longer.
    const std::string longName = "/" + std::string(300, 'a') + ".jpg?" + std::string(300, 'b');
    m_server.SetAnswer(longName, {.Body = "picture"});
    ZVFilename target(TextAt("untouched"));
    ASSERT_TRUE(CFileLoader().LoadToFile(ZVFilename(m_server.GetURL(longName)), target, ZVLoadToFileMode::Temporary));
    EXPECT_EQ(target.GetExtension(), L"jpg");
    ZVString text;
    EXPECT_TRUE(text.LoadFromFile(target.GetPathOnly()));
    EXPECT_EQ(text, L"picture");
    EXPECT_EQ(Get("untouched"), "(none)");
}

TEST_F(CFileLoaderToFileTest, SendsAForm)
{
    m_server.SetAnswer("/form", {.Status = 500, .Body = "the reason"});
    ZVMultipartForm form;
    form.AddText(L"na\"me\r\n", L"gr\u00fcn");
    EXPECT_TRUE(form.AddFile(L"cover", ZVFilename(Put("a b.jpg", std::string("\0\x01\xff", 3)))));
    EXPECT_FALSE(form.AddFile(L"data", ZVFilename(TextAt("missing"))));
    form.Finish();

    CFileLoader loader;
    ZVBuffer buffer;
    const ZVFilename url(m_server.GetURL("/form"));
    loader.SetForm(ZVRequestMethod::Post, form);
    EXPECT_FALSE(loader.Load(url, buffer));
    loader.SetForm(ZVRequestMethod::Post, form);
    loader.SetRequestOption(ZVRequestHeaders::SucceedOnError, L"1");
    EXPECT_TRUE(loader.Load(url, buffer));
    EXPECT_EQ(Bytes(buffer), "the reason");
    const std::string boundary = "----------ieoau._._+2_8_GoodLuck8.3-ds0d0J0S0Kl234324jfLdsjfdAuaoei-----";
    const ZVTestRequest request = m_server.GetRequests("/form").back();
    EXPECT_EQ(request.Method, "POST");
    EXPECT_EQ(request.GetHeader("Content-Type"), "multipart/form-data; boundary=" + boundary.substr(2));
    EXPECT_EQ(request.Body, boundary + "\r\nContent-Disposition: form-data; name=\"na%22me%0D%0A\"\r\n\r\ngr\xC3\xBCn\r\n" +
                                boundary + "\r\nContent-Disposition: form-data; name=\"cover\"; filename=\"a b.jpg\"\r\n" +
                                "Content-Type: image/jpeg\r\n\r\n" + std::string("\0\x01\xff\r\n", 5) + boundary + "--\r\n");
}
}
