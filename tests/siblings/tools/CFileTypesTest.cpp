#include "siblings/tools/filetypes/CFileTypes.h"

#include "system/filename/ZVFilename.h"
#include "system/library/ZVDllString.h"

#include <gtest/gtest.h>

namespace
{
// The class, the media type and the content type, and whether it is played as a film.
ZVString Describe(const wchar_t* file)
{
    CFileTypes types;
    const IZVFileTypeRecord& record = *types.GetFileInfo(file, 1, 1, 0, 0);
    const auto getField = [&record](const wchar_t* name)
    {
        ZVString text = L"before";
        ZVDllString view(text);
        record.GetString(name, view);
        return text;
    };
    EXPECT_EQ(record.GetInt(L"Other", -7), -7);
    EXPECT_EQ(getField(L"Other"), L"");
    const ZVString extension = ZVFilename(file).GetExtension();
    EXPECT_FALSE(types.IsFileTypeInClass(extension, 0));
    return ZVFormat(L"%d%d %d %s %s", types.IsFileTypeInClass(extension, 12), types.IsFileTypeInClass(extension, 13),
                    record.GetInt(L"Playback Type", 0), getField(L"Media Type"), getField(L"Content Type"));
}

TEST(CFileTypes, TellsWhatAnExtensionSays)
{
    EXPECT_STREQ(Describe(L"/films/Film.MP4"), L"01 18 Video video/mp4");
    EXPECT_STREQ(Describe(L"a.m4a"), L"01 0 Audio audio/mp4");
    EXPECT_STREQ(Describe(L"http://host/f.webm?x=.gz"), L"10 18 Video video/webm");
    EXPECT_STREQ(Describe(L"g.jpg"), L"00 0 Image image/jpeg");
    EXPECT_STREQ(Describe(L"folder.mp4/name"), L"00 0  ");
    for (const wchar_t* fileType : {L"m4v", L"mov"})
        EXPECT_TRUE(CFileTypes().IsFileTypeInClass(fileType, 13));
}
}
