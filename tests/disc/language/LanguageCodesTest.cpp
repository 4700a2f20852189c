#include "disc/language/LanguageCodes.h"

#include "core/containers/ZVStringArray.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace
{
// A tag as films carry it, its primary code, and the name that people read.
struct TagRow
{
    const wchar_t *Tag, *Code, *Name;
};

// clang-format off
constexpr TagRow TagRows[] = {
    {L"De", L"ger", L"German"}, {L"Deu", L"ger", L"German"}, {L"zho", L"chi", L"Chinese"}, {L"alb", L"sqi", L"Albanian"},
    {L"ast", L"ast", L"Asturian"}, {L"vol", L"vol", L"Volap\u00fck"},
    // The name in common use, by whatever name or code it was asked for.
    {L"es", L"spa", L"Spanish"}, {L"esp", L"spa", L"Spanish"}, {L"Castilian", L"spa", L"Spanish"}, {L"ron", L"rum", L"Romanian"},
    {L"Moldavian", L"rum", L"Romanian"}, {L"Letzeburgesch", L"ltz", L"Luxembourgish"}, {L"Valencian", L"cat", L"Catalan"},
    {L"nb", L"nob", L"Norwegian Bokm\u00e5l"}, {L"nn", L"nno", L"Norwegian Nynorsk"}, {L"Flemish", L"dut", L"Dutch"},
    {L"ell", L"gre", L"Greek"}, {L"km", L"khm", L"Khmer"}, {L"Panjabi", L"pan", L"Punjabi"}, {L"Gikuyu", L"kik", L"Kikuyu"},
    {L"Haitian", L"hat", L"Haitian Creole"}, {L"gd", L"gla", L"Scottish Gaelic"}, {L"Uighur", L"uig", L"Uyghur"},
    {L"Ndebele, North", L"nde", L"North Ndebele"}, {L"Alsatian", L"gsw", L"Swiss German"}, {L"Dimili", L"zza", L"Zaza"},
    // Codes that the standard has withdrawn.
    {L"scr", L"hrv", L"Croatian"}, {L"scc", L"srp", L"Serbian"}, {L"mol", L"rum", L"Romanian"}, {L"mo", L"rum", L"Romanian"},
    {L"iw", L"heb", L"Hebrew"}, {L"in", L"ind", L"Indonesian"}, {L"ji", L"yid", L"Yiddish"},
    // What is not a language.
    {L"und", L"", L""}, {L"UND", L"und", L"Undetermined"}, {L"XyZ", L"XyZ", L""}, {L"en-US", L"en-US", L""}, {L"e", L"", L""},
    {L"a-", L"", L""},
};
// clang-format on

TEST(LanguageCodes, TurnATagIntoTheNameThatPeopleKnow)
{
    for (const TagRow& row : TagRows)
    {
        SCOPED_TRACE(testing::PrintToString(row.Tag));
        const ZVString code = NormalizeLanguageCode(row.Tag);
        EXPECT_STREQ(code, row.Code);
        EXPECT_STREQ(LanguageNameFromCode(code), row.Name);
    }
}

TEST(CodeFromName, FindsOneNameInAnyCaseAndReturnsOtherTexts)
{
    EXPECT_STREQ(CodeFromName(L"\t English\n"), L"eng");
    EXPECT_STREQ(CodeFromName(L"PROVEN\u00c7AL, OLD (TO 1500)"), L"pro");
    EXPECT_STREQ(CodeFromName(L" \t"), L"");
    for (const wchar_t* text : {L" Quenya ", L"Asturian; Bable", L"Germans", L"Germa"})
        EXPECT_STREQ(CodeFromName(text), text);
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
        EXPECT_STREQ(code, code == standardCode ? standardCode : otherCode);
        for (const ZVString& name : names)
            EXPECT_STREQ(CodeFromName(name), code);

        const ZVString displayName = LanguageNameFromCode(code);
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
