// What changes with a decimal comma. The decimal point is looked up once in a process, so these tests run in their own process:
// this program, started again with the German locale, runs the tests that are otherwise disabled.

#include "core/date/ZVDate.h"
#include "core/date/ZVDateText.h"
#include "core/property/ZVPropertyMap.h"
#include "core/string/StringProbe.h"
#include "core/string/ZVNumberText.h"

#include <clocale>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

// The cases stand in columns.
// clang-format off

namespace
{
TEST(Locale, ADecimalCommaIsWrittenAndRead)
{
    const locale_t locale = newlocale(LC_ALL_MASK, "de_DE.UTF-8", nullptr);
    if (locale == nullptr)
        GTEST_SKIP() << "the German locale is not installed";
    freelocale(locale);
    const pid_t child = fork();
    if (child == 0)
    {
        setenv("LC_ALL", "de_DE.UTF-8", 1);
        execl("/proc/self/exe", "core_tests", "--gtest_filter=GermanLocale.*", "--gtest_also_run_disabled_tests", nullptr);
        _exit(127);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(GermanLocale, DISABLED_NumbersPropertiesAndLetters)
{
    // As the program does at its start.
    ZVStringGlobals::Get().RebuildCharacterTables(true);
    ASSERT_EQ(ZVNumberText::GetDecimalPoint(), L',');
    ExpectTexts({
        {ZVFormat(L"%.1f", 0.25), L"0,3"}, {S::FromDouble(1.5, 2, true, 0, ZVNumberText::AlwaysPoint), L"1.50"},
        {S::FromInt(1234567, 0, 10, ZVNumberText::ThousandsSeparators), L"1.234.567"},
    });
    EXPECT_EQ(S(L"1.234,5").ToDouble(), 1234.5);
    EXPECT_EQ(S(L"1.5").ToDouble(nullptr, true), 1.5);
    EXPECT_TRUE(S(L"\u00c4\u0416").IsEqual(L"\u00e4\u0436", false));
    const double march = ZVDate::FromFields(2024, 3, 5, 7, 8, 9);  // a Tuesday
    EXPECT_STREQ(ZVDate::ToRFC1123(march), L"Tue, 5 Mar 2024 07:08:09 GMT");
    EXPECT_STREQ(ZVDate::Format(march, L"month date"), L"M\u00e4rz 05.03.2024");

    ZVPropertyMap map;
    map.SetDouble(L"Rate", 23.5);
    S text;
    map.ToXML(text, L"XMLPH", false, 1.0);
    EXPECT_STREQ(text, L"<XMLPH version=\"1,0\">\r\n<Item Name=\"Rate\">23,5</Item>\r\n</XMLPH>");
    for (const wchar_t* version : {L"1,0", L"1.0"})
    {
        const S form = ZVFormat(L"<XMLPH version=\"%s\"><Item Name=\"Rate\">23.5</Item></XMLPH>", version);
        EXPECT_TRUE(map.FromXML(form, L"XMLPH", 1.0)) << version;
        EXPECT_EQ(map.GetDouble(L"Rate"), 23.5) << version;
    }
}
}
