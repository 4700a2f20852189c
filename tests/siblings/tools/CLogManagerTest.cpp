#include "siblings/tools/log/CLogManager.h"

#include "ToolsFolder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <ctime>
#include <fcntl.h>
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
    const ZVFormatArguments<sizeof...(Arguments)> list(arguments...);
    manager.LogNarrow(category, L"S", format, list.Records(), list.Count());
}

// The scope and the text of every line, with the tab between them.
std::vector<std::string> Texts(const ToolsFolder& folder)
{
    std::vector<std::string> texts = folder.ReadLines(LogName);
    for (std::string& text : texts)
        for (int field = 0; field < 4; ++field)
            text.erase(0, text.find('\t') + 1);
    return texts;
}

class Receiver final : public ILogManagerCustomOutput
{
public:
    explicit Receiver(std::function<void()> action = [] {}) : m_action(std::move(action)) {}
    void Output(uint32_t category, const wchar_t* text, int32_t length) override
    {
        Texts.push_back(std::to_wstring(category) + L":" + std::wstring(text, static_cast<size_t>(length)));
        m_action();
    }

    std::vector<std::wstring> Texts;

private:
    std::function<void()> m_action;
};

TEST(CLogManager, WritesOneLineOfSixFieldsForACall)
{
    const ToolsFolder folder;
    CLogManager manager(folder.AsString());
    EXPECT_FALSE(folder.Has("Logs")) << "a manager that was never used has touched the disk";
    const time_t before = time(nullptr);
    Log(manager, 256, "%s: %d \xc3\xa4", ZVString(L"/films/\u00c4 1.mkv"), -3);
    const time_t after = time(nullptr);

    const std::string line = folder.Read(LogName);
    const std::string process = std::to_string(getpid());
    EXPECT_THAT(line, testing::EndsWith("Z\t" + process + "\t" + process + "\t256\tS\t/films/\xc3\x84 1.mkv: -3 \xc3\xa4\n"));
    EXPECT_THAT(line, testing::MatchesRegex("[0-9-]{10}T[0-9:]{8}\\.[0-9]{3}Z\t[^Z]*"));
    tm stamp {};
    ASSERT_NE(strptime(line.c_str(), "%Y-%m-%dT%H:%M:%S", &stamp), nullptr);
    EXPECT_TRUE(before <= timegm(&stamp) && timegm(&stamp) <= after) << line;
}

TEST(CLogManager, CleansScopeAndText)
{
    struct Row
    {
        const char* Name;
        const wchar_t* Scope;
        const wchar_t* Text;
        const char* Line;
    };
    constexpr Row Rows[] = {
        {"line breaks and tabs",  L"A\tB", L"one\r\ntwo\nthree\t", "A B\tone  two three "               },
        {"control characters",    L"\x7f", L"\x1b[1m\x85\x9f|",    " \t [1m  |"                         },
        {"separators of Unicode", L"S",    L"a\x2028z\x2029",      "S\ta z "                            },
        {"all that stays",        L"S",    L"\xa0\uffff\u20ac",    "S\t\xc2\xa0\xef\xbf\xbf\xe2\x82\xac"},
        {"not carried",           L"S",    L"\U0001f600-\xd800-",  "S\t?-?-"                            },
        {"fixed text",            L"%s",   L"100% %d %% %",        "%s\t100% %d %% %"                   },
        {"nothing",               nullptr, nullptr,                "\t"                                 },
    };
    const ToolsFolder folder;
    CLogManager manager(folder.AsString());
    for (const Row& row : Rows)
    {
        manager.LogWide(1, row.Scope, row.Text, nullptr, 0);
        EXPECT_EQ(Texts(folder).back(), row.Line) << row.Name;
    }
    EXPECT_THAT(Texts(folder), SizeIs(std::size(Rows)));
}

TEST(CLogManager, TakesTheMaskOfTheEnvironmentThenOfTheFile)
{
    struct Row
    {
        const char* Name;
        const char* Environment;
        const char* File;
        uint32_t Mask;
    };
    constexpr Row Rows[] = {
        {"neither",                   nullptr, nullptr,      UINT32_MAX},
        {"file, decimal",             nullptr, "257\n",      257       },
        {"file, hexadecimal, blanks", nullptr, " 0x1F \r\n", 0x1f      },
        {"file, nothing in it",       nullptr, "",           UINT32_MAX},
        {"file, two numbers",         nullptr, "1 2\n",      UINT32_MAX},
        {"file, negative",            nullptr, "-1\n",       UINT32_MAX},
        {"file, prefix twice",        nullptr, "0x0x1\n",    UINT32_MAX},
        {"file, too large by one",    nullptr, "4294967296", UINT32_MAX},
        {"environment wins",          "64",    "257\n",      64        },
        {"environment, all off",      "0",     "1\n",        0         },
        {"environment, no number",    "x",     "257\n",      257       },
    };
    for (const Row& row : Rows)
    {
        SCOPED_TRACE(row.Name);
        const ToolsFolder folder;
        if (row.Environment != nullptr)
            setenv("ZV_LOG_MASK", row.Environment, 1);
        if (row.File != nullptr)
            folder.Write("Logs/log-mask", row.File);
        CLogManager manager(folder.AsString());
        Log(manager, 64, "line");
        EXPECT_EQ(folder.Has(LogName), (row.Mask & 64) != 0);
        EXPECT_EQ(manager.GetCategoryMask(), row.Mask);
    }
}

TEST(CLogManager, TheProcessMayChangeTheMaskAndTheEnvironmentTheFile)
{
    const ToolsFolder folder;
    setenv("ZV_LOG_MASK", "1", 1);
    setenv("ZV_LOG_FILE", folder.PathOf("deep/er/my.log").c_str(), 1);
    CLogManager manager {ZVString()};
    manager.SetCategoryMask(64);
    Log(manager, 1, "off");
    Log(manager, 64, "on");
    EXPECT_THAT(folder.ReadLines("deep/er/my.log"), ElementsAre(testing::EndsWith("\ton")));
    EXPECT_STREQ(manager.GetFilePath(), folder.AsString() + L"deep/er/my.log");
}

TEST(CLogManager, OutputsGetTheTextOfEveryCategory)
{
    const ToolsFolder folder;
    setenv("ZV_LOG_MASK", "1", 1);
    CLogManager manager(folder.AsString());
    Receiver output([] { throw std::bad_alloc(); });
    manager.AddCustomOutput(&output);
    manager.AddCustomOutput(&output);
    manager.AddCustomOutput(nullptr);
    Log(manager, 256, "not in the file\n%d", 7);
    Log(manager, 1, "");
    manager.RemoveCustomOutput(&output);
    manager.RemoveCustomOutput(&output);
    Log(manager, 256, "nobody wants it");
    Log(manager, 1, "file alone");
    EXPECT_THAT(output.Texts, ElementsAre(L"256:not in the file 7", L"1:"));
    EXPECT_THAT(Texts(folder), ElementsAre("S\t", "S\tfile alone"));
}

TEST(CLogManager, OutputsMayLogAndComeAndGoWhileTheyAreCalled)
{
    const ToolsFolder folder;
    CLogManager manager(folder.AsString());
    Receiver before;
    Receiver behind;
    Receiver late;
    Receiver leaving(
        [&]
        {
            Log(manager, 1, "from an output");
            manager.RemoveCustomOutput(&before);
            manager.RemoveCustomOutput(&leaving);
            manager.AddCustomOutput(&late);
        });
    for (Receiver* output : {&before, &leaving, &behind})
        manager.AddCustomOutput(output);
    Log(manager, 1, "a");
    Log(manager, 1, "b");
    EXPECT_THAT(before.Texts, ElementsAre(L"1:a"));
    EXPECT_THAT(leaving.Texts, ElementsAre(L"1:a"));
    EXPECT_THAT(behind.Texts, ElementsAre(L"1:a", L"1:b"));
    EXPECT_THAT(late.Texts, ElementsAre(L"1:a", L"1:b"));
    EXPECT_THAT(Texts(folder), ElementsAre("S\ta", "S\tfrom an output", "S\tb"));
}

TEST(CLogManager, WhereNothingCanBeWrittenLinesAreDropped)
{
    const ToolsFolder folder;
    folder.Write("file", "");
    ASSERT_EQ(mkfifo(folder.PathOf("pipe nobody reads").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(folder.PathOf("pipe").c_str(), 0600), 0);
    const int reader = open(folder.PathOf("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    for (const std::string& path : {folder.PathOf("file/Logs/log"), folder.PathOf("."), folder.PathOf("pipe nobody reads"),
                                    folder.PathOf("pipe"), std::string("/dev/full"), std::string("/proc/zv/log")})
    {
        SCOPED_TRACE(path);
        setenv("ZV_LOG_FILE", path.c_str(), 1);
        CLogManager manager(folder.AsString());
        Receiver output;
        manager.AddCustomOutput(&output);
        errno = 4711;
        manager.GetCategoryMask();
        for (int count = 0; count < 3; ++count)
            Log(manager, 1, "text");
        EXPECT_EQ(errno, 4711);
        EXPECT_THAT(output.Texts, SizeIs(3));
    }
    char byte = 0;
    EXPECT_EQ(read(reader, &byte, 1), 0);
    close(reader);
}

TEST(CLogManager, ManyThreadsLogWhileOutputsAndMaskChange)
{
    constexpr int ThreadCount = 4;
    constexpr int LineCount = 500;
    const ToolsFolder folder;
    CLogManager manager(folder.AsString());
    std::vector<std::thread> threads;
    for (int thread = 0; thread < ThreadCount; ++thread)
        threads.emplace_back(
            [&manager, thread]
            {
                for (int line = 0; line < LineCount; ++line)
                    Log(manager, 1, "%d/%d", thread, line);
            });
    for (int round = 0; round < 200; ++round)
    {
        Receiver output;
        manager.AddCustomOutput(&output);
        manager.SetCategoryMask(round % 2 == 0 ? 1 : UINT32_MAX);
        manager.RemoveCustomOutput(&output);
    }
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_THAT(Texts(folder), SizeIs(ThreadCount * LineCount));
    EXPECT_THAT(Texts(folder), testing::Each(testing::MatchesRegex("S\t[0-3]/[0-9]+")));
}
}
