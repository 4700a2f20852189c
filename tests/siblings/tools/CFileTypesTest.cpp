#include "siblings/tools/filetypes/CFileTypes.h"

#include "system/filename/ZVFilename.h"
#include "system/library/ZVDllString.h"

#include <gtest/gtest.h>

namespace
{
struct TypeCase
{
    const wchar_t* File;
    int32_t FileClass;
    int32_t PlaybackType;
    const wchar_t* MediaType;
    const wchar_t* ContentType;
};

constexpr TypeCase TypeCases[] = {
    {L"/films/Film.MP4", 13, 18, L"Video", L"video/mp4"},
    {L"a.m4a", 13, 0, L"Audio", L"audio/mp4"},
    {L"b.mov", 13, 18, L"Video", L"video/quicktime"},
    {L"c.3gp", 13, 18, L"Video", L"video/3gpp"},
    {L"d.mkv", 12, 18, L"Video", L"video/x-matroska"},
    {L"e.flac", 12, 0, L"Audio", L"audio/flac"},
    {L"http://host/f.webm?x=.mp3", 12, 18, L"Video", L"video/webm"},
    {L"g.jpg", 0, 0, L"Image", L"image/jpeg"},
    {L"folder.mp4/name", 0, 0, L"", L""},
    {L"h.unknown", 0, 0, L"", L""},
    {L"", 0, 0, L"", L""},
};

ZVString GetField(const IZVFileTypeRecord& record, const wchar_t* name)
{
    ZVString text = L"before";
    ZVDllString view(text);
    record.GetString(name, view);
    return text;
}

TEST(CFileTypes, TellsWhatAnExtensionSays)
{
    CFileTypes types;
    for (const TypeCase& typeCase : TypeCases)
    {
        SCOPED_TRACE(testing::PrintToString(std::wstring(typeCase.File)));
        const IZVFileTypeRecord& record = *types.GetFileInfo(typeCase.File, 1, 1, 0, 0);
        EXPECT_EQ(record.GetInt(L"Playback Type", 0), typeCase.PlaybackType);
        EXPECT_EQ(record.GetInt(L"Other", -7), -7);
        EXPECT_EQ(GetField(record, L"Media Type"), typeCase.MediaType);
        EXPECT_EQ(GetField(record, L"Content Type"), typeCase.ContentType);
        EXPECT_TRUE(GetField(record, L"Other").IsEmpty());
        const ZVString extension = ZVFilename(typeCase.File).GetExtension();
        for (const int32_t fileClass : {0, 12, 13})
            EXPECT_EQ(types.IsFileTypeInClass(extension, fileClass), fileClass != 0 && fileClass == typeCase.FileClass) << fileClass;
    }
}
}
