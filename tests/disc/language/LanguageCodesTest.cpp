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
    EXPECT_STREQ(LanguageNameFromCode(L"spa"), L"Castilian");
    EXPECT_STREQ(LanguageNameFromCode(L"esp"), L"Spanish");
    EXPECT_STREQ(LanguageNameFromCode(L"vol"), L"Volap\u00fck");
    EXPECT_STREQ(LanguageNameFromCode(L""), L"");
    EXPECT_STREQ(LanguageNameFromCode(L"en"), L"");
    EXPECT_STREQ(LanguageNameFromCode(L"{n'"), L"");
    EXPECT_STREQ(LanguageNameFromCode(L"\U00010065ng"), L"");
}

TEST(NormalizeLanguageCode, TakesEveryFormByItsLength)
{
    EXPECT_STREQ(NormalizeLanguageCode(L"e"), L"");
    EXPECT_STREQ(NormalizeLanguageCode(L"De"), L"ger");
    EXPECT_STREQ(NormalizeLanguageCode(L"a-"), L"");
    EXPECT_STREQ(NormalizeLanguageCode(L"Deu"), L"ger");
    EXPECT_STREQ(NormalizeLanguageCode(L"esp"), L"spa");
    EXPECT_STREQ(NormalizeLanguageCode(L"XyZ"), L"XyZ");
    EXPECT_STREQ(NormalizeLanguageCode(L"und"), L"");
    EXPECT_STREQ(NormalizeLanguageCode(L"UND"), L"und");
    EXPECT_STREQ(NormalizeLanguageCode(L"Undetermined"), L"und");
    EXPECT_STREQ(NormalizeLanguageCode(L"en-US"), L"en-US");
    EXPECT_STREQ(CodeFromShortCode(L"EN-us"), L"eng");
    EXPECT_STREQ(CodeFromShortCode(L"e"), L"");
}

TEST(CodeFromName, FindsOneNameInAnyCaseAndGivesOtherTextsBack)
{
    EXPECT_STREQ(CodeFromName(L"\t English\n"), L"eng");
    EXPECT_STREQ(CodeFromName(L"LEONESE"), L"ast");
    EXPECT_STREQ(CodeFromName(L"PROVEN\u00c7AL, OLD (TO 1500)"), L"pro");
    EXPECT_STREQ(CodeFromName(L" \t"), L"");
    EXPECT_STREQ(CodeFromName(L" Quenya "), L" Quenya ");
    EXPECT_STREQ(CodeFromName(L"Asturian; Bable"), L"Asturian; Bable");
    EXPECT_STREQ(CodeFromName(L"Germans"), L"Germans");
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
        SCOPED_TRACE(entry);
        ++languages;
        ZVStringArray names;
        names.SetSplit(GetValue(entry, "name"), L';');
        // Of two codes either may be the primary one.
        const ZVString otherCode = GetValue(entry, "bibliographic");
        const ZVString code = CodeFromName(names[0]);
        EXPECT_TRUE(code == standardCode || code == otherCode);

        const ZVString displayName = LanguageNameFromCode(code);
        for (const ZVString& name : names)
            EXPECT_STREQ(CodeFromName(name), code);
        EXPECT_TRUE(standardCode == L"qaa-qtz" || CodeFromName(displayName) == code);
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
