#include "LoaderFixture.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <thread>

namespace
{
class CFileLoaderTest : public LoaderFixture
{
protected:
    CFileLoaderTest() { m_buffer.Append("old", 3); }

    bool Load(const ZVString& name) { return m_loader.Load(ZVFilename(name), m_buffer); }
    bool LoadFromServer(const std::string& target) { return Load(m_server.GetURL(target)); }

    CFileLoader m_loader;
    ZVBuffer m_buffer;
};

TEST_F(CFileLoaderTest, KeepsItsLimitsOnEveryRoad)
{
    const std::string content = MakeContent(3'000'000);
    const ZVString path = Put("data.bin", content);
    m_server.SetAnswer("/ranges", {.Body = content, .AnswersRanges = true});
    m_server.SetAnswer("/known", {.Body = content});
    m_server.SetAnswer("/unknown", {.Body = content, .IsChunked = true});
    const ZVString unknown = m_server.GetURL("/unknown");
    // The maximum, whether more is a failure, the start, whether it is loaded, and how much of it.
    const std::tuple<int64_t, bool, size_t, bool, size_t> rows[] = {
        {0,         true,  0,         true,  3'000'000},
        {100,       false, 0,         true,  100      },
        {3'000'000, true,  0,         true,  3'000'000},
        {2'999'999, true,  0,         false, 0        },
        {500'000,   true,  2'500'000, true,  500'000  },
        {70'000,    false, 1'000'000, true,  70'000   },
        {-1,        false, 3'000'000, true,  0        },
        {-1,        false, 4'000'000, true,  0        },
    };
    for (const ZVString& name :
         {path, L"file://" + path, L"FILE://Localhost" + path, m_server.GetURL("/ranges"), m_server.GetURL("/known"), unknown})
        for (const bool isStreaming : {true, false})
            for (const auto& [maximum, failIfLarger, start, isLoaded, size] : rows)
            {
                // Without a reader there is no internet, and without a size no end to start from.
                if ((!isStreaming && name.StartsWith(L"http")) || (name == unknown && start >= 3'000'000))
                    continue;
                SCOPED_TRACE(testing::Message() << std::wstring(name) << isStreaming << ' ' << maximum << ' ' << start);
                m_loader.SetStreaming(isStreaming);
                m_loader.SetLimits(maximum, failIfLarger);
                m_loader.SetStartOffset(static_cast<int64_t>(start));
                EXPECT_EQ(Load(name), isLoaded);
                EXPECT_TRUE(Bytes(m_buffer) == content.substr(std::min(start, content.size()), size)) << m_buffer.GetUsed();
            }
}

TEST_F(CFileLoaderTest, FailsWithAnEmptyBuffer)
{
    m_server.SetAnswer("/cut", {.Body = MakeContent(200'000), .CutAfter = 150'000});
    m_server.SetAnswer("/nothing", {.HidesLength = true});
    ASSERT_EQ(mkfifo((m_folder + "pipe").c_str(), 0600), 0);
    Put("huge", "");
    std::filesystem::resize_file(m_folder + "huge", CFileLoader::MaximumLocalBytes + 1);
    for (const ZVString& name :
         {TextAt("missing"), TextAt(""), TextAt("pipe"), TextAt("huge"), ZVString(L"/dev/zero"), m_server.GetURL("/cut"),
          m_server.GetURL("/nothing"), ZVString(L"other://host/file"), ZVString(L"http://127.0.0.1:1/closed")})
        for (const bool isStreaming : {true, false})
        {
            SCOPED_TRACE(testing::PrintToString(std::wstring(name)));
            m_buffer.Append("old", 3);
            m_loader.SetStreaming(isStreaming);
            EXPECT_FALSE(Load(name));
            EXPECT_EQ(m_buffer.GetUsed(), 0);
            EXPECT_LT(m_buffer.GetAllocated(), 1'000'000) << "memory was taken for nothing";
        }
    m_loader.SetStreaming(true);
    m_loader.SetAllowInternet(false);
    EXPECT_FALSE(LoadFromServer("/unasked"));
    EXPECT_TRUE(m_server.GetRequests("/unasked").empty());
}

TEST_F(CFileLoaderTest, InflatesWhatCameAsGzip)
{
    const std::string content = MakeContent(100'000);
    const std::string gzip = Gzip(content);
    std::string broken = gzip;
    broken[gzip.size() / 2] ^= 0x55;
    const std::string bomb = Gzip(std::string(20'000'000, '\0'));
    // An empty text stands for a failure.
    const auto check =
        [this](const char* name, ZVTestAnswer answer, int64_t maximum, bool failIfLarger, const std::string& expected)
    {
        SCOPED_TRACE(name);
        answer.Headers = {"Content-Encoding: identity", "Content-Encoding: x-GZIP"};
        m_server.SetAnswer("/gzip", answer);
        m_loader.SetLimits(maximum, failIfLarger);
        EXPECT_EQ(LoadFromServer("/gzip"), !expected.empty());
        EXPECT_TRUE(Bytes(m_buffer) == expected) << m_buffer.GetUsed();

        // A path is no text to be read: what follows the ";" is part of it.
        Put("index.php", "neighbour");
        ZVFilename target = ZVFilename::FromPath(TextAt("index.php;v=1"));
        const ZVFilename url(m_server.GetURL("/gzip"));
        EXPECT_EQ(m_loader.LoadToFile(url, target, ZVLoadToFileMode::Replace), !expected.empty());
        EXPECT_TRUE(Get("index.php;v=1") == (expected.empty() ? "(none)" : expected));
        EXPECT_EQ(Get("index.php"), "neighbour");
        std::filesystem::remove(m_folder + "index.php;v=1");
    };
    check("chunked", {.Body = gzip, .IsChunked = true}, -1, true, content);
    check("broken", {.Body = broken}, -1, true, "");
    check("cut by the server", {.Body = gzip.substr(0, gzip.size() - 3)}, -1, true, "");
    check("within the limit", {.Body = gzip}, 100'000, true, content);
    check("larger when inflated", {.Body = bomb}, 1'000'000, true, "");
    check("cut when inflated", {.Body = bomb}, 1'000'000, false, std::string(1'000'000, '\0'));
    check("cut", {.Body = gzip}, 1000, false, content.substr(0, 1000));
}

// Sees the first bytes and judges them by the context.
std::string s_seen;

bool SeeBytes(const ZVBuffer& bytes, int32_t context)
{
    s_seen.assign(reinterpret_cast<const char*>(bytes.GetData()), static_cast<size_t>(bytes.GetUsed()));
    return context == 0;
}

TEST_F(CFileLoaderTest, TestsTheFirstBytes)
{
    const std::string content = MakeContent(2'000'000);
    const std::string wide("A\0\0\0B\0\0\0", 8);
    const auto check =
        [this](const std::string& resource, CFileLoaderValidation validation, bool isLoaded, const std::string& seen)
    {
        SCOPED_TRACE(testing::Message() << validation.Bytes << " of " << resource.size());
        validation.Validator = SeeBytes;
        m_loader.SetValidation(validation);
        const ZVString path = Put("data", resource);
        s_seen.clear();
        EXPECT_EQ(Load(path), isLoaded);
        EXPECT_TRUE(s_seen == seen);
        EXPECT_TRUE(Bytes(m_buffer) == (isLoaded ? resource : ""));
        ZVFilename target(TextAt("target"));
        s_seen.clear();
        EXPECT_EQ(m_loader.LoadToFile(ZVFilename(path), target, ZVLoadToFileMode::Replace), isLoaded);
        EXPECT_TRUE(s_seen == seen);
    };
    check(content, {.Bytes = 100, .Context = 1}, false, content.substr(0, 100));
    check(content, {.Bytes = 1'500'000}, true, content.substr(0, 1'500'000));  // more than a block
    check(content, {.Bytes = 0, .Context = 1, .Marker = L"nowhere"}, true, "");
    check(content, {.Bytes = 10, .Marker = L"3,4"}, true, content.substr(0, 10));
    check(content, {.Bytes = 8, .Marker = L"3,4"}, false, content.substr(0, 8));  // the marker ends after them
    check(wide + content, {.Bytes = 8, .Marker = L"AB"}, true, wide);
    check("0,1,2", {.Bytes = 100, .Context = 1, .AtEnd = false}, true, "");
    check("", {.Bytes = 100, .Context = 1}, false, "");
}

TEST_F(CFileLoaderTest, SendsTheRequestOnce)
{
    m_server.SetAnswer("/post", {.Body = "thanks"});
    const auto load = [&]
    {
        EXPECT_TRUE(LoadFromServer("/post"));
        return m_server.GetRequests("/post").back();
    };
    std::string body = "<a>1</a>";
    m_loader.SetRequest(ZVStringArray(), body.data(), static_cast<int64_t>(body.size()), true);
    body.assign(body.size(), 'x');
    ZVTestRequest request = load();
    EXPECT_EQ(request.Method, "POST");
    EXPECT_EQ(request.Body, "<a>1</a>");
    EXPECT_EQ(request.GetHeader("Content-Type"), "text/xml");
    const std::string large = MakeContent(3'000'000);
    m_loader.SetBody(ZVRequestMethod::Put, {.Data = large.data(), .Size = 3'000'000, .IsCopied = true, .Detail = L"text/x-own"});
    request = load();
    EXPECT_EQ(request.Method, "PUT");
    EXPECT_EQ(request.GetHeader("Content-Type"), "text/x-own; charset=UTF-8");
    EXPECT_EQ(request.GetHeader("Expect"), "");
    EXPECT_TRUE(request.Body == large);

    // Not even when the load never began.
    m_loader.SetBody(ZVRequestMethod::Post, {.Kind = ZVRequestBodyKind::JSON, .Data = "{}", .Size = 2});
    m_loader.Cancel();
    EXPECT_FALSE(LoadFromServer("/post"));
    m_loader.SetCancelTarget(nullptr);
    request = load();
    EXPECT_EQ(request.Method, "GET");
    EXPECT_EQ(request.GetHeader("Content-Type"), "");
    EXPECT_EQ(request.GetHeader("Accept-Encoding"), "gzip");

    EXPECT_FALSE(m_loader.SetRequestOption(L"X-Evil", L"1|X-More: 2"));
    EXPECT_TRUE(m_loader.SetRequestOption(L"X-Own", L"1"));
    EXPECT_TRUE(m_loader.SetRequestOption(L"x-own", L"2"));
    EXPECT_EQ(load().GetHeader("X-Own"), "2");
}

TEST_F(CFileLoaderTest, ReportsAndStopsOnDemand)
{
    const ZVString path = Put("data", MakeContent(10'000'000));
    int maximumPolls = INT_MAX;
    Watcher watcher;
    watcher.OnPoll = [&] { return maximumPolls-- <= 0; };
    m_loader.SetProgressCallback(&watcher);
    EXPECT_TRUE(Load(path));
    EXPECT_EQ(watcher.Fractions.front(), 0);
    EXPECT_EQ(watcher.Fractions.back(), 1);

    // A load that was stopped says that its resource opened, and keeps what it has.
    maximumPolls = 3;
    EXPECT_TRUE(Load(path));
    EXPECT_TRUE(m_loader.IsCancelled());
    EXPECT_GT(m_buffer.GetUsed(), 0);
    EXPECT_LT(m_buffer.GetUsed(), 10'000'000);
    EXPECT_FALSE(Load(path)) << "it stays cancelled";

    // A file that the load has made goes again.
    m_loader.SetCancelTarget(nullptr);
    maximumPolls = 3;
    ZVFilename target(TextAt("copy"));
    EXPECT_FALSE(m_loader.LoadToFile(ZVFilename(path), target, ZVLoadToFileMode::Replace));
    EXPECT_EQ(Get("copy"), "(none)");
}

// Shows one message, and does not want to wait for the internet.
struct Messages final : IZVWaitMessageFactory, IZVWaitMessage
{
    IZVWaitMessage* Create(const ZVWaitMessageOptions& options, IZVWaitMessageCallback& callback) override
    {
        if (options.Caption == L"Internet resource")
            callback.OnWaitMessageCancelled();
        return this;
    }
    void SetText(const ZVString& text, int32_t percent) override { Texts += ZVFormat(L"%s|%d|", text, percent); }
    void Release() override { Texts += L"gone"; }

    ZVString Texts;
};

TEST_F(CFileLoaderTest, ShowsAWaitMessageFromBeforeItOpens)
{
    Messages messages;
    g_pZVWaitMessageFactory = &messages;
    m_loader.SetProgress(true, {});
    m_loader.SetLimits(29, false);
    EXPECT_TRUE(Load(Put("data", MakeContent(100))));
    EXPECT_EQ(messages.Texts, L"Reading 'data'  (0 bytes of 29 bytes)|0|Reading 'data'  (29 bytes of 29 bytes)|100|gone");
    m_loader.SetProgress(true, {});
    EXPECT_FALSE(LoadFromServer("/unasked"));
    EXPECT_TRUE(m_server.GetRequests().empty());
    g_pZVWaitMessageFactory = nullptr;
}

TEST_F(CFileLoaderTest, CancelOrTimeoutEndsAWaitForTheServer)
{
    m_server.SetAnswer("/silent", {.DelayMilliseconds = 60'000});
    m_server.SetAnswer("/stalls", {.Body = MakeContent(200'000), .StallAfter = 100'000, .StallMilliseconds = 60'000});
    m_loader.SetTimeout(100);
    EXPECT_FALSE(LoadFromServer("/silent"));
    m_loader.SetTimeout(60'000);
    ZVCancelHelper cancel;
    m_loader.SetCancelTarget(&cancel);
    std::thread canceller(
        [&]
        {
            while (m_server.GetRequests("/stalls").empty())
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            cancel.Cancel();
        });
    LoadFromServer("/stalls");
    EXPECT_TRUE(m_loader.IsCancelled());
    canceller.join();
    EXPECT_LT(m_buffer.GetUsed(), 200'000) << "it waited for the server";
    cancel.Clear();
    EXPECT_TRUE(Load(Put("local", "x")));
}

TEST_F(CFileLoaderTest, ReadsTextAndRemoteFacts)
{
    const std::string gzip = Gzip("\xEF\xBB\xBFgr\xC3\xBC\xC3\x9F");
    m_server.SetAnswer("/text", {.Headers = {"Content-Encoding: gzip"}, .Body = gzip});
    ZVString text = L"old";
    EXPECT_TRUE(text.LoadFromFile(m_server.GetURL("/text")));
    EXPECT_EQ(text, L"grüß");
    EXPECT_TRUE(text.LoadFromFile(nullptr));
    EXPECT_TRUE(text.IsEmpty());
    // More bytes than a string can hold.
    Put("huge", "");
    std::filesystem::resize_file(m_folder + "huge", uintmax_t {1} << 31);
    m_loader.SetLimits(INT64_MAX, true);
    text = L"old";
    EXPECT_FALSE(m_loader.LoadText(ZVFilename(TextAt("huge")), text, ZVEncoding::Detect, false));
    EXPECT_TRUE(text.IsEmpty());

    m_server.SetAnswer("/film.mkv", {.Body = MakeContent(12345)});
    for (const auto& [name, size] : {std::pair(m_server.GetURL("/film.mkv"), 12345), std::pair(m_server.GetURL("/missing"), -1),
                                     std::pair(Put("film.mkv", "123456"), 6), std::pair(TextAt("missing"), -1)})
    {
        EXPECT_EQ(ZVFilename(name).GetFileSize(), size);
        EXPECT_EQ(ZVFilename(name).Exists(), size >= 0);
    }
    EXPECT_EQ(m_server.GetRequests("/film.mkv").back().Method, "HEAD");
}
}
