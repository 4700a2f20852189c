#include "video/thumbnail/WriteThumbnailMetadata.h"

#include "core/property/ZVPropertyMap.h"
#include "process/WorkFolder.h"

#include <gtest/gtest.h>

namespace
{
TEST(WriteThumbnailMetadata, WritesWhatIsComplete)
{
    const WorkFolder folder;
    ZVPropertyMap metadata;
    for (const wchar_t* const key : {L"Width", L"Height", L"FPS"})
    {
        EXPECT_FALSE(WriteThumbnailMetadata(metadata, L"metadata.xml"));
        EXPECT_FALSE(std::filesystem::exists("metadata.xml"));
        metadata.SetInt(key, 24);
    }
    EXPECT_FALSE(WriteThumbnailMetadata(metadata, L""));
    EXPECT_TRUE(WriteThumbnailMetadata(metadata, L"metadata.xml"));
    ZVPropertyMap read;
    ASSERT_TRUE(read.FromXML(ZVString::FromUTF8(WorkFolder::Read("metadata.xml").c_str()), L"XMLPH", 1.0));
    EXPECT_TRUE(read.IsEqual(metadata));
}
}
