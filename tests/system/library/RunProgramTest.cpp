#include "system/library/RunProgram.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
ZVStringArray Parameters(std::initializer_list<const wchar_t*> texts)
{
    ZVStringArray parameters;
    for (const wchar_t* text : texts)
        parameters.Add(text);
    return parameters;
}

TEST(RunProgram, ABlockingProgramGivesItsOutputAndStatus)
{
    // 3-byte characters behind two others: one of them lies across the end of every piece that is read.
    const ZVString longText = L"xx" + ZVString(std::wstring(3000, L'\u65e5').c_str());
    const struct
    {
        const wchar_t* Program;
        ZVStringArray Words;
        const wchar_t* Output;
        int32_t ExitCode;
    } rows[] = {
        {L"printf",      Parameters({L"'%s-'", L"'a b'", L"c"}), L"a b-c-",        0            },
        {L"exit",        Parameters({L"3"}),                     L"",              3            },
        {L"/nowhere/zv", Parameters({L"2>/dev/null"}),           L"",              127          },
        {L"kill",        Parameters({L"-KILL", L"$$"}),          L"",              128 + SIGKILL},
        {L"printf",      Parameters({L"'x\\346\\227'"}),         L"x\u00e6\u0097", 0            },
        {L"printf",      Parameters({L"'a\\0b\\nc'"}),           L"ac",            0            },
        {L"printf",      Parameters({L"%s", longText}),          longText,         0            },
    };
    FakeTools tools;
    g_pZVTools = &tools;
    for (const auto& row : rows)
    {
        ZVString output = L"old";
        int32_t exitCode = 99;
        EXPECT_TRUE(RunProgram(row.Program, row.Words, &output, ZVRunMode::Blocking, &exitCode));
        EXPECT_STREQ(output, row.Output);
        EXPECT_EQ(exitCode, row.ExitCode);
        EXPECT_TRUE(RunProgram(row.Program, row.Words, nullptr, ZVRunMode::Blocking, nullptr));
    }
    g_pZVTools = nullptr;
    EXPECT_EQ(tools.Manager.Lines[1], "1|RunProgram|Running blocking command via popen: printf '%s-' 'a b' c");
}

TEST(RunProgram, ANonBlockingProgramGetsItsArgumentsAsTheyAre)
{
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    // A shell takes no descriptor of two digits by its number.
    const ZVString script = ZVFormat(L"printf '%%s|' \"$@\" >/proc/%d/fd/%d", getpid(), pipeEnds[1]);
    const ZVStringArray parameters = Parameters({L"-c", script, L"name", L"a b", L"", L"'\u00e4$x"});
    int32_t exitCode = 5;
    EXPECT_TRUE(RunProgram(L"sh", parameters, nullptr, ZVRunMode::NonBlocking, &exitCode));
    EXPECT_EQ(exitCode, -1) << "its end is not waited for";
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
