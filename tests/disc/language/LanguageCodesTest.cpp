#include "disc/language/LanguageCodes.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace
{
struct Row
{
    const wchar_t* Input;
    const wchar_t* Expected;
};

void ExpectTexts(ZVString (*function)(const ZVString&), std::initializer_list<Row> rows)
{
    for (const Row& row : rows)
        EXPECT_STREQ(function(row.Input), row.Expected) << "of \"" << testing::PrintToString(row.Input) << '"';
}

TEST(LanguageNameFromCode, IsTheFirstNameInTheAlphabet)
{
    ExpectTexts(LanguageNameFromCode, {
                                          {L"eng",     L"English"                      },
                                          {L"ENG",     L"English"                      },
                                          {L"english", L"English"                      }, // its first three letters are
                                          {L"ger",     L"German"                       },
                                          {L"deu",     L"German"                       },
                                          {L"sqi",     L"Albanian"                     },
                                          {L"alb",     L"Albanian"                     },
                                          {L"zho",     L"Chinese"                      },
                                          {L"grc",     L"Greek, Ancient (to 1453)"     },
                                          {L"dum",     L"Dutch, Middle (ca. 1050-1350)"},
                                          {L"ast",     L"Asturian"                     },
                                          {L"spa",     L"Castilian"                    },
                                          {L"esp",     L"Spanish"                      },
                                          {L"NLD",     L"Dutch"                        },
                                          {L"vol",     L"Volap\u00fck"                 },
                                          {L"und",     L"Undetermined"                 },
                                          {L"aar",     L"Afar"                         },
                                          {L"zza",     L"Dimili"                       },
    });
}

TEST(LanguageNameFromCode, IsEmptyForOtherTexts)
{
    ExpectTexts(LanguageNameFromCode, {
                                          {L"",                   L""},
                                          {L"e",                  L""},
                                          {L"en",                 L""},
                                          {L"xyz",                L""},
                                          {L"qaa",                L""},
                                          {L"qaa-qtz",            L""},
                                          {L"{n'",                L""},
                                          {L" eng",               L""},
                                          {L"\u0165ng",           L""}, // "e" and 0x100
                                          {L"\U00010065ng",       L""}, // "e" and 0x10000
                                          {L"\u65e5\u672c\u8a9e", L""}, // not letters of the codes
    });
}

TEST(NormalizeLanguageCode, TakesEveryFormByItsLength)
{
    ExpectTexts(NormalizeLanguageCode,
                {
                    {L"",             L""     },
                    {L"e",            L""     },
                    {L"en",           L"eng"  },
                    {L"De",           L"ger"  },
                    {L"xx",           L""     },
                    {L"a-",           L""     },
                    {L"ger",          L"ger"  },
                    {L"deu",          L"ger"  },
                    {L"Deu",          L"ger"  },
                    {L"alb",          L"sqi"  },
                    {L"sqi",          L"sqi"  },
                    {L"zho",          L"chi"  },
                    {L"esp",          L"spa"  },
                    {L"xyz",          L"xyz"  },
                    {L"XyZ",          L"XyZ"  },
                    {L"und",          L""     },
                    {L"UND",          L"und"  },
                    {L"qaa",          L"qaa"  },
                    {L"English",      L"eng"  },
                    {L"Undetermined", L"und"  },
                    {L"en-US",        L"en-US"},
    });
}

TEST(CodeFromShortCode, ReadsTheFirstTwoCharacters)
{
    ExpectTexts(CodeFromShortCode, {
                                       {L"",      L""   },
                                       {L"e",     L""   },
                                       {L"en",    L"eng"},
                                       {L"EN-us", L"eng"},
                                       {L"sq",    L"sqi"},
                                       {L"ro",    L"rum"},
                                       {L"zu",    L"zul"},
                                       {L"qq",    L""   },
    });
}

TEST(CodeFromName, FindsOneNameInAnyCase)
{
    ExpectTexts(CodeFromName, {
                                  {L"Abkhazian",                     L"abk"},
                                  {L"zuni",                          L"zun"},
                                  {L"\t English\n",                  L"eng"},
                                  {L"Bable",                         L"ast"},
                                  {L"LEONESE",                       L"ast"},
                                  {L"Old Bulgarian",                 L"chu"},
                                  {L"GREEK, modern (1453-)",         L"gre"},
                                  {L"german",                        L"ger"},
                                  {L"German, Low",                   L"nds"},
                                  {L"Proven\u00e7al",                L"oci"},
                                  {L"PROVEN\u00c7AL, OLD (TO 1500)", L"pro"},
                                  {L"bokm\u00c5l, norwegian",        L"nob"},
    });
}

TEST(CodeFromName, GivesOtherTextsBack)
{
    ExpectTexts(CodeFromName, {
                                  {L"",                L""               },
                                  {L" \t",             L""               },
                                  {L" Quenya ",        L" Quenya "       },
                                  {L"Asturian; Bable", L"Asturian; Bable"}, // two names are not one
                                  {L"Germa",           L"Germa"          },
                                  {L"Germans",         L"Germans"        },
                                  {L"eng",             L"eng"            },
                                  {L"\u0420\u0443",    L"\u0420\u0443"   },
    });
}

// The value of a key in one of Debian's entries, or an empty text.
std::string GetValue(const std::string& entry, const std::string& key)
{
    const std::string opening = "\"" + key + "\": \"";
    const size_t found = entry.find(opening);
    if (found == entry.npos)
        return {};
    const size_t start = found + opening.size();
    return entry.substr(start, entry.find('"', start) - start);
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
        const std::string standardCode = GetValue(entry, "alpha_3");
        if (standardCode.empty())
            continue;
        SCOPED_TRACE(standardCode);
        ++languages;

        const std::string names = GetValue(entry, "name") + ";";
        const std::string firstName = names.substr(0, names.find(';'));
        const ZVString code = CodeFromName(ZVString::FromUTF8(firstName.c_str()));
        std::vector<std::string> codes {standardCode};
        if (const std::string other = GetValue(entry, "bibliographic"); !other.empty())
            codes.push_back(other);
        // Of two codes either may be the primary one.
        const bool isPrimaryKnown =
            code == ZVString::FromUTF8(codes.front().c_str()) || code == ZVString::FromUTF8(codes.back().c_str());
        EXPECT_TRUE(isPrimaryKnown) << firstName;

        bool isDisplayNameKnown = false;
        const ZVString displayName = LanguageNameFromCode(code);
        for (size_t start = 0; start < names.size();)
        {
            const size_t end = names.find(';', start);
            const ZVString name = ZVString::FromUTF8(names.substr(start, end - start).c_str());
            EXPECT_STREQ(CodeFromName(name), code);
            ZVString trimmed = name;
            trimmed.TrimWhitespace();
            isDisplayNameKnown |= trimmed == displayName;
            start = end + 1;
        }
        if (standardCode == "qaa-qtz")
            continue;
        EXPECT_TRUE(isDisplayNameKnown);

        for (const std::string& each : codes)
        {
            const ZVString text = ZVString::FromUTF8(each.c_str());
            EXPECT_STREQ(LanguageNameFromCode(text), displayName);
            EXPECT_STREQ(NormalizeLanguageCode(text), each == "und" ? ZVString() : code);
        }
        const ZVString shortCode = ZVString::FromUTF8(GetValue(entry, "alpha_2").c_str());
        EXPECT_STREQ(NormalizeLanguageCode(shortCode), shortCode.IsEmpty() ? ZVString() : code);
    }
    EXPECT_GE(languages, 487);
}
}
