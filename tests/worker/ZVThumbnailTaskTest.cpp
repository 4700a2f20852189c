#include "worker/ZVThumbnailTask.h"

#include "core/string/ZVString.h"

#include <gtest/gtest.h>

namespace
{
TEST(ZVThumbnailTask, ReadsTheTime)
{
    struct Row
    {
        const wchar_t* Parameter;
        int32_t Time;
    };
    const Row rows[] = {
        {L"",                                  5000 },
        {L"abc",                               5000 },
        {L"60s",                               5000 },
        {L"60000",                             60000},
        {L"0",                                 0    },
        {L"-3000",                             -3000},
        {L"3-000",                             5000 },
        {L"12.5",                              12   },
        {L"00000000000000000000000000000120",  120  },
        {L"000000000000000000000000000000120", 5000 },
    };
    for (const Row& row : rows)
        EXPECT_EQ(GetThumbnailTime(row.Parameter), row.Time) << ZVString(row.Parameter).GetLength() << " characters";
}
}
