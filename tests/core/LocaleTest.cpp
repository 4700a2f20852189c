// What the locale's decimal comma changes. The decimal point is looked up once in a process, so these tests run in one of their own: this
// program again, started with the German locale and told to run the tests that are otherwise disabled.

#include "core/property/ZVPropertyMap.h"
#include "core/string/ZVNumberText.h"
#include "core/string/ZVString.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
constexpr char GermanLocale[] = "de_DE.UTF-8";

bool HasGermanLocale()
{
    const locale_t locale = newlocale(LC_ALL_MASK, GermanLocale, nullptr);
    if (locale == nullptr)
        return false;
    freelocale(locale);
    return true;
}

TEST(Locale, ADecimalCommaIsWrittenAndRead)
{
    if (!HasGermanLocale())
        GTEST_SKIP() << "the locale " << GermanLocale << " is not installed";
    const pid_t child = fork();
    if (child == 0)
    {
        setenv("LC_ALL", GermanLocale, 1);
        execl("/proc/self/exe", "core_tests", "--gtest_filter=GermanLocale.*", "--gtest_also_run_disabled_tests", "--gtest_brief=1", nullptr);
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

// As the program's start does it.
void TakeLocaleFromEnvironment()
{
    ZVStringGlobals::Get().RebuildCharacterTables(true);
    ASSERT_EQ(ZVNumberText::GetDecimalPoint(), L',');
}

TEST(GermanLocale, DISABLED_Numbers)
{
    TakeLocaleFromEnvironment();
    EXPECT_STREQ(ZVString::FromDouble(1.5), L"1,5");
    EXPECT_STREQ(ZVString::FromDouble(1.5, 2, true, 0, ZVNumberText::AlwaysPoint), L"1.50");
    EXPECT_STREQ(ZVFormat(L"%.1f|%d", 0.25, 1000), L"0,3|1000");
    EXPECT_STREQ(ZVString::FromInt(1234567, 0, 10, ZVNumberText::ThousandsSeparators), L"1.234.567");

    const struct
    {
        const wchar_t* Text;
        bool AnyDecimalPoint;
        double Expected;
    } rows[] = {
        {L"1,5", false, 1.5},
        {L"1.234,5", false, 1234.5},
        {L"1.5", false, 15.0},
        {L"1.5", true, 1.5},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ZVString(row.Text).ToDouble(nullptr, row.AnyDecimalPoint), row.Expected) << row.Text;
}

TEST(GermanLocale, DISABLED_PropertyMaps)
{
    TakeLocaleFromEnvironment();
    ZVPropertyMap map;
    map.SetDouble(L"Rate", 23.5);
    ZVString text;
    map.ToXML(text, L"XMLPH", false, 1.0);
    EXPECT_STREQ(text, L"<XMLPH version=\"1,0\">\r\n<Item Name=\"Rate\">23,5</Item>\r\n</XMLPH>");

    for (const wchar_t* version : {L"1,0", L"1.0", L"1"})
    {
        ZVPropertyMap read;
        const ZVString form = ZVFormat(L"<XMLPH version=\"%s\"><Item Name=\"Rate\">23.5</Item></XMLPH>", version);
        EXPECT_TRUE(read.FromXML(form, L"XMLPH", 1.0)) << version;
        EXPECT_EQ(read.GetDouble(L"Rate"), 23.5);
    }
}

TEST(GermanLocale, DISABLED_LettersOfTheTables)
{
    TakeLocaleFromEnvironment();
    EXPECT_TRUE(ZVString(L"\u00c4\u0416").IsEqual(L"\u00e4\u0436", false));
}
}
