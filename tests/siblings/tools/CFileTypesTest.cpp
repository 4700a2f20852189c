#include "siblings/tools/filetypes/CFileTypes.h"

#include "system/filename/ZVFilename.h"
#include "system/library/ZVDllString.h"

#include <gtest/gtest.h>

#include <tuple>

namespace
{
ZVString GetField(const IZVFileTypeRecord& record, const wchar_t* name)
{
    ZVString text = L"before";
    ZVDllString view(text);
    record.GetString(name, view);
    return text;
}

// A disc's folder as the library hands it over: the disc's kind counts more than the name.
ZVString Disc(const wchar_t* fileType)
{
    ZVFilename name(L"/films/Vol. 1.mp4/");
    name.SetProperty(ZVFilename::FileTypeProperty, fileType);
    return name.GetSerialized();
}

TEST(CFileTypes, KnowWhatAnExtensionSays)
{
    // A file, the class of its type or 0, the playback type, the media type and the content type.
    using Row = std::tuple<ZVString, int32_t, int32_t, const wchar_t*, const wchar_t*>;
    CFileTypes types;
    for (const auto& [file, itsClass, playback, media, content] : {
             Row {L"/films/Film.MP4",          13, 18, L"Video", L"video/mp4"     },
             Row {L"a.m4a",                    13, 0,  L"Audio", L"audio/mp4"     },
             Row {L"http://host/f.webm?x=.gz", 12, 18, L"Video", L"video/webm"    },
             Row {L"g.jpg",                    0,  0,  L"Image", L"image/jpeg"    },
             Row {L"folder.mp4/name",          0,  0,  L"",      L""              },
             Row {L"/disc/BDMV/INDEX.BDMV",    12, 18, L"Video", L""              },
             Row {L"/disc/VIDEO_TS.IFO",       12, 18, L"Video", L""              },
             Row {L"00800.mpls",               12, 18, L"Video", L""              },
             Row {L"show.dvr-ms",              12, 18, L"Video", L"video/x-ms-dvr"},
             Row {Disc(L"bluray"),             12, 18, L"Video", L""              },
             Row {Disc(L"bluray3d"),           12, 18, L"Video", L""              },
             Row {Disc(L"bdmv3d"),             12, 18, L"Video", L""              },
    })
    {
        SCOPED_TRACE(testing::PrintToString(file.GetText()));
        const ZVString extension = ZVFilename(file).GetExtension(true);
        for (const int32_t fileClass : {0, 12, 13})
            EXPECT_EQ(types.IsFileTypeInClass(extension, fileClass), fileClass != 0 && fileClass == itsClass) << fileClass;
        const IZVFileTypeRecord& record = *types.GetFileInfo(file, 1, 1, 0, 0);
        EXPECT_EQ(record.GetInt(L"Playback Type", 0), playback);
        EXPECT_STREQ(GetField(record, L"Media Type"), media);
        EXPECT_STREQ(GetField(record, L"Content Type"), content);
        EXPECT_STREQ(GetField(record, L"Other"), L"");
    }
}
}
