#include "disc/language/LanguageCodes.h"

#include "core/containers/ZVStringArray.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace
{
TEST(LanguageNameFromCode, ReadsTheFirstThreeCharacters)
{
    EXPECT_STREQ(LanguageNameFromCode(L"ENG"), L"English");
    EXPECT_STREQ(LanguageNameFromCode(L"english"), L"English");
    EXPECT_STREQ(LanguageNameFromCode(L"deu"), L"German");
    EXPECT_STREQ(LanguageNameFromCode(L"dum"), L"Dutch, Middle (ca. 1050-1350)");
    EXPECT_STREQ(LanguageNameFromCode(L"ast"), L"Asturian");
    EXPECT_STREQ(LanguageNameFromCode(L"spa"), L"Castilian");
    EXPECT_STREQ(LanguageNameFromCode(L"esp"), L"Spanish");
    EXPECT_STREQ(LanguageNameFromCode(L"vol"), L"Volap\u00fck");
    EXPECT_STREQ(LanguageNameFromCode(L"und"), L"Undetermined");
    EXPECT_STREQ(LanguageNameFromCode(L""), L"");
    EXPECT_STREQ(LanguageNameFromCode(L"en"), L"");
    EXPECT_STREQ(LanguageNameFromCode(L"xyz"), L"");
    EXPECT_STREQ(LanguageNameFromCode(L"qaa-qtz"), L"");
    EXPECT_STREQ(LanguageNameFromCode(L"{n'"), L"");
    EXPECT_STREQ(LanguageNameFromCode(L" eng"), L"");
    EXPECT_STREQ(LanguageNameFromCode(L"\u0165ng"), L"");
    EXPECT_STREQ(LanguageNameFromCode(L"\U00010065ng"), L"");
}

TEST(NormalizeLanguageCode, TakesEveryFormByItsLength)
{
    EXPECT_STREQ(NormalizeLanguageCode(L"e"), L"");
    EXPECT_STREQ(NormalizeLanguageCode(L"De"), L"ger");
    EXPECT_STREQ(NormalizeLanguageCode(L"a-"), L"");
    EXPECT_STREQ(NormalizeLanguageCode(L"Deu"), L"ger");
    EXPECT_STREQ(NormalizeLanguageCode(L"alb"), L"sqi");
    EXPECT_STREQ(NormalizeLanguageCode(L"esp"), L"spa");
    EXPECT_STREQ(NormalizeLanguageCode(L"XyZ"), L"XyZ");
    EXPECT_STREQ(NormalizeLanguageCode(L"und"), L"");
    EXPECT_STREQ(NormalizeLanguageCode(L"UND"), L"und");
    EXPECT_STREQ(NormalizeLanguageCode(L"qaa"), L"qaa");
    EXPECT_STREQ(NormalizeLanguageCode(L"Undetermined"), L"und");
    EXPECT_STREQ(NormalizeLanguageCode(L"en-US"), L"en-US");
}

TEST(CodeFromShortCode, ReadsTheFirstTwoCharacters)
{
    EXPECT_STREQ(CodeFromShortCode(L"e"), L"");
    EXPECT_STREQ(CodeFromShortCode(L"EN-us"), L"eng");
    EXPECT_STREQ(CodeFromShortCode(L"qq"), L"");
}

TEST(CodeFromName, FindsOneNameInAnyCaseAndGivesOtherTextsBack)
{
    EXPECT_STREQ(CodeFromName(L"Abkhazian"), L"abk");
    EXPECT_STREQ(CodeFromName(L"zuni"), L"zun");
    EXPECT_STREQ(CodeFromName(L"\t English\n"), L"eng");
    EXPECT_STREQ(CodeFromName(L"LEONESE"), L"ast");
    EXPECT_STREQ(CodeFromName(L"German, Low"), L"nds");
    EXPECT_STREQ(CodeFromName(L"PROVEN\u00c7AL, OLD (TO 1500)"), L"pro");
    EXPECT_STREQ(CodeFromName(L" \t"), L"");
    EXPECT_STREQ(CodeFromName(L" Quenya "), L" Quenya ");
    EXPECT_STREQ(CodeFromName(L"Asturian; Bable"), L"Asturian; Bable");
    EXPECT_STREQ(CodeFromName(L"Germa"), L"Germa");
    EXPECT_STREQ(CodeFromName(L"Germans"), L"Germans");
    EXPECT_STREQ(CodeFromName(L"\u0420\u0443"), L"\u0420\u0443");
}

// The value of a key in one of Debian's entries, or an empty text.
ZVString GetValue(const std::string& entry, const std::string& key)
{
    const std::string opening = "\"" + key + "\": \"";
    const size_t found = entry.find(opening);
    if (found == entry.npos)
        return {};
    const size_t start = found + opening.size();
    return ZVString::FromUTF8(entry.substr(start, entry.find('"', start) - start).c_str());
}

// Every language of the standard, as the distribution keeps it, in each of its codes and names.
TEST(LanguageTable, HoldsTheStandard)
{
    std::ifstream file("/usr/share/iso-codes/json/iso_639-2.json");
    if (!file)
        GTEST_SKIP() << "the package iso-codes is not installed";

    int languages = 0;
    for (std::string entry; std::getline(file, entry, '}');)
    {
        const ZVString standardCode = GetValue(entry, "alpha_3");
        if (standardCode.IsEmpty())
            continue;
        SCOPED_TRACE(testing::PrintToString(standardCode.GetText()));
        ++languages;
        ZVStringArray names;
        names.SetSplit(GetValue(entry, "name"), L';');
        // Of two codes either may be the primary one.
        const ZVString otherCode = GetValue(entry, "bibliographic");
        const ZVString code = CodeFromName(names[0]);
        EXPECT_TRUE(code == standardCode || code == otherCode);

        const ZVString displayName = LanguageNameFromCode(code);
        bool isDisplayNameKnown = standardCode == L"qaa-qtz";
        for (ZVString& name : names)
        {
            EXPECT_STREQ(CodeFromName(name), code);
            name.TrimWhitespace();
            isDisplayNameKnown |= name == displayName;
        }
        EXPECT_TRUE(isDisplayNameKnown);
        for (const ZVString& each : {standardCode, otherCode})
            if (each.GetLength() == 3)
            {
                EXPECT_STREQ(LanguageNameFromCode(each), displayName);
                EXPECT_STREQ(NormalizeLanguageCode(each), each == L"und" ? ZVString() : code);
            }
        const ZVString shortCode = GetValue(entry, "alpha_2");
        EXPECT_STREQ(NormalizeLanguageCode(shortCode), shortCode.IsEmpty() ? ZVString() : code);
    }
    EXPECT_GE(languages, 487);
}
}
