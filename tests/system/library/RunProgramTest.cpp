#include "system/library/RunProgram.h"

#include "system/library/ZVDescriptor.h"
#include "system/library/ZVNativeBytes.h"
#include "system/log/ToolsFixture.h"

#include <sys/wait.h>
#include <unistd.h>

namespace
{
using RunProgramTest = ToolsFixture;

ZVStringArray Parameters(const std::vector<ZVString>& texts)
{
    ZVStringArray parameters;
    for (const ZVString& text : texts)
        parameters.Add(text);
    return parameters;
}

TEST_F(RunProgramTest, ABlockingProgramGivesItsOutputAndStatus)
{
    const auto check = [](std::initializer_list<ZVString> words, const ZVString& expected, int32_t expectedCode)
    {
        ZVString output = L"old";
        int32_t exitCode = 99;
        EXPECT_TRUE(
            RunProgram(*words.begin(), Parameters({words.begin() + 1, words.end()}), &output, ZVRunMode::Blocking, &exitCode));
        EXPECT_STREQ(output, expected);
        EXPECT_EQ(exitCode, expectedCode);
    };
    check({L"printf", L"'%s-'", L"'a b'", L"c"}, L"a b-c-", 0);
    EXPECT_EQ(m_tools.Manager.Lines[1], "1|RunProgram|Running blocking command via popen: printf '%s-' 'a b' c");
    check({L"/nowhere/zv", L"2>/dev/null"}, L"", 127);
    check({L"kill", L"-KILL", L"$$"}, L"", 128 + 9);
    check({L"printf", L"'x\\346\\227'"}, L"x\u00e6\u0097", 0);
    check({L"printf", L"'a\\0b\\nc'"}, L"ac", 0);
    // 3-byte characters after two others: one of them lies across the end of every piece that is read.
    const ZVString longText = L"xx" + ZVString(std::wstring(3000, L'\u65e5').c_str());
    check({L"printf", L"%s", longText}, longText, 0);
}

// The paths of files between devices are arguments of such a program.
TEST_F(RunProgramTest, ADirectProgramGetsEveryByteAndNoShell)
{
    const ZVString bytes = ZVNativeBytes::ToText("\xff");
    const ZVStringArray parameters = Parameters({L"-c", L"test \"$1\" = \"$(printf '\\377')\" && exit 3", L"name", bytes});
    int32_t exitCode = 99;
    EXPECT_TRUE(RunProgram(L"sh", parameters, nullptr, ZVRunMode::Direct, &exitCode));
    EXPECT_EQ(exitCode, 3);
    EXPECT_TRUE(RunProgram(L"/nowhere/zv", {}, nullptr, ZVRunMode::Direct, &exitCode));
    EXPECT_EQ(exitCode, 127);
    EXPECT_TRUE(RunProgram(L"test", Parameters({L"$HOME", L"=", L"; exit 5"}), nullptr, ZVRunMode::Direct, &exitCode));
    EXPECT_EQ(exitCode, 1);
}

TEST_F(RunProgramTest, ANonBlockingProgramGetsItsArgumentsAsTheyAre)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const ZVDescriptor reader(ends[0]);
    ZVDescriptor writer(ends[1]);
    // Through /proc, because a shell may not know descriptors of two digits.
    const ZVString script = ZVFormat(L"printf '%%s|' \"$@\" >/proc/%d/fd/%d", getpid(), writer.Get());
    const ZVStringArray parameters = Parameters({L"-c", script, L"name", L"a b", L"", L"'\u00e4$x"});
    int32_t exitCode = 5;
    EXPECT_TRUE(RunProgram(L"sh", parameters, nullptr, ZVRunMode::NonBlocking, &exitCode));
    EXPECT_EQ(exitCode, -1) << "its end is not waited for";
    wait(nullptr);
    writer.Close();
    char written[64] = "";
    EXPECT_GT(read(reader.Get(), written, sizeof written - 1), 0);
    EXPECT_STREQ(written, "a b||'\xc3\xa4$x|");

    EXPECT_TRUE(RunProgram(L"/nowhere/zv", {}, nullptr, ZVRunMode::NonBlocking, nullptr));
    int status = 0;
    wait(&status);
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_FALSE(RunProgram(L"", Parameters({L"true"}), nullptr, ZVRunMode::NonBlocking, nullptr));
}
}
