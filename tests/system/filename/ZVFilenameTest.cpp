#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"

#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <type_traits>
#include <unistd.h>

namespace
{
std::string Bytes(const ZVString& text)
{
    return ZVNativePath(text).GetBytes();
}

TEST(ZVFilename, WhatStandsBehindAShortExtensionIsAProperty)
{
    const wchar_t* const rows[][3] = {
        {L"/a/film.12345;x;y",   L"/a/film.12345",       L"x;y"},
        {L"/a/film.123456;x",    L"/a/film.123456;x",    L""   },
        {L"/a/film.;x",          L"/a/film.;x",          L""   },
        {L"/a/film.mkv;x.y",     L"/a/film.mkv;x.y",     L""   },
        {L"/a.b/c;d",            L"/a.b/c;d",            L""   },
        {L"http://host/a.mkv;x", L"http://host/a.mkv;x", L""   },
    };
    for (const auto& row : rows)
    {
        const ZVFilename name(row[0]);
        EXPECT_TRUE(name.GetPathOnly() == row[1] && name.GetPostExtensionData() == row[2]) << Bytes(row[0]);
    }

    ZVFilename name(L"/a/film.mkv;disc");
    name.SetFilename(L"/b.mkv", false);
    EXPECT_TRUE(name.GetPathOnly() == L"/b.mkv" && name.GetPostExtensionData() == L"disc");
}

TEST(ZVFilename, APathOfTheSystemIsTakenAsItStands)
{
    static_assert(!std::is_convertible_v<ZVString, ZVFilename>);
    for (const wchar_t* path : {L"/a/film.mkv;1", L"<XMLFN version=\"1.0\"><Item Name=\"k\">v</Item></XMLFN>"})
    {
        const ZVFilename name = ZVFilename::FromPath(path);
        EXPECT_EQ(name.GetPathOnly(), path);
        EXPECT_EQ(name.GetProperties().GetCount(), 0) << Bytes(path);
    }
}

TEST(ZVFilename, TheSerialFormHoldsPathAndProperties)
{
    ZVFilename name(L"/a/b & \"c\" <d>\x1\x2.mkv");
    EXPECT_EQ(name.GetSerialized(), name.GetPathOnly());
    name.SetProperty(L"FileType", L"a'\u00e4");
    EXPECT_EQ(name.GetSerialized(),
              L"<XMLFN version=\"1.0\"><Item Name=\"Filename\">/a/b &amp; &quot;c&quot; &lt;d&gt;&#x1;&#x2;.mkv</Item>"
              L"<Item Name=\"FileType\">a'\u00e4</Item></XMLFN>");
    // Never a second item of that name.
    name.SetProperty(L"filename", L"7");
    EXPECT_TRUE(name.GetSerialized().CountOf(L"<Item") == 2 && name.GetIntegerProperty(L"Filename", 0) == 7);
}

TEST(ZVFilename, ReadsTheSerialForm)
{
    const wchar_t* const rows[][3] = {
        {L"<xmlfn VERSION=\"1.0\"><item name=\"FILENAME\">/a</item><Item Name=\"k\">v</Item>", L"/a",       L"v"},
        {L"<XMLFN version=\"1.0\"><Item Name=\"Filename\">/a.mkv;x</Item></XMLFN>",            L"/a.mkv;x", L"" },
        {L"<XMLFN version=\"1\"><Item Name=\"Filename\">/a</Item></XMLFN>",                    L"",         L"" },
        {L"<XMLFN version=\"1.0\"><Item Name=\"k\">v</Item></XMLFN>",                          L"",         L"v"},
        {L"<XMLFN version=\"1.0\"><Item Name=\"Filename\">/a</Item><Item Name=\"k",            L"/a",       L"" },
    };
    for (const auto& row : rows)
    {
        const ZVFilename name(row[0]);
        EXPECT_TRUE(name.GetPathOnly() == row[1] && name.GetProperty(L"k") == row[2]) << Bytes(row[0]);
    }
}

TEST(ZVFilename, StylesAreConverted)
{
    using Style = ZVPathStyle;
    const std::tuple<const wchar_t*, Style, Style, const wchar_t*> rows[] = {
        {L"a\\b/c",                     Style::ForwardSlashes, Style::ForwardSlashes, L"a\\b/c"           },
        {L"a\\b/c",                     Style::Unknown,        Style::ForwardSlashes, L"a\\b/c"           },
        {L"a\\b",                       Style::Unknown,        Style::ForwardSlashes, L"a/b"              },
        {L"FILE:///C:/a%20%c3%A4%00%4", Style::FileURL,        Style::Backslashes,    L"C:\\a \u00e4%00%4"},
        {L"file:///a%2Fb%20c",          Style::FileURL,        Style::URLPath,        L"/a/b c"           },
        {L"file://LocalHost/a",         Style::FileURL,        Style::URLPath,        L"a"                },
        {L"file:///a%20b",              Style::FileURL,        Style::ForwardSlashes, L"file:///a%20b"    },
    };
    for (const auto& [path, from, to, result] : rows)
    {
        ZVString text = path;
        ZVFilename::ConvertPathStyle(text, from, to);
        EXPECT_EQ(text, result) << Bytes(path);
    }
}

TEST(ZVFilename, PrivateNamesAreMapped)
{
    ZVFilename name(L"M01P://host/a?m01p://");
    EXPECT_TRUE(name.MapProtocolAliases() && name.GetPathOnly() == L"http://host/a?m01p://" && !name.MapProtocolAliases());
    ZVString text = L"(INSTALL drive):/a/(Install Drive):b";
    EXPECT_TRUE(ZVFilename::MapInstallDrive(text) && text == L"/a/b");
    EXPECT_FALSE(ZVFilename::MapInstallDrive(text = L"/(Install Drive):"));
}

TEST(ZVFilename, KindsAreToldByTheText)
{
    // The scheme's code, then R is remote, T is RTMP, W is a web service and S is special.
    const std::pair<const wchar_t*, const char*> rows[] = {
        {L"/LDWS/film.mkv",          "0"  },
        {L"file:///films/film.mkv",  "0R" },
        {L"HTTPS://host",            "4R" },
        {L"http://host/ldws/a",      "3RW"},
        {L"RTMPE://host/a",          "0RT"},
        {L"12.tvlb",                 "0S" },
        {L"(3:abc)",                 "0S" },
        {L"<xmlph version=\"1.0\">", "0S" },
    };
    for (const auto& [text, expected] : rows)
    {
        const ZVFilename name(text);
        const std::string remote = name.GetIsFileRemote() ? "R" : "";
        const char* const kind = name.IsRTMP() ? "T" : name.IsWebServiceURL() ? "W" : name.IsSpecial() ? "S" : "";
        EXPECT_EQ(std::to_string(name.GetSchemeCode()) + remote + kind, expected) << Bytes(text);
    }
}

TEST(ZVFilename, ASpecialTextIsAFileNameOnlyWhereItMayBe)
{
    // The flags with one of which, set alone, the text passes: none, empty, handle, URL, special.
    const std::pair<const wchar_t*, const char*> rows[] = {
        {L"",                      " e   "},
        {L"/film.mkv",             "nehus"},
        {L"http://host/a",         "   u "},
        {L"(0x12345678):http://a", "  hu "},
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

TEST(ZVFilename, SplitsAPathIntoDriveDirectoryNameAndExtension)
{
    const std::pair<const wchar_t*, const char*> rows[] = {
        {L"/films/two.parts.tar.gz",                      "|/films/|two.parts.tar|gz"        },
        {L"/films/v1.2/film",                             "|/films/v1.2/|film|"              },
        {L"/films/film.",                                 "|/films/|film|"                   },
        {L"/films/.hidden",                               "|/films/|.hidden|"                },
        {L"..",                                           "||..|"                            },
        {L"/films/...mkv",                                "|/films/|..|mkv"                  },
        {L"c:\\films\\film.mkv",                          "C:|/films/|film|mkv"              },
        {L"1:film.mkv",                                   "||1:film|mkv"                     },
        {L"\\\\server\\share\\film.mkv",                  "//server|/share/|film|mkv"        },
        {L"/dev/sr0",                                     "/dev/sr0|||"                      },
        {L"/dev/",                                        "|/dev/||"                         },
        {L"/devices/film.mkv",                            "|/devices/|film|mkv"              },
        {L"http://host.org/films/film.m3u8?part=1.5#a/b", "http://host.org|/films/|film|m3u8"},
        {L"http://host.org?a/b.c",                        "http://host.org|||"               },
    };
    for (const auto& [path, parts] : rows)
    {
        ZVString drive, directory, name, extension;
        ZVFilename::SplitPath(path, &drive, &directory, &name, &extension);
        EXPECT_EQ(Bytes(drive + L"|" + directory + L"|" + name + L"|" + extension), parts) << Bytes(path);
    }
}

TEST(ZVFilename, NamesAreBuiltFromTheParts)
{
    ZVFilename film(L"/films/a/film.mkv;disc 2");
    EXPECT_EQ(Bytes(film.GetNameAndExtension() + film.GetNameAndExtension(true)), "film.mkvfilm.mkv;disc 2");
    film.SetProperty(ZVFilename::FileTypeProperty, L"webm");
    EXPECT_EQ(Bytes(film.GetExtension() + film.GetExtension(true)), "mkvwebm");
    EXPECT_EQ(Bytes(film.GetSidecarName()), "/films/a/film_webm_ZVSidecar.xml");
    EXPECT_EQ(Bytes(film.GetParentFolderName() + film.GetParentFolderName(true)), "aa/");
    EXPECT_EQ(Bytes(ZVFilename(L"/film.mkv").GetParentFolderName(true)), "");
    const ZVFilename disc(L"/DEV/sr0/BDMV/index.bdmv");
    EXPECT_EQ(Bytes(disc.GetDrive() + L"|" + disc.GetDirectory(false) + L"|" + disc.GetNameOnly()), "/DEV/sr0|/BDMV/|index");

    const std::string index = testing::TempDir() + "index" + std::to_string(getpid()) + ".ts.zhli";
    const ZVFilename stream(ZVNativePath::ToText(index.substr(0, index.size() - 5).c_str()));
    EXPECT_TRUE(stream.GetHLSIndexName(true).IsEmpty() && Bytes(stream.GetHLSIndexName(false)) == index);
    std::ofstream(index).close();
    EXPECT_EQ(Bytes(stream.GetHLSIndexName(true)), index);
    unlink(index.c_str());

    ZVFilename name;
    for (const wchar_t* part : {L"/a", L"//b//", L"/c\\", L"d", L""})
        name.AddPathPart(part);
    EXPECT_EQ(name.GetPathOnly(), L"/a/b/c/d/");
}

TEST(ZVFilename, CopiesAreNumbered)
{
    const std::tuple<const wchar_t*, bool, const wchar_t*> rows[] = {
        {L"/a/film (9999).mkv",  false, L"/a/film (10000).mkv"    },
        {L"/a/film (10000).mkv", false, L"/a/film (10000) (1).mkv"},
        {L"/a/film (01).mkv",    false, L"/a/film (01) (1).mkv"   },
        {L"/a/film (1a).mkv",    false, L"/a/film (1a) (1).mkv"   },
        {L"/a/1).mkv",           false, L"/a/1) (1).mkv"          },
        {L"/a/v1.2/",            true,  L"/a/v1.2 (1)/"           },
        {L"/a/v1.2 (1)",         true,  L"/a/v1.2 (2)"            },
        {L"/a/v1.2 (2)",         true,  L"/a/v1.2 (1)"            },
    };
    for (const auto& [path, forFolder, next] : rows)
    {
        ZVFilename name(path);
        name.AddCopyNumber(forFolder);
        EXPECT_EQ(Bytes(name.GetPathOnly()), Bytes(next));
    }
}

TEST(ZVNativePath, EveryNameOnADiskComesBackFromItsText)
{
    // Whole, cut, overlong, a surrogate, above U+FFFF, a backslash, and no sequences at all.
    for (const std::string bytes : {"/\xc3\xa4/\xe6\x97\xa5\xef\xbf\xbf", "/\xe6\x97", "/\xc0\xaf\xe0\x80\xaf", "/\xed\xb2\x80",
                                    "/film \xf0\x9f\x8e\xac.mkv", "/a\\b", "\x80\xbf\xfe", ""})
    {
        const ZVString text = ZVNativePath::ToText(bytes.c_str());
        EXPECT_EQ(Bytes(text), bytes);
        EXPECT_EQ(text.Find(L'\\'), -1) << bytes;
    }
    // Two names that the plain conversion could not tell apart.
    EXPECT_NE(ZVNativePath::ToText("\xff"), ZVNativePath::ToText("\xc3\xbf"));
    EXPECT_EQ(Bytes(L"C:\\films\\\u00ff"), "C:/films/\xc3\xbf");
}
}
