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

TEST(ZVFilenameParts, SplitsAPathIntoDriveDirectoryNameAndExtension)
{
    // The path, then drive, directory, name and extension.
    const std::tuple<const wchar_t*, const char*, const char*, const char*, const char*> rows[] = {
        {L"/films/a/film.mkv",                            "",                "/films/a/",    "film",          "mkv" },
        {L"",                                             "",                "",             "",              ""    },
        {L"/",                                            "",                "/",            "",              ""    },
        {L"/films/a/",                                    "",                "/films/a/",    "",              ""    },
        {L"/films/two.parts.tar.gz",                      "",                "/films/",      "two.parts.tar", "gz"  },
        {L"/films/v1.2/film",                             "",                "/films/v1.2/", "film",          ""    },
        {L"/films/film.",                                 "",                "/films/",      "film",          ""    },
        {L"/films/.hidden",                               "",                "/films/",      ".hidden",       ""    },
        {L"/films/.hidden.mkv",                           "",                "/films/",      ".hidden",       "mkv" },
        {L".hidden",                                      "",                "",             ".hidden",       ""    },
        {L"/films/.",                                     "",                "/films/",      ".",             ""    },
        {L"..",                                           "",                "",             "..",            ""    },
        {L"/films/..name",                                "",                "/films/",      "..name",        ""    },
        {L"/films/...mkv",                                "",                "/films/",      "..",            "mkv" },
        {L"c:\\films\\film.mkv",                          "C:",              "/films/",      "film",          "mkv" },
        {L"c:film.mkv",                                   "C:",              "",             "film",          "mkv" },
        {L"1:film.mkv",                                   "",                "",             "1:film",        "mkv" },
        {L"\\\\server\\share\\film.mkv",                  "//server",        "/share/",      "film",          "mkv" },
        {L"//server",                                     "//server",        "",             "",              ""    },
        {L"/dev/sr0",                                     "/dev/sr0",        "",             "",              ""    },
        {L"/dev/sr0/BDMV/index.bdmv",                     "/dev/sr0",        "/BDMV/",       "index",         "bdmv"},
        {L"/DEV/sr0/film.mkv",                            "/DEV/sr0",        "/",            "film",          "mkv" },
        {L"/dev/",                                        "",                "/dev/",        "",              ""    },
        {L"/devices/film.mkv",                            "",                "/devices/",    "film",          "mkv" },
        {L"(install drive):/films/film.mkv",              "",                "/films/",      "film",          "mkv" },
        {L"http://host.org/films/film.m3u8?part=1.5#a/b", "http://host.org", "/films/",      "film",          "m3u8"},
        {L"http://host.org",                              "http://host.org", "",             "",              ""    },
        {L"http://host.org?a/b.c",                        "http://host.org", "",             "",              ""    },
        {L"file:///films/film.mkv",                       "file://",         "/films/",      "film",          "mkv" },
    };
    for (const auto& [path, expectedDrive, expectedDirectory, expectedName, expectedExtension] : rows)
    {
        SCOPED_TRACE(Bytes(path));
        ZVString drive;
        ZVString directory;
        ZVString name;
        ZVString extension;
        ZVFilename::SplitPath(path, &drive, &directory, &name, &extension);
        EXPECT_EQ(Bytes(drive), expectedDrive);
        EXPECT_EQ(Bytes(directory), expectedDirectory);
        EXPECT_EQ(Bytes(name), expectedName);
        EXPECT_EQ(Bytes(extension), expectedExtension);
    }
}

TEST(ZVFilenameParts, NamesAreBuiltFromTheParts)
{
    ZVFilename film(L"/films/a/film.mkv;disc 2");
    EXPECT_EQ(Bytes(film.GetNameAndExtension()), "film.mkv");
    EXPECT_EQ(Bytes(film.GetNameAndExtension(true)), "film.mkv;disc 2");
    EXPECT_EQ(Bytes(film.GetSidecarName()), "/films/a/film_mkv_ZVSidecar.xml");
    film.SetProperty(ZVFilename::FileTypeProperty, L"webm");
    EXPECT_EQ(Bytes(film.GetExtension()), "mkv");
    EXPECT_EQ(Bytes(film.GetExtension(true)), "webm");
    EXPECT_EQ(Bytes(film.GetSidecarName()), "/films/a/film_webm_ZVSidecar.xml");
    EXPECT_EQ(Bytes(film.GetParentFolderName()), "a");
    EXPECT_EQ(Bytes(film.GetParentFolderName(true)), "a/");
    EXPECT_EQ(Bytes(ZVFilename(L"/film.mkv").GetParentFolderName(true)), "");
    EXPECT_EQ(Bytes(ZVFilename(L"film.mkv").GetParentFolderName()), "");

    const ZVFilename disc(L"/dev/sr0/BDMV/index.bdmv");
    EXPECT_EQ(Bytes(disc.GetDirectory()), "/dev/sr0/BDMV/");
    EXPECT_EQ(Bytes(disc.GetDirectory(false)), "/BDMV/");
    EXPECT_EQ(Bytes(disc.GetSidecarName()), "/dev/sr0/BDMV/index_bdmv_ZVSidecar.xml");
    EXPECT_EQ(Bytes(ZVFilename(L"/nowhere/a.ts").GetHLSIndexName(false)), "/nowhere/a.ts.zhli");
    EXPECT_TRUE(ZVFilename(L"/nowhere/a.ts").GetHLSIndexName(true).IsEmpty());
}

TEST(ZVFilenameParts, AStepIsAppendedWithOneSlash)
{
    const wchar_t* const rows[][3] = {
        {L"/a",      L"b",    L"/a/b"   },
        {L"/a/",     L"b",    L"/a/b"   },
        {L"/a//",    L"//b/", L"/a/b/"  },
        {L"/",       L"b",    L"/b"     },
        {L"",        L"b",    L"b"      },
        {L"/a",      L"",     L"/a/"    },
        {L"C:\\a\\", L"b",    L"C:\\a/b"},
    };
    for (const auto& row : rows)
    {
        ZVFilename name(row[0]);
        name.AddPathPart(row[1]);
        EXPECT_EQ(Bytes(name.GetPathOnly()), Bytes(row[2]));
    }
}

TEST(ZVFilenameParts, CopiesAreNumbered)
{
    const std::tuple<const wchar_t*, bool, const wchar_t*> rows[] = {
        {L"/a/film.mkv",         false, L"/a/film (1).mkv"        },
        {L"/a/film (1).mkv",     false, L"/a/film (2).mkv"        },
        {L"/a/film(9).mkv",      false, L"/a/film(10).mkv"        },
        {L"/a/film (9999).mkv",  false, L"/a/film (10000).mkv"    },
        {L"/a/film (10000).mkv", false, L"/a/film (10000) (1).mkv"},
        {L"/a/film (01).mkv",    false, L"/a/film (01) (1).mkv"   },
        {L"/a/film (1a).mkv",    false, L"/a/film (1a) (1).mkv"   },
        {L"/a/1).mkv",           false, L"/a/1) (1).mkv"          },
        {L"c:\\v1.0\\film",      false, L"c:\\v1.0\\film (1)"     },
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

TEST(ZVFilenameParts, EveryNameOnADiskComesBackFromItsText)
{
    const std::string rows[] = {
        "/plain/name.mkv",
        "",
        "/\xc3\xa4/\xe6\x97\xa5\xef\xbf\xbf",
        "/lone \xff byte",
        "/cut \xe6\x97",
        "/overlong \xc0\xaf\xe0\x80\xaf",
        "/surrogate \xed\xb2\x80",
        "/film \xf0\x9f\x8e\xac.mkv",
        "/a\\b",
        "/cut four \xf0\x9f\x8e",
        "\x80\xbf\xfe",
    };
    for (const std::string& bytes : rows)
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
