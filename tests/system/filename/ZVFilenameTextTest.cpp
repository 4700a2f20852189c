#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>

namespace
{
std::string Bytes(const ZVString& text)
{
    return ZVNativePath(text).GetBytes();
}

TEST(ZVFilenameText, WhatStandsBehindAShortExtensionIsAProperty)
{
    // The text, its path and the property.
    const wchar_t* const rows[][3] = {
        {L"/a/film.mkv;disc",    L"/a/film.mkv",         L"disc"},
        {L"/a/film.12345;x;y",   L"/a/film.12345",       L"x;y" },
        {L"/a/film.mkv;",        L"/a/film.mkv",         L""    },
        {L"/a/film.123456;x",    L"/a/film.123456;x",    L""    },
        {L"/a/film.;x",          L"/a/film.;x",          L""    },
        {L"/a/film.mkv;x.y",     L"/a/film.mkv;x.y",     L""    },
        {L"/a.b/c;d",            L"/a.b/c;d",            L""    },
        {L"/a/film.mkv;x/",      L"/a/film.mkv;x/",      L""    },
        {L"http://host/a.mkv;x", L"http://host/a.mkv;x", L""    },
    };
    for (const auto& row : rows)
    {
        const ZVFilename name(row[0]);
        EXPECT_EQ(Bytes(name.GetPathOnly()), Bytes(row[1]));
        EXPECT_EQ(name.GetPostExtensionData(), row[2]);
    }

    ZVFilename name(L"/a/film.mkv;disc");
    name.SetFilename(L"/b.mkv", false);
    EXPECT_EQ(name.GetPostExtensionData(), L"disc");
    name.SetListedPath(L"/a/film.mkv;1");
    EXPECT_EQ(Bytes(name.GetSerialized()), "/a/film.mkv;1");
}

TEST(ZVFilenameText, TheSerialFormHoldsPathAndProperties)
{
    ZVFilename name(L"/a/b & \"c\" <d>\x1\x2.mkv");
    EXPECT_EQ(name.GetSerialized(), name.GetPathOnly());
    name.SetProperty(L"FileType", L"a'\u00e4");
    EXPECT_EQ(name.GetSerialized(),
              L"<XMLFN version=\"1.0\"><Item Name=\"Filename\">/a/b &amp; &quot;c&quot; &lt;d&gt;&#x1;&#x2;.mkv</Item>"
              L"<Item Name=\"FileType\">a'\u00e4</Item></XMLFN>");
    // Never a second item of that name.
    name.SetProperty(L"filename", L"/other");
    EXPECT_EQ(name.GetSerialized().CountOf(L"<Item"), 2);

    name.GetProperties().Remove(L"filename");
    name.SetProperty(L"a \"key\"", L"(3:abc)\r\n ");
    name.GetProperties().SetInt(L"TVChannel", 7);
    name.SetProperty(L"UserAgent", L"");
    const ZVFilename copy(name.GetSerialized());
    EXPECT_EQ(copy.GetPathOnly(), name.GetPathOnly());
    EXPECT_TRUE(copy.GetProperties().IsEqual(name.GetProperties()));
    EXPECT_EQ(copy.GetIntegerProperty(L"tvchannel", 0), 7);
    EXPECT_EQ(copy.GetIntegerProperty(L"IndexedHLS", 5), 5);
}

TEST(ZVFilenameText, ReadsTheSerialForm)
{
    // The text, its path and a property.
    const wchar_t* const rows[][3] = {
        {L"<xmlfn VERSION=\"1.0\"><item name=\"FILENAME\">/a</item><Item Name=\"k\">v</Item>", L"/a",                     L"v"},
        {L"<XMLFN version=\"1.0\"><Item Name=\"Filename\">/a.mkv;x</Item></XMLFN>",            L"/a.mkv;x",               L"" },
        {L"<XMLFN version=\"2.0\"><Item Name=\"Filename\">/a</Item></XMLFN>",                  L"",                       L"" },
        {L"<XMLFN version=\"1\"><Item Name=\"Filename\">/a</Item></XMLFN>",                    L"",                       L"" },
        {L"<XMLFN version=\"1.0\"><Item Name=\"k\">v</Item></XMLFN>",                          L"",                       L"v"},
        {L"<XMLFN version=\"1.0\"><Item Name=\"Filename\">/a</Item><Item Name=\"k",            L"/a",                     L"" },
        {L"<XMLFN  version=\"1\">",                                                            L"<XMLFN  version=\"1\">", L"" },
    };
    for (const auto& row : rows)
    {
        const ZVFilename name(row[0]);
        EXPECT_EQ(Bytes(name.GetPathOnly()), Bytes(row[1]));
        EXPECT_EQ(name.GetProperty(L"k"), row[2]) << Bytes(row[0]);
    }
}

TEST(ZVFilenameText, StylesAreConverted)
{
    using Style = ZVPathStyle;
    const std::tuple<const wchar_t*, Style, Style, const wchar_t*> rows[] = {
        {L"a\\b/c",                     Style::ForwardSlashes, Style::ForwardSlashes, L"a\\b/c"           },
        {L"a\\b/c",                     Style::Native,         Style::ForwardSlashes, L"a/b/c"            },
        {L"a\\b/c",                     Style::Native,         Style::Backslashes,    L"a\\b\\c"          },
        {L"a\\b/c",                     Style::Unknown,        Style::ForwardSlashes, L"a\\b/c"           },
        {L"a\\b/c",                     Style::Unknown,        Style::Backslashes,    L"a\\b\\c"          },
        {L"a\\b",                       Style::Unknown,        Style::ForwardSlashes, L"a/b"              },
        {L"FILE:///C:/a%20%c3%A4%00%4", Style::FileURL,        Style::Backslashes,    L"C:\\a \u00e4%00%4"},
        {L"file:///a%2Fb%20c",          Style::FileURL,        Style::URLPath,        L"/a/b c"           },
        {L"file://LocalHost/a",         Style::FileURL,        Style::URLPath,        L"a"                },
        {L"/a%20b",                     Style::FileURL,        Style::Backslashes,    L"/a%20b"           },
        {L"file:///a%20b",              Style::FileURL,        Style::ForwardSlashes, L"file:///a%20b"    },
    };
    for (const auto& [path, from, to, result] : rows)
    {
        ZVString text = path;
        ZVFilename::ConvertPathStyle(text, from, to);
        EXPECT_EQ(text, result) << Bytes(path);
    }
}

TEST(ZVFilenameText, PrivateNamesAreMapped)
{
    const std::tuple<const wchar_t*, const wchar_t*, int32_t> rows[] = {
        {L"M01P://host/a?m01p://", L"http://host/a?m01p://", ZVFilename::HTTPScheme },
        {L"m01ps://host/a",        L"https://host/a",        ZVFilename::HTTPSScheme},
        {L"HTTPS://host",          L"HTTPS://host",          ZVFilename::HTTPSScheme},
        {L"ftp://host",            L"ftp://host",            ZVFilename::FTPScheme  },
        {L"ftps://host",           L"ftps://host",           ZVFilename::NoScheme   },
        {L"http.mkv",              L"http.mkv",              ZVFilename::NoScheme   },
    };
    for (const auto& [text, mapped, code] : rows)
    {
        ZVFilename name(text);
        EXPECT_EQ(name.MapProtocolAliases(), ZVString(text) != mapped);
        EXPECT_EQ(name.GetPathOnly(), mapped);
        EXPECT_EQ(name.GetSchemeCode(), code) << Bytes(text);
    }
    ZVString text = L"(INSTALL drive):/a/(Install Drive):b";
    EXPECT_TRUE(ZVFilename::MapInstallDrive(text));
    EXPECT_EQ(text, L"/a/b");
    EXPECT_FALSE(ZVFilename::MapInstallDrive(text = L"/(Install Drive):"));
}

TEST(ZVFilenameText, KindsAreToldByTheText)
{
    // R is remote, T is RTMP, W is a web service and S is special.
    const std::pair<const wchar_t*, const char*> rows[] = {
        {L"/films/film.mkv",         ""  },
        {L"file:///films/film.mkv",  "R" },
        {L"RTMPE://host/a",          "RT"},
        {L"rtmpx://host/a",          "R" },
        {L"http://host/ldws/a",      "RW"},
        {L"/LDWS/a",                 ""  },
        {L"12.tvlb",                 "S" },
        {L"12.TVLB",                 ""  },
        {L"a.zvtv/b",                "S" },
        {L"(3:abc)",                 "S" },
        {L"(x:abc)",                 ""  },
        {L"<xmlph version=\"1.0\">", "S" },
        {L"radio paradise: Rock",    "S" },
        {L"Radio Paradise:Rock",     ""  },
    };
    for (const auto& [text, expected] : rows)
    {
        const ZVFilename name(text);
        std::string kinds = name.GetIsFileRemote() ? "R" : "";
        kinds += name.IsRTMP() ? "T" : "";
        kinds += name.IsWebServiceURL() ? "W" : "";
        kinds += name.IsSpecial() ? "S" : "";
        EXPECT_EQ(kinds, expected) << Bytes(text);
    }
}

TEST(ZVFilenameText, ASpecialTextIsAFileNameOnlyWhereItMayBe)
{
    // The flags with one of which, set alone, the text passes: none, empty, handle, URL, special.
    const std::pair<const wchar_t*, const char*> rows[] = {
        {L"",                      " e   "},
        {L"/film.mkv",             "nehus"},
        {L"http://host/a",         "   u "},
        {L"a.tvlb",                "    s"},
        {L"(0x12345678):a.tvlb",   "  h s"},
        {L"(0x12345678):http://a", "  hu "},
        {L"(0x12345678):",         "nehus"},
        {L"(0x1234567):a.tvlb",    "    s"},
    };
    for (const auto& [text, expected] : rows)
    {
        std::string passes;
        for (const char flag : {'n', 'e', 'h', 'u', 's'})
            passes += ZVFilename::IsSpecialFileName(text, flag == 'e', flag == 'h', flag == 'u', flag == 's') ? flag : ' ';
        EXPECT_EQ(passes, expected) << Bytes(text);
    }
}
}
