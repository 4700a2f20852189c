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
void LogNarrow(ILogManager& manager, uint32_t category, const wchar_t* scope, const char* format, const Arguments&... arguments)
{
    const ZVFormatArguments<sizeof...(Arguments)> list(arguments...);
    manager.LogNarrow(category, scope, format, list.Records(), list.Count());
}

std::vector<std::string> Fields(const std::string& line)
{
    std::vector<std::string> fields(1);
    for (const char byte : line)
        if (byte == '\t')
            fields.emplace_back();
        else
            fields.back() += byte;
    return fields;
}

// The scope and the text of every line.
std::vector<std::string> Texts(const ToolsFolder& folder)
{
    std::vector<std::string> texts;
    for (const std::string& line : folder.ReadLines(LogName))
    {
        const std::vector<std::string> fields = Fields(line);
        texts.push_back(fields.size() == 6 ? fields[4] + "|" + fields[5] : "not six fields: " + line);
    }
    return texts;
}

class Receiver final : public ILogManagerCustomOutput
{
public:
    explicit Receiver(std::function<void()> action = {}) : m_action(std::move(action)) {}
    void Output(uint32_t category, const wchar_t* text, int32_t length) override
    {
        Texts.push_back(std::to_wstring(category) + L":" + std::wstring(text, static_cast<size_t>(length)));
        if (m_action)
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
    const ZVString path = L"/films/\u00c4 1.mkv";
    const time_t before = time(nullptr);
    LogNarrow(manager, 256, L"Analyze", "%s: %d \xc3\xa4", path, -3);
    const time_t after = time(nullptr);

    const std::vector<std::string> lines = folder.ReadLines(LogName);
    ASSERT_THAT(lines, SizeIs(1));
    const std::vector<std::string> fields = Fields(lines[0]);
    ASSERT_THAT(fields, SizeIs(6));
    const std::string process = std::to_string(getpid());
    EXPECT_THAT(std::vector(fields.begin() + 1, fields.end()),
                ElementsAre(process, process, "256", "Analyze", "/films/\xc3\x84 1.mkv: -3 \xc3\xa4"));
    EXPECT_THAT(fields[0], testing::MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}Z"));
    tm stamp {};
    ASSERT_NE(strptime(fields[0].c_str(), "%Y-%m-%dT%H:%M:%S", &stamp), nullptr);
    EXPECT_GE(timegm(&stamp), before);
    EXPECT_LE(timegm(&stamp), after);
}

TEST(CLogManager, CleansScopeAndText)
{
    struct Row
    {
        const char* Name;
        const wchar_t* Scope;
        const wchar_t* Format;
        const char* Line;
    };
    const Row rows[] = {
        {"line breaks and tabs",  L"A\tB", L"one\r\ntwo\nthree\t", "A B|one  two three "       },
        {"control characters",    L"\x7f", L"\x1b[1m\x85\x9f|",    " | [1m  |"                 },
        {"separators of Unicode", L"S",    L"a\x2028z\x2029",      "S|a z "                    },
        {"no-break space stays",  L"S",    L"\xa0",                "S|\xc2\xa0"                },
        {"last of three bytes",   L"S",    L"\uffff\u20ac",        "S|\xef\xbf\xbf\xe2\x82\xac"},
        {"not carried",           L"S",    L"\U0001f600\xd800-",
         "S|?"
         "?-"                                                                                  },
        {"nothing",               nullptr, nullptr,                "|"                         },
    };
    const ToolsFolder folder;
    CLogManager manager(folder.AsString());
    std::vector<std::string> expected;
    for (const Row& row : rows)
    {
        manager.LogWide(1, row.Scope, row.Format, nullptr, 3);
        expected.push_back(row.Line);
    }
    EXPECT_EQ(Texts(folder), expected);
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
        {"neither",                      nullptr,      nullptr,      UINT32_MAX},
        {"file, decimal",                nullptr,      "257\n",      257       },
        {"file, hexadecimal and blanks", nullptr,      " 0x1f \r\n", 0x1f      },
        {"file, nothing in it",          nullptr,      "",           UINT32_MAX},
        {"file, no number",              nullptr,      "all\n",      UINT32_MAX},
        {"file, two numbers",            nullptr,      "1 2\n",      UINT32_MAX},
        {"file, negative",               nullptr,      "-1\n",       UINT32_MAX},
        {"file, prefix alone",           nullptr,      "0x\n",       UINT32_MAX},
        {"file, too large by one",       nullptr,      "4294967296", UINT32_MAX},
        {"environment wins",             "64",         "257\n",      64        },
        {"environment, largest",         "0xFFFFFFFF", "1\n",        UINT32_MAX},
        {"environment, all off",         "0",          "1\n",        0         },
        {"environment, no number",       "x",          "257\n",      257       },
        {"environment, empty",           "",           "257\n",      257       },
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
        for (const uint32_t category : {1u, 64u, 256u, 1u << 31})
            LogNarrow(manager, category, L"", "%u", category);
        std::vector<std::string> expected;
        for (const uint32_t category : {1u, 64u, 256u, 1u << 31})
            if ((row.Mask & category) != 0)
                expected.push_back("|" + std::to_string(category));
        EXPECT_EQ(Texts(folder), expected);
        EXPECT_EQ(manager.GetCategoryMask(), row.Mask);
        EXPECT_EQ(folder.Has(LogName), !expected.empty());
    }
}

TEST(CLogManager, TheMaskOfTheProcessHoldsFromTheFirstLineOn)
{
    const ToolsFolder folder;
    folder.Write("Logs/log-mask", "1\n");
    CLogManager manager(folder.AsString());
    manager.SetCategoryMask(64);
    LogNarrow(manager, 1, L"", "off");
    LogNarrow(manager, 64, L"", "on");
    EXPECT_THAT(Texts(folder), ElementsAre("|on"));
}

TEST(CLogManager, TheEnvironmentNamesTheFile)
{
    const ToolsFolder folder;
    setenv("ZV_LOG_FILE", folder.PathOf("deep/er/my.log").c_str(), 1);
    CLogManager manager {ZVString()};
    LogNarrow(manager, 1, L"S", "text");
    EXPECT_THAT(folder.ReadLines("deep/er/my.log"), SizeIs(1));
    EXPECT_STREQ(manager.GetFilePath(), folder.AsString() + L"deep/er/my.log");
}

TEST(CLogManager, OutputsGetTheTextOfEveryCategory)
{
    const ToolsFolder folder;
    setenv("ZV_LOG_MASK", "1", 1);
    CLogManager manager(folder.AsString());
    Receiver output;
    manager.AddCustomOutput(&output);
    manager.AddCustomOutput(&output);
    manager.AddCustomOutput(nullptr);
    LogNarrow(manager, 256, L"S", "not in the file\n%d", 7);
    LogNarrow(manager, 1, L"S", "");
    manager.RemoveCustomOutput(&output);
    manager.RemoveCustomOutput(&output);
    LogNarrow(manager, 256, L"S", "nobody wants it");
    LogNarrow(manager, 1, L"S", "file alone");
    EXPECT_THAT(output.Texts, ElementsAre(L"256:not in the file 7", L"1:"));
    EXPECT_THAT(Texts(folder), ElementsAre("S|", "S|file alone"));
}

TEST(CLogManager, OutputsMayLogAndComeAndGoWhileTheyAreCalled)
{
    const ToolsFolder folder;
    CLogManager manager(folder.AsString());
    Receiver late;
    Receiver* first = nullptr;
    Receiver leaving(
        [&]
        {
            LogNarrow(manager, 1, L"O", "from an output");
            manager.RemoveCustomOutput(first);
            manager.RemoveCustomOutput(&leaving);
            manager.AddCustomOutput(&late);
        });
    Receiver before;
    Receiver behind;
    first = &before;
    for (Receiver* output : {&before, &leaving, &behind})
        manager.AddCustomOutput(output);
    LogNarrow(manager, 1, L"S", "a");
    LogNarrow(manager, 1, L"S", "b");
    EXPECT_THAT(before.Texts, ElementsAre(L"1:a"));
    EXPECT_THAT(leaving.Texts, ElementsAre(L"1:a"));
    EXPECT_THAT(behind.Texts, ElementsAre(L"1:a", L"1:b"));
    EXPECT_THAT(late.Texts, ElementsAre(L"1:a", L"1:b"));
    EXPECT_THAT(Texts(folder), ElementsAre("S|a", "O|from an output", "S|b"));
}

TEST(CLogManager, AnExceptionOfAnOutputStaysInside)
{
    const ToolsFolder folder;
    CLogManager manager(folder.AsString());
    Receiver throwing([] { throw std::bad_alloc(); });
    manager.AddCustomOutput(&throwing);
    LogNarrow(manager, 1, L"S", "a");
    LogNarrow(manager, 1, L"S", "b");
    EXPECT_THAT(throwing.Texts, SizeIs(2));
    manager.RemoveCustomOutput(&throwing);
}

TEST(CLogManager, WhereNothingCanBeWrittenLinesAreDropped)
{
    struct Row
    {
        const char* Name;
        const char* File;
    };
    const ToolsFolder folder;
    folder.Write("file", "");
    ASSERT_EQ(mkfifo(folder.PathOf("pipe").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(folder.PathOf("read pipe").c_str(), 0600), 0);
    const int reader = open(folder.PathOf("read pipe").c_str(), O_RDONLY | O_NONBLOCK);
    for (const Row& row : {
             Row {"below a file",             "file/Logs/log"},
              Row {"a folder",                 "."            },
              Row {"a pipe that nobody reads", "pipe"         },
             Row {"a pipe that may block",    "read pipe"    },
              Row {"a full disk",              "/dev/full"    },
             Row {"no folder may be made",    "/proc/zv/log" }
    })
    {
        SCOPED_TRACE(row.Name);
        setenv("ZV_LOG_FILE", row.File[0] == '/' ? row.File : folder.PathOf(row.File).c_str(), 1);
        CLogManager manager(folder.AsString());
        Receiver output;
        manager.AddCustomOutput(&output);
        errno = 4711;
        for (int count = 0; count < 3; ++count)
            LogNarrow(manager, 1, L"S", "text");
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
                    LogNarrow(manager, 1, L"T", "%d/%d", thread, line);
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

    std::vector<int> next(ThreadCount);
    for (const std::string& text : Texts(folder))
    {
        int thread = -1;
        int line = -1;
        ASSERT_EQ(sscanf(text.c_str(), "T|%d/%d", &thread, &line), 2) << text;
        EXPECT_EQ(line, next.at(static_cast<size_t>(thread))++);
    }
    EXPECT_THAT(next, testing::Each(LineCount));
}
}
