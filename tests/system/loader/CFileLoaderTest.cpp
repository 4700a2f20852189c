#include "LoaderFixture.h"

#include "system/log/ZVElapsedTime.h"

#include <gmock/gmock.h>
#include <thread>
#include <vector>

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
    for (const ZVString& name : {path, L"file://" + path, m_server.GetURL("/ranges"), m_server.GetURL("/known"), unknown})
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
    for (const ZVString& name : {TextAt("missing"), TextAt(""), m_server.GetURL("/cut"), m_server.GetURL("/nothing"),
                                 ZVString(L"other://host/file"), ZVString(L"http://127.0.0.1:1/closed")})
    {
        SCOPED_TRACE(testing::PrintToString(std::wstring(name)));
        m_buffer.Append("old", 3);
        EXPECT_FALSE(Load(name));
        EXPECT_EQ(m_buffer.GetUsed(), 0);
    }
    m_loader.SetAllowInternet(false);
    EXPECT_FALSE(LoadFromServer("/unasked"));
    EXPECT_TRUE(m_server.GetRequests("/unasked").empty());
}

TEST_F(CFileLoaderTest, TellsWhatTheServerSaid)
{
    m_server.SetAnswer("/moved", {.Status = 301, .Headers = {"Location: /there"}});
    m_server.SetAnswer("/there", {.Headers = {"X-Zivora: yes"}, .Body = "content"});
    EXPECT_TRUE(LoadFromServer("/moved"));
    EXPECT_EQ(m_loader.GetStatusCode(), L"200");
    EXPECT_EQ(m_loader.GetLocation(), m_server.GetURL("/there"));
    EXPECT_GE(m_loader.GetAllHeaders().Find(L"X-Zivora: yes\r\n"), 0);
    EXPECT_EQ(m_loader.GetResourceSize(), 7);
    EXPECT_FALSE(LoadFromServer("/missing"));
    EXPECT_EQ(m_loader.GetStatusCode(), L"404");
    EXPECT_TRUE(Load(Put("local", "x")));
    EXPECT_TRUE(m_loader.GetStatusCode().IsEmpty());
}

TEST_F(CFileLoaderTest, InflatesWhatCameAsGzip)
{
    const std::string content = MakeContent(100'000);
    const std::string gzip = Gzip(content);
    std::string broken = gzip;
    broken[gzip.size() / 2] ^= 0x55;
    const std::string bomb = Gzip(std::string(20'000'000, '\0'));
    ASSERT_LT(bomb.size(), 30'000u);
    // An empty text stands for a failure.
    const auto check =
        [this](const char* name, const ZVTestAnswer& answer, int64_t maximum, bool failIfLarger, const std::string& expected)
    {
        SCOPED_TRACE(name);
        m_server.SetAnswer("/gzip", answer);
        m_loader.SetLimits(maximum, failIfLarger);
        EXPECT_EQ(LoadFromServer("/gzip"), !expected.empty());
        EXPECT_TRUE(Bytes(m_buffer) == expected) << m_buffer.GetUsed();

        ZVFilename target = ZVFilename::FromPath(TextAt("inflated.txt"));
        EXPECT_EQ(m_loader.LoadToFile(ZVFilename(m_server.GetURL("/gzip")), target, ZVLoadToFileMode::Replace),
                  !expected.empty());
        EXPECT_TRUE(Get("inflated.txt") == (expected.empty() ? "(none)" : expected));
        std::filesystem::remove(m_folder + "inflated.txt");
    };
    const std::vector<std::string> isGzip = {"Content-Encoding: x-GZIP"};
    check("chunked", {.Headers = isGzip, .Body = gzip, .IsChunked = true}, -1, true, content);
    check("broken", {.Headers = isGzip, .Body = broken}, -1, true, "");
    check("not gzip", {.Headers = isGzip, .Body = content}, -1, true, "");
    check("cut by the server", {.Headers = isGzip, .Body = gzip.substr(0, gzip.size() - 3)}, -1, true, "");
    check("empty", {.Headers = isGzip}, -1, true, "");
    check("within the limit", {.Headers = isGzip, .Body = gzip}, 100'000, true, content);
    check("larger", {.Headers = isGzip, .Body = gzip}, 10'000, true, "");
    check("larger when inflated", {.Headers = isGzip, .Body = bomb}, 1'000'000, true, "");
    check("cut when inflated", {.Headers = isGzip, .Body = bomb}, 1'000'000, false, std::string(1'000'000, '\0'));
    check("cut", {.Headers = isGzip, .Body = gzip}, 1000, false, content.substr(0, 1000));
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
    const auto check = [this](const std::string& resource, int32_t bytes, const wchar_t* marker, bool isLoaded,
                              const std::string& seen, int32_t context = 0, bool validateAtEnd = true)
    {
        SCOPED_TRACE(testing::Message() << bytes << " of " << resource.size());
        for (const bool intoFile : {false, true})
        {
            const ZVString path = Put("data", resource);
            ZVFilename target = ZVFilename::FromPath(TextAt("target"));
            s_seen.clear();
            m_loader.SetValidation(bytes, SeeBytes, context, validateAtEnd, marker);
            EXPECT_EQ(intoFile ? m_loader.LoadToFile(ZVFilename(path), target, ZVLoadToFileMode::Replace) : Load(path), isLoaded);
            EXPECT_TRUE(s_seen == seen);
            EXPECT_TRUE(!isLoaded || (intoFile ? Get("target") : Bytes(m_buffer)) == resource);
        }
    };
    check(content, 100, L"", false, content.substr(0, 100), 1);
    check(content, 1'500'000, L"", true, content.substr(0, 1'500'000));  // more than a block
    check(content, 0, L"nowhere", true, "", 1);                          // no test is wanted
    check(content, 10, L"3,4", true, content.substr(0, 10));
    check(content, 8, L"3,4", false, content.substr(0, 8));  // the marker ends behind them
    check(wide + content, 8, L"AB", true, wide);
    check("0,1,2", 100, L"nowhere", true, "", 1, false);
    check("", 100, L"", false, "", 1);
}

TEST_F(CFileLoaderTest, SendsTheRequestOnce)
{
    m_server.SetAnswer("/post", {.Body = "thanks"});
    const auto load = [&]
    {
        EXPECT_TRUE(LoadFromServer("/post"));
        return m_server.GetRequests("/post").back();
    };
    ZVStringArray headers;
    headers.Add(L"X-Own: 1");
    std::string body = "<a>1</a>";
    m_loader.SetRequest(headers, body.data(), static_cast<int64_t>(body.size()), true);
    body.assign(body.size(), 'x');
    ZVTestRequest request = load();
    EXPECT_EQ(request.Method, "POST");
    EXPECT_EQ(request.Body, "<a>1</a>");
    EXPECT_EQ(request.GetHeader("X-Own"), "1");
    EXPECT_EQ(request.GetHeader("Content-Type"), "text/xml");
    EXPECT_EQ(request.GetHeader("Accept-Encoding"), "gzip");
    m_loader.SetBody(ZVRequestMethod::Put, ZVRequestBodyKind::JSON, "", 0, false);
    request = load();
    EXPECT_EQ(request.Method, "PUT");
    EXPECT_EQ(request.GetHeader("Content-Length"), "0");
    EXPECT_EQ(request.GetHeader("Content-Type"), "application/json; charset=UTF-8");
    m_loader.SetBody(ZVRequestMethod::Put, ZVRequestBodyKind::JSON, "[1]", 3, false);
    request = load();
    EXPECT_EQ(request.Method + " " + request.Body, "PUT [1]");
    const std::string large = MakeContent(3'000'000);
    m_loader.SetBody(ZVRequestMethod::Post, ZVRequestBodyKind::General, large.data(), 3'000'000, true, L"text/x-own");
    request = load();
    EXPECT_EQ(request.GetHeader("Content-Type"), "text/x-own; charset=UTF-8");
    EXPECT_TRUE(request.Body == large && request.GetHeader("Expect").empty());

    // Not even when the load never began.
    m_loader.SetBody(ZVRequestMethod::Post, ZVRequestBodyKind::JSON, "{}", 2, false);
    m_loader.Cancel();
    EXPECT_FALSE(LoadFromServer("/post"));
    m_loader.SetCancelTarget(nullptr);
    request = load();
    EXPECT_EQ(request.Method, "GET");
    EXPECT_EQ(request.GetHeader("Content-Type") + request.GetHeader("Accept-Encoding"), "");

    EXPECT_FALSE(m_loader.SetRequestOption(L"X-Evil", L"1\r\nX-More: 2"));
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
    EXPECT_GE(watcher.Fractions.size(), 10u);

    // A load that was stopped tells that its resource opened, and keeps what it has.
    maximumPolls = 3;
    EXPECT_TRUE(Load(path));
    EXPECT_TRUE(m_loader.IsCancelled());
    EXPECT_TRUE(m_buffer.GetUsed() > 0 && m_buffer.GetUsed() < 10'000'000);
    maximumPolls = INT_MAX;
    EXPECT_FALSE(Load(path)) << "it stays cancelled";

    // A file of its own goes again, and an old one is not touched before the first byte.
    ZVFilename target = ZVFilename::FromPath(TextAt("copy"));
    for (const auto& [polls, content] : {std::pair(3, "(none)"), std::pair(0, "old")})
    {
        if (polls == 0)
            Put("copy", "old");
        m_loader.SetCancelTarget(nullptr);
        maximumPolls = polls;
        EXPECT_FALSE(m_loader.LoadToFile(ZVFilename(path), target, ZVLoadToFileMode::Replace));
        EXPECT_EQ(Get("copy"), content);
    }
}

// Shows one message, and cancels what it stands for when it is told to.
class Messages final : public IZVWaitMessageFactory, public IZVWaitMessage
{
public:
    Messages() { g_pZVWaitMessageFactory = this; }
    ~Messages() { g_pZVWaitMessageFactory = nullptr; }

    IZVWaitMessage* Create(const ZVWaitMessageOptions& options, IZVWaitMessageCallback& callback) override
    {
        Texts = options.Caption;
        IsShown = true;
        if (Cancels)
            callback.OnWaitMessageCancelled();
        return this;
    }
    void SetText(const ZVString& text, int32_t percent) override { Texts += ZVFormat(L"|%s|%d", text, percent); }
    void Release() override { IsShown = false; }

    ZVString Texts;
    bool IsShown = false;
    bool Cancels = false;
};

TEST_F(CFileLoaderTest, ShowsAWaitMessageFromBeforeItOpens)
{
    Messages messages;
    m_loader.SetProgress(true, 0, true, L"", false, L"");
    m_loader.SetLimits(29, false);
    EXPECT_TRUE(Load(Put("data", MakeContent(100))));
    EXPECT_EQ(messages.Texts,
              L"Local resource|Reading 'data'  (0 bytes of 29 bytes)|0|Reading 'data'  (29 bytes of 29 bytes)|100");

    m_server.SetAnswer("/silent", {.DelayMilliseconds = 60'000});
    messages.Cancels = true;
    EXPECT_FALSE(LoadFromServer("/silent"));
    EXPECT_TRUE(m_loader.IsCancelled());
    EXPECT_FALSE(messages.IsShown);
}

TEST_F(CFileLoaderTest, CancelOrTimeoutEndsAWaitForTheServer)
{
    m_server.SetAnswer("/silent", {.DelayMilliseconds = 60'000});
    m_server.SetAnswer("/stalls", {.Body = MakeContent(200'000), .StallAfter = 100'000, .StallMilliseconds = 60'000});
    const ZVElapsedTime time;
    CFileLoader impatient;
    impatient.SetTimeout(100);
    for (const char* target : {"/silent", "/stalls"})
        EXPECT_FALSE(impatient.Load(ZVFilename(m_server.GetURL(target)), m_buffer));
    ZVCancelHelper cancel;
    m_loader.SetCancelTarget(&cancel);
    std::thread canceller(
        [&]
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
            cancel.Cancel();
        });
    LoadFromServer("/stalls");
    EXPECT_TRUE(m_loader.IsCancelled());
    canceller.join();
    EXPECT_LT(time.GetMilliseconds(), 20'000);
    EXPECT_FALSE(Load(Put("local", "x")));
    cancel.Clear();
    EXPECT_TRUE(Load(TextAt("local")));
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
    // More than a string can hold.
    Put("huge", "\xFF\xFE");
    std::filesystem::resize_file(m_folder + "huge", uintmax_t {1} << 31);
    for (const char* name : {"missing", "huge"})
    {
        text = L"old";
        EXPECT_FALSE(text.LoadFromFile(TextAt(name))) << name;
        EXPECT_TRUE(text.IsEmpty());
    }

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
