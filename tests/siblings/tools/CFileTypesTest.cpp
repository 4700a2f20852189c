#include "siblings/tools/filetypes/CFileTypes.h"

#include "system/filename/ZVFilename.h"
#include "system/library/ZVDllString.h"

#include <gtest/gtest.h>

namespace
{
ZVString GetField(const IZVFileTypeRecord& record, const wchar_t* name)
{
    ZVString text = L"before";
    ZVDllString view(text);
    record.GetString(name, view);
    return text;
}

TEST(CFileTypes, TellsWhatAnExtensionSays)
{
    constexpr struct
    {
        const wchar_t* File;
        int32_t FileClass;
        int32_t PlaybackType;
        const wchar_t* MediaType;
        const wchar_t* ContentType;
    } Rows[] = {
        {L"/films/Film.MP4",          13, 18, L"Video", L"video/mp4" },
        {L"a.m4a",                    13, 0,  L"Audio", L"audio/mp4" },
        {L"e.flac",                   12, 0,  L"Audio", L"audio/flac"},
        {L"http://host/f.webm?x=.gz", 12, 18, L"Video", L"video/webm"},
        {L"g.jpg",                    0,  0,  L"Image", L"image/jpeg"},
        {L"folder.mp4/name",          0,  0,  L"",      L""          },
        {L"h.unknown",                0,  0,  L"",      L""          },
    };
    CFileTypes types;
    for (const wchar_t* fileType : {L"mp4", L"m4v", L"m4a", L"mov"})
        EXPECT_TRUE(types.IsFileTypeInClass(fileType, 13));
    for (const auto& row : Rows)
    {
        SCOPED_TRACE(testing::PrintToString(std::wstring(row.File)));
        const IZVFileTypeRecord& record = *types.GetFileInfo(row.File, 1, 1, 0, 0);
        EXPECT_EQ(record.GetInt(L"Playback Type", 0), row.PlaybackType);
        EXPECT_EQ(record.GetInt(L"Other", -7), -7);
        EXPECT_EQ(GetField(record, L"Media Type"), row.MediaType);
        EXPECT_EQ(GetField(record, L"Content Type"), row.ContentType);
        EXPECT_TRUE(GetField(record, L"Other").IsEmpty());
        for (const int32_t fileClass : {0, 12, 13})
            EXPECT_EQ(types.IsFileTypeInClass(ZVFilename(row.File).GetExtension(), fileClass),
                      fileClass != 0 && fileClass == row.FileClass);
    }
}
}
