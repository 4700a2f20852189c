#include "system/library/RunProgram.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using testing::Contains;
using testing::StartsWith;

class RunProgramTest : public testing::Test
{
protected:
    RunProgramTest() { g_pZVTools = &m_tools; }
    ~RunProgramTest() override { g_pZVTools = nullptr; }

    static ZVStringArray Parameters(std::initializer_list<const wchar_t*> texts)
    {
        ZVStringArray parameters;
        for (const wchar_t* text : texts)
            parameters.Add(text);
        return parameters;
    }

    FakeTools m_tools;
};

TEST_F(RunProgramTest, ABlockingProgramGivesItsOutputAndStatus)
{
    const struct
    {
        const char* Name;
        const wchar_t* Program;
        ZVStringArray Words;
        const wchar_t* Output;
        int32_t ExitCode;
    } rows[] = {
        {"words",             L"printf",      Parameters({L"'%s-'", L"'a b'", L"c"}), L"a b-c-",        0            },
        {"status",            L"exit",        Parameters({L"3"}),                     L"",              3            },
        {"missing program",   L"/nowhere/zv", Parameters({L"2>/dev/null"}),           L"",              127          },
        {"signal",            L"kill",        Parameters({L"-KILL", L"$$"}),          L"",              128 + SIGKILL},
        {"cut character",     L"printf",      Parameters({L"'x\\346\\227'"}),         L"x\u00e6\u0097", 0            },
        {"a line with a NUL", L"printf",      Parameters({L"'a\\0b\\nc'"}),           L"ac",            0            },
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        ZVString output = L"old";
        int32_t exitCode = 99;
        EXPECT_TRUE(RunProgram(row.Program, row.Words, &output, ZVRunMode::Blocking, &exitCode));
        EXPECT_STREQ(output, row.Output);
        EXPECT_EQ(exitCode, row.ExitCode);
        EXPECT_TRUE(RunProgram(row.Program, row.Words, nullptr, ZVRunMode::Blocking, nullptr));
    }
    EXPECT_THAT(m_tools.Manager.Lines, Contains("1|RunProgram|Running blocking command via popen: printf '%s-' 'a b' c"));
}

TEST_F(RunProgramTest, NoCharacterIsDamagedWhereTheOutputIsReadInPieces)
{
    // 3-byte characters behind none, one and two others: one of them lies across the end of every piece.
    for (const wchar_t* start : {L"", L"x", L"xx"})
    {
        ZVString expected = start;
        while (expected.GetLength() < 3000)
            expected += L'\u65e5';
        ZVString output;
        EXPECT_TRUE(RunProgram(L"printf", Parameters({L"%s", expected}), &output, ZVRunMode::Blocking, nullptr));
        EXPECT_TRUE(output == expected);
    }
}

TEST_F(RunProgramTest, ANonBlockingProgramGetsItsArgumentsAsTheyAre)
{
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    // A shell takes no descriptor of two digits by its number.
    const ZVString script = ZVFormat(L"printf '%%s|' \"$@\" >/proc/%d/fd/%d", getpid(), pipeEnds[1]);
    int32_t exitCode = 5;
    EXPECT_TRUE(RunProgram(L"sh", Parameters({L"-c", script, L"name", L"a b", L"", L"'\u00e4$x"}), nullptr,
                             ZVRunMode::NonBlocking, &exitCode));
    EXPECT_EQ(exitCode, -1) << "its end is not waited for";
    EXPECT_THAT(m_tools.Manager.Lines[1], StartsWith("1|RunProgram|Running non-blocking command: sh / Parameters: -c printf"));
    wait(nullptr);
    close(pipeEnds[1]);
    char written[64] = "";
    EXPECT_GT(read(pipeEnds[0], written, sizeof written - 1), 0);
    EXPECT_STREQ(written, "a b||'\xc3\xa4$x|");
    close(pipeEnds[0]);

    EXPECT_TRUE(RunProgram(L"/nowhere/zv", {}, nullptr, ZVRunMode::NonBlocking, nullptr));
    int status = 0;
    wait(&status);
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_FALSE(RunProgram(L"", Parameters({L"true"}), nullptr, ZVRunMode::NonBlocking, nullptr));
}
}
