#include "LoaderFixture.h"

#include "system/loader/IZVFileLoaderProgress.h"
#include "system/loader/IZVFileLoaderSink.h"

#include <gmock/gmock.h>
#include <thread>
#include <vector>

namespace
{
class CFileLoaderTest : public LoaderFixture
{
};

TEST_F(CFileLoaderTest, KeepsItsLimitsOnEveryRoad)
{
    const std::string content = MakeContent(3'000'000);
    const ZVString path = Put("data.bin", content);
    ZVTestAnswer chunked {.Body = content, .IsChunked = true};
    m_server.SetAnswer("/known", {.Body = content, .AnswersRanges = true});
    m_server.SetAnswer("/noranges", {.Body = content});
    m_server.SetAnswer("/unknown", chunked);
    const ZVString fileURL = L"file://" + path;
    const ZVString known = m_server.GetURL("/known");
    const ZVString noRanges = m_server.GetURL("/noranges");
    const ZVString unknown = m_server.GetURL("/unknown");

    const struct
    {
        const char* Name;
        int64_t MaximumBytes;
        bool FailIfLarger;
        int64_t StartOffset;
        bool IsLoaded;
        size_t Size;
    } rows[] = {
        {"whole", -1, false, 0, true, 3'000'000},
        {"no limit is 0", 0, true, 0, true, 3'000'000},
        {"cut", 100, false, 0, true, 100},
        {"larger", 100, true, 0, false, 0},
        {"as large as allowed", 3'000'000, true, 0, true, 3'000'000},
        {"one byte larger", 2'999'999, true, 0, false, 0},
        {"from an offset", -1, false, 2'500'000, true, 500'000},
        {"the rest is small enough", 500'000, true, 2'500'000, true, 500'000},
        {"cut behind an offset", 70'000, false, 1'000'000, true, 70'000},
        {"from the end", -1, false, 3'000'000, true, 0},
        {"from behind the end", -1, false, 4'000'000, true, 0},
    };
    for (const ZVString& name : {path, fileURL, known, noRanges, unknown})
        for (const bool streaming : {true, false})
            for (const auto& row : rows)
            {
                // Without a reader there is no internet, and without a size no end to start from.
                if ((!streaming && ZVFilename::IsRemote(name) && name != fileURL) || (name == unknown && row.StartOffset >= 3'000'000))
                    continue;
                SCOPED_TRACE(std::string(row.Name) + (streaming ? " streaming " : " direct ") +
                             testing::PrintToString(std::wstring(name)));
                CFileLoader loader;
                loader.SetStreaming(streaming);
                loader.SetLimits(row.MaximumBytes, row.FailIfLarger);
                loader.SetStartOffset(row.StartOffset);
                ZVBuffer buffer;
                buffer.Append("old", 3);
                EXPECT_EQ(loader.Load(name, buffer), row.IsLoaded);
                const size_t start = std::min<size_t>(static_cast<size_t>(row.StartOffset), content.size());
                EXPECT_TRUE(Bytes(buffer) == content.substr(start, row.Size)) << buffer.GetUsed();
            }
}

TEST_F(CFileLoaderTest, FailsWithAnEmptyBuffer)
{
    const std::string content = MakeContent(200'000);
    m_server.SetAnswer("/cut", {.Body = content, .CutAfter = 150'000});
    m_server.SetAnswer("/cutchunks", {.Body = content, .IsChunked = true, .CutAfter = 150'000});
    m_server.SetAnswer("/nothing", {.HidesLength = true});
    m_server.SetAnswer("/error", {.Status = 500, .Body = "the reason"});
    for (const ZVString& name :
         {TextAt("missing"), TextAt(""), ZVString(L"/dev/null/x"), m_server.GetURL("/cut"), m_server.GetURL("/cutchunks"),
          m_server.GetURL("/nothing"), m_server.GetURL("/missing"), m_server.GetURL("/error"), ZVString(L"other://host/file"),
          ZVString(L"http://127.0.0.1:1/closed")})
    {
        SCOPED_TRACE(testing::PrintToString(std::wstring(name)));
        CFileLoader loader;
        ZVBuffer buffer;
        buffer.Append("old", 3);
        EXPECT_FALSE(loader.Load(name, buffer));
        EXPECT_EQ(buffer.GetUsed(), 0);
    }
    CFileLoader offline;
    offline.SetAllowInternet(false);
    ZVBuffer buffer;
    EXPECT_FALSE(offline.Load(m_server.GetURL("/cut"), buffer));
}

TEST_F(CFileLoaderTest, TellsWhatTheServerSaid)
{
    m_server.SetAnswer("/moved", {.Status = 301, .Headers = {"Location: /there"}});
    m_server.SetAnswer("/there", {.Headers = {"X-Zivora: yes"}, .Body = "content"});
    CFileLoader loader;
    ZVBuffer buffer;
    EXPECT_TRUE(loader.Load(m_server.GetURL("/moved"), buffer));
    EXPECT_EQ(Bytes(buffer), "content");
    EXPECT_EQ(loader.GetStatusCode(), L"200");
    EXPECT_EQ(loader.GetLocation(), m_server.GetURL("/there"));
    EXPECT_GE(loader.GetAllHeaders().Find(L"X-Zivora: yes\r\n"), 0);
    EXPECT_EQ(loader.GetResourceSize(), 7);

    EXPECT_FALSE(loader.Load(m_server.GetURL("/missing"), buffer));
    EXPECT_EQ(loader.GetStatusCode(), L"404");
    EXPECT_TRUE(loader.Load(Put("local", "x"), buffer));
    EXPECT_TRUE(loader.GetStatusCode().IsEmpty());
}

TEST_F(CFileLoaderTest, InflatesWhatCameAsGzip)
{
    const std::string content = MakeContent(100'000);
    const std::string gzip = ZVTestServer::Gzip(content);
    std::string broken = gzip;
    broken[gzip.size() / 2] ^= 0x55;
    const std::vector<std::string> isGzip = {"Content-Encoding: x-GZIP"};
    m_server.SetAnswer("/good", {.Headers = isGzip, .Body = gzip});
    m_server.SetAnswer("/chunked", {.Headers = isGzip, .Body = gzip, .IsChunked = true});
    m_server.SetAnswer("/broken", {.Headers = isGzip, .Body = broken});
    m_server.SetAnswer("/plain", {.Headers = isGzip, .Body = content});
    m_server.SetAnswer("/cut", {.Headers = isGzip, .Body = gzip.substr(0, gzip.size() - 3)});
    // Twenty megabytes of zeros in twenty kilobytes.
    ASSERT_EQ(system(("head -c 20000000 /dev/zero | gzip > " + m_folder + "bomb").c_str()), 0);
    m_server.SetAnswer("/bomb", {.Headers = isGzip, .Body = Get("bomb")});
    const struct
    {
        const char* Target;
        int64_t MaximumBytes;
        std::string Content;  // empty for a failure
    } rows[] = {
        {"/good", -1, content},     {"/chunked", -1, content}, {"/broken", -1, ""}, {"/plain", -1, ""}, {"/cut", -1, ""},
        {"/good", 1'000'000, content}, {"/good", 100'000, ""},
        {"/bomb", 1'000'000, ""},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Target + std::to_string(row.MaximumBytes));
        CFileLoader loader;
        loader.SetLimits(row.MaximumBytes, true);
        ZVBuffer buffer;
        EXPECT_EQ(loader.Load(m_server.GetURL(row.Target), buffer), !row.Content.empty());
        EXPECT_TRUE(Bytes(buffer) == row.Content);

        ZVFilename target = TextAt("inflated.txt");
        loader.SetLimits(row.MaximumBytes, true);
        EXPECT_EQ(loader.LoadToFile(m_server.GetURL(row.Target), target, ZVLoadToFileMode::Replace), !row.Content.empty());
        EXPECT_TRUE(Get("inflated.txt") == (row.Content.empty() ? "(none)" : row.Content));
        std::filesystem::remove(m_folder + "inflated.txt");
    }
}

// Sees the first bytes and judges them by the context.
std::string s_seen;

bool SeeBytes(const ZVBuffer& bytes, int32_t context)
{
    s_seen.assign(reinterpret_cast<const char*>(bytes.GetData()), static_cast<size_t>(bytes.GetUsed()));
    return context == 0;
}

class StringSink final : public IZVFileLoaderSink
{
public:
    bool CanResume(int64_t, int64_t) override { return true; }
    int64_t Write(const void* bytes, int64_t count) override
    {
        Content.append(static_cast<const char*>(bytes), static_cast<size_t>(count));
        return count;
    }
    bool Close(bool) override { return true; }
    void OnFailure() override {}

    std::string Content;
};

TEST_F(CFileLoaderTest, TestsTheFirstBytes)
{
    const std::string content = MakeContent(2'000'000);
    const ZVString path = Put("data", content);
    const ZVString shortPath = Put("short", "0,1,2");
    const ZVString emptyPath = Put("empty", "");
    Put("wide", std::string("A\0\0\0B\0\0\0", 8) + content);
    const struct
    {
        const char* Name;
        ZVString Path;
        int32_t Bytes;
        int32_t Context;
        bool ValidateAtEnd;
        const wchar_t* Marker;
        bool IsLoaded;
        std::string Seen;
    } rows[] = {
        {"passes", path, 100, 0, true, L"", true, content.substr(0, 100)},
        {"is refused", path, 100, 1, true, L"", false, content.substr(0, 100)},
        {"wants no bytes", path, 0, 1, true, L"nowhere", true, ""},
        {"marker inside", path, 10, 0, true, L"3,4", true, content.substr(0, 10)},
        {"marker just behind", path, 8, 0, true, L"3,4", false, content.substr(0, 8)},
        {"wide marker", TextAt("wide"), 8, 0, true, L"AB", true, std::string("A\0\0\0B\0\0\0", 8)},
        {"short, at its end", shortPath, 100, 1, true, L"", false, "0,1,2"},
        {"short, not at all", shortPath, 100, 1, false, L"nowhere", true, ""},
        {"empty, at its end", emptyPath, 100, 1, true, L"", false, ""},
        {"more than a block", path, 1'500'000, 0, true, L"", true, content.substr(0, 1'500'000)},
    };
    for (const auto& row : rows)
        for (const bool intoSink : {false, true})
        {
            SCOPED_TRACE(std::string(row.Name) + (intoSink ? " into a sink" : ""));
            s_seen.clear();
            CFileLoader loader;
            loader.SetValidation(row.Bytes, SeeBytes, row.Context, row.ValidateAtEnd, row.Marker);
            StringSink sink;
            ZVBuffer buffer;
            EXPECT_EQ(intoSink ? loader.LoadToSink(row.Path, nullptr, &sink, L"", nullptr, 0.0) : loader.Load(row.Path, buffer),
                      row.IsLoaded);
            EXPECT_TRUE(s_seen == row.Seen);
        }
}

TEST_F(CFileLoaderTest, SendsTheRequestOnce)
{
    m_server.SetAnswer("/post", {.Body = "thanks"});
    CFileLoader loader;
    ZVBuffer buffer;
    const std::string body = "<a>1</a>";
    const auto load = [&] {
        EXPECT_TRUE(loader.Load(m_server.GetURL("/post"), buffer));
        return m_server.GetRequests("/post").back();
    };

    ZVStringArray headers;
    headers.Add(L"X-Own: 1");
    {
        std::string copied = body;
        loader.SetRequest(headers, copied.data(), static_cast<int64_t>(copied.size()), true);
        copied.assign(copied.size(), 'x');
    }
    ZVTestRequest request = load();
    EXPECT_EQ(request.Method, "POST");
    EXPECT_EQ(request.Body, body);
    EXPECT_EQ(request.GetHeader("X-Own"), "1");
    EXPECT_EQ(request.GetHeader("Content-Type"), "text/xml");
    EXPECT_EQ(request.GetHeader("Accept-Encoding"), "gzip");

    loader.SetBody(ZVRequestMethod::Put, ZVRequestBodyKind::JSON, "{}", 2, false);
    request = load();
    EXPECT_EQ(request.Method, "PUT");
    EXPECT_EQ(request.Body, "{}");
    EXPECT_EQ(request.GetHeader("Content-Type"), "application/json; charset=UTF-8");
    EXPECT_EQ(request.GetHeader("Content-Length"), "2");

    loader.SetBody(ZVRequestMethod::Post, ZVRequestBodyKind::General, "", 1, true, L"text/x-own");
    EXPECT_EQ(load().GetHeader("Content-Type"), "text/x-own; charset=UTF-8");

    request = load();
    EXPECT_EQ(request.Method, "GET");
    EXPECT_FALSE(request.HasHeader("Content-Type"));
    EXPECT_FALSE(request.HasHeader("Accept-Encoding"));

    EXPECT_FALSE(loader.SetRequestOption(L"X-Evil", L"1\r\nX-More: 2"));
    EXPECT_FALSE(loader.SetRequestOption(L"X-Evil", L"1|X-More: 2"));
    EXPECT_TRUE(loader.SetRequestOption(L"X-Own", L"1"));
    EXPECT_TRUE(loader.SetRequestOption(L"x-own", L"2"));
    EXPECT_EQ(load().GetHeader("X-Own"), "2");
}

class Watcher final : public IZVFileLoaderProgress
{
public:
    bool Poll() override { return ++Polls > MaximumPolls; }
    void Notify(double fraction) override { Fractions.push_back(fraction); }

    int Polls = 0;
    int MaximumPolls = INT_MAX;
    std::vector<double> Fractions;
};

TEST_F(CFileLoaderTest, ReportsAndStopsOnDemand)
{
    const ZVString path = Put("data", MakeContent(10'000'000));
    CFileLoader loader;
    Watcher watcher;
    loader.SetProgressCallback(&watcher);
    ZVBuffer buffer;
    EXPECT_TRUE(loader.Load(path, buffer));
    EXPECT_EQ(watcher.Fractions.front(), 0);
    EXPECT_EQ(watcher.Fractions.back(), 1);
    EXPECT_GE(watcher.Fractions.size(), 10u);

    // A load that was stopped tells that its resource opened, and keeps what it has.
    watcher.Polls = 0;
    watcher.MaximumPolls = 3;
    EXPECT_TRUE(loader.Load(path, buffer));
    EXPECT_TRUE(loader.IsCancelled());
    EXPECT_GT(buffer.GetUsed(), 0);
    EXPECT_LT(buffer.GetUsed(), 10'000'000);
    watcher.MaximumPolls = INT_MAX;
    EXPECT_FALSE(loader.Load(path, buffer));
    loader.SetCancelTarget(nullptr);
    EXPECT_TRUE(loader.Load(path, buffer));

    watcher.MaximumPolls = watcher.Polls + 3;
    ZVFilename target = TextAt("copy");
    EXPECT_FALSE(loader.LoadToFile(path, target, ZVLoadToFileMode::Replace));
    EXPECT_EQ(Get("copy"), "(none)");

    // Before the first byte.
    Put("copy", "old");
    watcher.MaximumPolls = watcher.Polls;
    loader.SetCancelTarget(nullptr);
    EXPECT_FALSE(loader.LoadToFile(path, target, ZVLoadToFileMode::Replace));
    EXPECT_EQ(Get("copy"), "old");
}

// Shows one message, and cancels what it stands for when it is told to.
class Messages final : public IZVWaitMessageFactory, public IZVWaitMessage
{
public:
    Messages() { g_pZVWaitMessageFactory = this; }
    ~Messages() { g_pZVWaitMessageFactory = nullptr; }

    IZVWaitMessage* Create(const ZVWaitMessageOptions& options, IZVWaitMessageCallback& callback) override
    {
        Caption = options.Caption;
        IsShown = true;
        if (Cancels)
            callback.OnWaitMessageCancelled();
        return this;
    }
    void SetText(const ZVString& text, int32_t percent) override
    {
        Text = text;
        Percent = percent;
    }
    void Release() override { IsShown = false; }

    ZVString Caption;
    ZVString Text;
    int32_t Percent = 0;
    bool IsShown = false;
    bool Cancels = false;
};

TEST_F(CFileLoaderTest, ShowsAWaitMessageFromBeforeItOpens)
{
    Messages messages;
    CFileLoader loader;
    loader.SetProgress(true, 0, true, L"", false, L"");
    loader.SetLimits(29, false);
    ZVBuffer buffer;
    EXPECT_TRUE(loader.Load(Put("data", MakeContent(100)), buffer));
    EXPECT_EQ(messages.Caption, L"Local resource");
    EXPECT_EQ(messages.Text, L"Reading 'data'  (29 bytes of 29 bytes)");
    EXPECT_EQ(messages.Percent, 100);
    EXPECT_FALSE(messages.IsShown);

    m_server.SetAnswer("/silent", {.Body = "x", .DelayMilliseconds = 60'000});
    messages.Cancels = true;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(loader.Load(m_server.GetURL("/silent"), buffer));
    EXPECT_TRUE(loader.IsCancelled());
    EXPECT_FALSE(messages.IsShown);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(CFileLoaderTest, ForgetsTheRequestOfALoadThatNeverBegan)
{
    m_server.SetAnswer("/post", {.Body = "thanks"});
    CFileLoader loader;
    ZVBuffer buffer;
    buffer.Append("old", 3);
    loader.SetBody(ZVRequestMethod::Post, ZVRequestBodyKind::JSON, std::string("{}").data(), 2, false);
    loader.Cancel();
    EXPECT_FALSE(loader.Load(m_server.GetURL("/post"), buffer));
    EXPECT_EQ(buffer.GetUsed(), 0);
    loader.SetCancelTarget(nullptr);
    EXPECT_TRUE(loader.Load(m_server.GetURL("/post"), buffer));
    EXPECT_EQ(m_server.GetRequests("/post").back().Method, "GET");
}

TEST_F(CFileLoaderTest, CancelEndsAWaitForTheServer)
{
    m_server.SetAnswer("/silent", {.Body = "x", .DelayMilliseconds = 60'000});
    m_server.SetAnswer("/stalls", {.Body = MakeContent(200'000), .StallAfter = 100'000, .StallMilliseconds = 60'000});
    for (const char* target : {"/silent", "/stalls"})
    {
        SCOPED_TRACE(target);
        ZVCancelHelper cancel;
        CFileLoader loader;
        loader.SetCancelTarget(&cancel);
        ZVBuffer buffer;
        std::thread canceller([&] {
            while (m_server.GetRequests(target).empty())
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            cancel.Cancel();
        });
        loader.Load(m_server.GetURL(target), buffer);
        EXPECT_TRUE(loader.IsCancelled());
        canceller.join();
        EXPECT_FALSE(loader.Load(Put("local", "x"), buffer));
        cancel.Clear();
        EXPECT_TRUE(loader.Load(Put("local", "x"), buffer));
    }
    CFileLoader impatient;
    impatient.SetTimeout(100);
    ZVBuffer buffer;
    EXPECT_FALSE(impatient.Load(m_server.GetURL("/silent"), buffer));
    EXPECT_FALSE(impatient.Load(m_server.GetURL("/stalls"), buffer));
}

TEST_F(CFileLoaderTest, ReadsTextAndRemoteFacts)
{
    m_server.SetAnswer("/text", {.Headers = {"Content-Encoding: gzip"}, .Body = ZVTestServer::Gzip("\xEF\xBB\xBFgr\xC3\xBC\xC3\x9F")});
    ZVString text = L"old";
    EXPECT_TRUE(text.LoadFromFile(m_server.GetURL("/text")));
    EXPECT_EQ(text, L"grüß");
    EXPECT_TRUE(text.LoadFromFile(Put("utf16", std::string("\xFF\xFE" "a\0b\0", 6))));
    EXPECT_EQ(text, L"ab");
    EXPECT_FALSE(text.LoadFromFile(TextAt("missing")));
    EXPECT_TRUE(text.IsEmpty());
    // More than a string can hold.
    std::filesystem::resize_file(m_folder + "utf16", uintmax_t {1} << 31);
    EXPECT_FALSE(text.LoadFromFile(TextAt("utf16")));
    std::filesystem::resize_file(m_folder + "utf16", 6);
    text = L"old";
    EXPECT_TRUE(text.LoadFromFile(nullptr));
    EXPECT_TRUE(text.IsEmpty());

    m_server.SetAnswer("/film.mkv", {.Body = MakeContent(12345)});
    const ZVFilename film = m_server.GetURL("/film.mkv");
    EXPECT_EQ(film.GetFileSize(), 12345);
    EXPECT_TRUE(film.Exists());
    EXPECT_EQ(m_server.GetRequests("/film.mkv").back().Method, "HEAD");
    EXPECT_FALSE(ZVFilename(m_server.GetURL("/missing")).Exists());
    EXPECT_EQ(ZVFilename(m_server.GetURL("/missing")).GetFileSize(), -1);
    EXPECT_EQ(ZVFilename(TextAt("utf16")).GetFileSize(), 6);
    EXPECT_FALSE(ZVFilename(TextAt("missing")).Exists());
}
}
