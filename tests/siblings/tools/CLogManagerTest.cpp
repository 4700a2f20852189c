#include "siblings/tools/log/CLogManager.h"

#include "ToolsFolder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <ctime>
#include <sys/stat.h>
#include <thread>

namespace
{
using testing::ElementsAre;
using testing::SizeIs;

constexpr char LogName[] = "Logs/ZVWorker.log";

template <class... Arguments>
void Log(ILogManager& manager, uint32_t category, const char* format, const Arguments&... arguments)
{
    ZVLogSource {category, L"S"}.LogTo(manager, format, arguments...);
}

// The scope and the text of each line, with the tab between them.
std::vector<std::string> Texts(const ToolsFolder& folder)
{
    std::vector<std::string> texts = folder.ReadLines(LogName);
    for (std::string& text : texts)
        for (int field = 0; field < 4; ++field)
            text.erase(0, text.find('\t') + 1);
    return texts;
}

struct Receiver final : ILogManagerCustomOutput
{
    void Output(uint32_t category, const wchar_t* text, int32_t length) override
    {
        Texts.push_back(std::to_wstring(category) + L":" + std::wstring(text, static_cast<size_t>(length)));
        Action();
    }

    std::function<void()> Action = [] {};
    std::vector<std::wstring> Texts;
};

TEST(CLogManager, WritesOneLineOfSixFieldsForACall)
{
    const ToolsFolder folder;
    CLogManager manager(folder.AsString());
    EXPECT_FALSE(folder.Has("Logs")) << "a manager that was never used has touched the disk";
    const time_t before = time(nullptr);
    Log(manager, 256, "%s: %d \xc3\xa4", ZVString(L"/films/\u00c4 1.mkv"), -3);

    const std::string line = folder.Read(LogName);
    const std::string process = std::to_string(getpid());
    tm stamp {};
    const char* const rest = strptime(line.c_str(), "%Y-%m-%dT%H:%M:%S", &stamp);
    ASSERT_NE(rest, nullptr) << line;
    EXPECT_NEAR(static_cast<double>(timegm(&stamp)), static_cast<double>(before), 60) << line;
    EXPECT_THAT(rest, testing::MatchesRegex("\\.[0-9]{3}Z\t" + process + "\t" + process +
                                            "\t256\tS\t/films/\xc3\x84 1\\.mkv: -3 \xc3\xa4\n"));
}

TEST(CLogManager, CleansScopeAndText)
{
    const ToolsFolder folder;
    CLogManager manager(folder.AsString());
    const auto write = [&](const wchar_t* scope, const wchar_t* text)
    {
        manager.LogWide(1, scope, text, nullptr, 0);
        return Texts(folder).back();
    };
    EXPECT_EQ(write(L"A\tB", L"one\r\ntwo\nthree\t"), "A B\tone  two three ");
    EXPECT_EQ(write(L"\x7f", L"\x1b[1m\x85\x9f|"), " \t [1m  |");
    EXPECT_EQ(write(L"S", L"a\x2028z\x2029\xa0\uffff"), "S\ta z \xc2\xa0\xef\xbf\xbf");
    EXPECT_EQ(write(L"S", L"\U0001f600-\xd800-"), "S\t?-?-");
    // Bytes of a path: one that is no UTF-8, a backslash, an emoji.
    EXPECT_EQ(write(L"S", L"\xdcff|\xdc5c|\xdcf0\xdc9f\xdc98\xdc80|"), "S\t\xc3\xbf|\\|?|");
    EXPECT_EQ(write(L"%s", L"100% %d %% %"), "%s\t100% %d %% %");
    EXPECT_EQ(write(nullptr, nullptr), "\t");
}

TEST(CLogManager, OutputsGetTheTextOfEveryCategoryAndMayLogFailAndComeAndGoMeanwhile)
{
    const ToolsFolder folder;
    setenv("ZV_LOG_MASK", "1", 1);
    CLogManager manager(folder.AsString());
    Receiver before, after, late, leaving;
    leaving.Action = [&]
    {
        Log(manager, 1, "from an output");
        for (Receiver* gone : {&before, &leaving, &leaving})
            manager.RemoveCustomOutput(gone);
        manager.AddCustomOutput(&late);
    };
    late.Action = [] { throw std::bad_alloc(); };
    for (Receiver* output : {&before, &leaving, &after, &after, static_cast<Receiver*>(nullptr)})
        manager.AddCustomOutput(output);
    Log(manager, 256, "not in the file\n%d", 7);
    Log(manager, 1, "");
    EXPECT_THAT(before.Texts, ElementsAre(L"256:not in the file 7"));
    EXPECT_THAT(leaving.Texts, ElementsAre(L"256:not in the file 7"));
    EXPECT_THAT(after.Texts, ElementsAre(L"256:not in the file 7", L"1:"));
    EXPECT_THAT(late.Texts, ElementsAre(L"256:not in the file 7", L"1:"));
    EXPECT_THAT(Texts(folder), ElementsAre("S\tfrom an output", "S\t"));
}

TEST(CLogManager, WhereNothingCanBeWrittenLinesAreDropped)
{
    const ToolsFolder folder;
    folder.Write("file", "");
    ASSERT_EQ(mkfifo(folder.PathOf("pipe").c_str(), 0600), 0);
    for (const std::string& path : {folder.PathOf("file/Logs/log"), folder.PathOf("."), folder.PathOf("pipe"),
                                    std::string("/dev/full"), std::string("/proc/zv/log")})
    {
        SCOPED_TRACE(path);
        setenv("ZV_LOG_FILE", path.c_str(), 1);
        CLogManager manager(folder.AsString());
        Receiver output;
        manager.AddCustomOutput(&output);
        errno = 4711;
        for (int count = 0; count < 3; ++count)
            Log(manager, 1, "text");
        EXPECT_EQ(errno, 4711);
        EXPECT_THAT(output.Texts, SizeIs(3));
    }
}

TEST(CLogManager, ManyThreadsLogToTheFileOfTheEnvironmentWhileOutputsAndMaskChange)
{
    constexpr int ThreadCount = 4, LineCount = 500;
    const ToolsFolder folder;
    setenv("ZV_LOG_MASK", "1", 1);
    setenv("ZV_LOG_FILE", folder.PathOf("deep/er/my.log").c_str(), 1);
    CLogManager manager {ZVString()};
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < ThreadCount; ++thread)
        threads.emplace_back(
            [&manager]
            {
                for (int line = 0; line < LineCount; ++line)
                    Log(manager, 1, "line %d", 1000 + line);
            });
    for (int round = 0; round < 200; ++round)
    {
        Receiver output;
        manager.AddCustomOutput(&output);
        manager.SetCategoryMask(round % 2 == 0 ? 1 : 65);
        manager.RemoveCustomOutput(&output);
    }
    threads.clear();
    Log(manager, 64, "the mask is what the process made it");
    const std::vector<std::string> lines = folder.ReadLines("deep/er/my.log");
    EXPECT_THAT(lines, SizeIs(ThreadCount * LineCount + 1));
    EXPECT_THAT(lines, testing::Each(testing::ContainsRegex("\tS\t(line 1[0-9]{3}|the mask is.*)$")));
}
}
