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

TEST(CFileTypes, KnowWhatAnExtensionSays)
{
    // A file, the class of its type or 0, the playback type, the media type and the content type.
    using Row = std::tuple<const wchar_t*, int32_t, int32_t, const wchar_t*, const wchar_t*>;
    CFileTypes types;
    for (const auto& [file, itsClass, playback, media, content] : {
             Row {L"/films/Film.MP4",          13, 18, L"Video", L"video/mp4" },
             Row {L"a.m4a",                    13, 0,  L"Audio", L"audio/mp4" },
             Row {L"http://host/f.webm?x=.gz", 12, 18, L"Video", L"video/webm"},
             Row {L"g.jpg",                    0,  0,  L"Image", L"image/jpeg"},
             Row {L"folder.mp4/name",          0,  0,  L"",      L""          },
    })
    {
        SCOPED_TRACE(testing::PrintToString(file));
        const ZVString extension = ZVFilename(file).GetExtension();
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
