#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <type_traits>

namespace
{
std::string Bytes(const ZVString& text)
{
    return ZVNativePath(text).GetBytes();
}

TEST(ZVFilename, ATextIsCutAfterAShortExtension)
{
    const wchar_t* const rows[][3] = {
        {L"/a/film.12345;x;y",   L"/a/film.12345",       L"x;y"},
        {L"/a/film.123456;x",    L"/a/film.123456;x",    L""   },
        {L"/a/film.mkv;x.y",     L"/a/film.mkv;x.y",     L""   },
        {L"/a.b/c;d",            L"/a.b/c",              L"d"  },
        {L"/a/film.mkv;x/",      L"/a/film.mkv;x/",      L""   },
        {L"http://host/a.mkv;x", L"http://host/a.mkv;x", L""   },
    };
    for (const auto& [text, path, data] : rows)
    {
        SCOPED_TRACE(Bytes(text));
        const ZVFilename name {ZVString(text)};
        EXPECT_STREQ(name.GetPathOnly(), path);
        EXPECT_STREQ(name.GetPostExtensionData(), data);
    }
    ZVFilename name(L"/a/film.mkv;disc");
    name.SetFilename(L"/b.mkv", false);
    EXPECT_STREQ(name.GetPostExtensionData(), L"disc") << "the properties were not to be dropped";
}

TEST(ZVFilename, APathOfTheSystemIsTakenAsItStands)
{
    static_assert(!std::is_convertible_v<ZVString, ZVFilename>);
    for (const wchar_t* path : {L"/a/film.mkv;1", L"<XMLFN version=\"1.0\"><Item Name=\"k\">v</Item></XMLFN>"})
    {
        const ZVFilename name = ZVFilename::FromPath(path);
        EXPECT_STREQ(name.GetPathOnly(), path);
        EXPECT_EQ(name.GetProperties().GetCount(), 0) << Bytes(path);
    }
}

TEST(ZVFilename, TheSerialFormHoldsPathAndProperties)
{
    ZVFilename name(L"/a/b & \"c\" <d>\x1\x2.mkv");
    EXPECT_STREQ(name.GetSerialized(), name.GetPathOnly());
    name.SetProperty(L"FileType", L"a'\u00e4");
    const wchar_t* const form = L"<XMLFN version=\"1.0\"><Item Name=\"Filename\">/a/b &amp; &quot;c&quot; &lt;d&gt;&#x1;&#x2;.mkv"
                                L"</Item><Item Name=\"FileType\">a'\u00e4</Item></XMLFN>";
    EXPECT_STREQ(name.GetSerialized(), form);
    // There is never a second item of that name.
    name.SetProperty(L"filename", L"7");
    EXPECT_STREQ(name.GetSerialized(), form);
}

TEST(ZVFilename, ReadsTheSerialForm)
{
    const wchar_t* const rows[][3] = {
        {L"<xmlfn VERSION=\"1.0\"><item name=\"FILENAME\">/a</item><Item Name=\"k\">v</Item>", L"/a",       L"v"},
        {L"<XMLFN version=\"1.0\"><Item Name=\"Filename\">/a.mkv;x</Item></XMLFN>",            L"/a.mkv;x", L"" },
        {L"<XMLFN version=\"1\"><Item Name=\"Filename\">/a</Item></XMLFN>",                    L"",         L"" },
        {L"<XMLFN version=\"1.0\"><Item Name=\"Filename\">/a</Item><Item Name=\"k",            L"/a",       L"" },
    };
    for (const auto& [text, path, value] : rows)
    {
        SCOPED_TRACE(Bytes(text));
        const ZVFilename name {ZVString(text)};
        EXPECT_STREQ(name.GetPathOnly(), path);
        EXPECT_STREQ(name.GetProperty(L"k"), value);
    }
}

TEST(ZVFilename, StylesAreConverted)
{
    using Style = ZVPathStyle;
    const std::tuple<const wchar_t*, Style, Style, const wchar_t*> rows[] = {
        {L"a\\b",                       Style::Unknown, Style::ForwardSlashes, L"a/b"              },
        {L"FILE:///C:/a%20%c3%A4%00%4", Style::FileURL, Style::Backslashes,    L"C:\\a \u00e4%00%4"},
        {L"file:///a%2Fb%20c",          Style::FileURL, Style::URLPath,        L"/a/b c"           },
        {L"file://LocalHost/a",         Style::FileURL, Style::URLPath,        L"a"                },
    };
    for (const auto& [path, from, to, result] : rows)
    {
        ZVString text = path;
        ZVFilename::ConvertPathStyle(text, from, to);
        EXPECT_STREQ(text, result) << Bytes(path);
    }
}

TEST(ZVFilename, PrivateNamesAreMapped)
{
    ZVFilename name(L"M01P://host/a?m01p://");
    EXPECT_TRUE(name.MapProtocolAliases());
    EXPECT_STREQ(name.GetPathOnly(), L"http://host/a?m01p://");
    ZVString text = L"(INSTALL drive):/a/(Install Drive):b";
    EXPECT_TRUE(ZVFilename::MapInstallDrive(text));
    EXPECT_STREQ(text, L"/a/b");
}

TEST(ZVFilename, TheTextTellsTheKind)
{
    for (const auto& [text, code] : {
             std::pair(L"HTTPS://host", 4), {L"https",       4},
               {L"http://host", 3},
               {L"FTP:",        1},
               {L"/http",       0}
    })
        EXPECT_EQ(ZVFilename::FromPath(text).GetSchemeCode(), code) << Bytes(text);
    for (const wchar_t* text : {L"12.tvlb", L"(3:abc)", L"<xmlph version=\"1.0\">"})
        EXPECT_TRUE(ZVFilename::IsSpecial(text)) << Bytes(text);
    EXPECT_FALSE(ZVFilename::IsSpecialFileName(L"(0x12345678):http://a", {.Special = true}));
    EXPECT_TRUE(ZVFilename::IsSpecialFileName(L"(0x12345678):http://a", {.HandleForm = true}));
}

TEST(ZVFilename, SplitsAPathIntoDriveDirectoryNameAndExtension)
{
    const wchar_t* const rows[][5] = {
        {L"/films/two.parts.tar.gz",                      L"",                L"/films/",   L"two.parts.tar", L"gz"  },
        {L"/films/.hidden",                               L"",                L"/films/",   L".hidden",       L""    },
        {L"/films/...mkv",                                L"",                L"/films/",   L"..",            L"mkv" },
        {L"c:\\films\\film.mkv",                          L"C:",              L"/films/",   L"film",          L"mkv" },
        {L"1:film.mkv",                                   L"1:",              L"",          L"film",          L"mkv" },
        {L"\\\\server\\share\\film.mkv",                  L"//server",        L"/share/",   L"film",          L"mkv" },
        {L"/dev/sr0",                                     L"/dev/sr0",        L"",          L"",              L""    },
        {L"/devices/film.mkv",                            L"",                L"/devices/", L"film",          L"mkv" },
        {L"http://host.org/films/film.m3u8?part=1.5#a/b", L"http://host.org", L"/films/",   L"film",          L"m3u8"},
        {L"x://host?a/b.c",                               L"x://host",        L"",          L"",              L""    },
    };
    for (const auto& [path, drive, directory, name, extension] : rows)
    {
        SCOPED_TRACE(Bytes(path));
        ZVString foundDrive, foundDirectory, foundName, foundExtension;
        ZVFilename::FromPath(path).SplitPath(&foundDrive, &foundDirectory, &foundName, &foundExtension);
        EXPECT_STREQ(foundDrive, drive);
        EXPECT_STREQ(foundDirectory, directory);
        EXPECT_STREQ(foundName, name);
        EXPECT_STREQ(foundExtension, extension);
    }
}

TEST(ZVNativePath, EveryNameOnADiskComesBackFromItsText)
{
    // Whole, cut, overlong, a surrogate, above U+FFFF, a backslash, and bytes that begin no sequence.
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
    EXPECT_STREQ(ZVNativePath::UserPathToText("C:\\films"), L"C:\\films");
}
}
