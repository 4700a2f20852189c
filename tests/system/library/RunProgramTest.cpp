#include "system/library/RunProgram.h"

#include "system/log/ToolsFixture.h"

#include <sys/wait.h>
#include <unistd.h>

namespace
{
using RunProgramTest = ToolsFixture;

ZVStringArray Parameters(std::initializer_list<ZVString> texts)
{
    ZVStringArray parameters;
    for (const ZVString& text : texts)
        parameters.Add(text);
    return parameters;
}

TEST_F(RunProgramTest, ABlockingProgramGivesItsOutputAndStatus)
{
    const auto run = [](const wchar_t* program, std::initializer_list<ZVString> words)
    {
        ZVString output = L"old";
        int32_t exitCode = 99;
        EXPECT_TRUE(RunProgram(program, Parameters(words), &output, ZVRunMode::Blocking, &exitCode));
        return ZVFormat(L"%d %s", exitCode, output);
    };
    EXPECT_STREQ(run(L"printf", {L"'%s-'", L"'a b'", L"c"}), L"0 a b-c-");
    EXPECT_STREQ(run(L"/nowhere/zv", {L"2>/dev/null"}), L"127 ");
    EXPECT_STREQ(run(L"kill", {L"-KILL", L"$$"}), L"137 ") << "128 and the number of the signal";
    EXPECT_STREQ(run(L"printf", {L"'x\\346\\227'"}), L"0 x\u00e6\u0097");
    EXPECT_STREQ(run(L"printf", {L"'a\\0b\\nc'"}), L"0 ac");
    // 3-byte characters behind two others: one of them lies across the end of every piece that is read.
    const ZVString longText = L"xx" + ZVString(std::wstring(3000, L'\u65e5').c_str());
    EXPECT_STREQ(run(L"printf", {L"%s", longText}), L"0 " + longText);
    EXPECT_TRUE(RunProgram(L"printf", Parameters({L"''"}), nullptr, ZVRunMode::Blocking, nullptr));
    EXPECT_EQ(m_tools.Manager.Lines[1], "1|RunProgram|Running blocking command via popen: printf '%s-' 'a b' c");
}

TEST_F(RunProgramTest, ANonBlockingProgramGetsItsArgumentsAsTheyAre)
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
