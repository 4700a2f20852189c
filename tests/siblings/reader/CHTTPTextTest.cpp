// The texts of HTTP: requests that callers describe, and the heads of answers.

#include "siblings/reader/ReaderFixture.h"
#include "siblings/reader/internet/CAnswer.h"
#include "siblings/reader/internet/CRequest.h"

#include <gmock/gmock.h>

namespace
{
using CRequestTest = ReaderTest;

TEST_F(CRequestTest, LeavesOutWhatIsNoHeader)
{
    CRequest request;
    request.SetHeaders("no colon|Bad Name: secret1|: x|Bad\x01: x|Good: a\tb|Bad-Value: secret2\x01|Expect: x|Empty:");
    EXPECT_THAT(request.GetHeaders(0), testing::ElementsAre("Good: a\tb", "Empty;", "Cache-Control: no-cache"));
    EXPECT_THAT(TakeLog(), testing::AllOf(testing::HasSubstr("Bad-Value"), testing::Not(testing::HasSubstr("secret"))));
}

TEST(CAnswer, ReadsOnlySizesThatAreClear)
{
    const std::tuple<const char*, int64_t, int64_t, int64_t> rows[] = {
        {"Content-Length: 9223372036854775807",             INT64_MAX, -1, -1  },
        {"Content-Length: 9223372036854775808",             -1,        -1, -1  },
        {"content-length: 5, 5 ,05",                        5,         -1, -1  },
        {"Transfer-Encoding: chunked\r\nContent-Length: 5", -1,        -1, -1  },
        {"content-range: Bytes 0-0/*",                      -1,        0,  -1  },
        {"Content-Range: bytes */5000",                     -1,        -1, 5000},
        {"Content-Range: items 1-2/3",                      -1,        -1, -1  },
    };
    for (const auto& [header, length, rangeStart, total] : rows)
    {
        CAnswer answer;
        for (const char* const line : {"HTTP/1.1 200 OK\r\n", header, "\r\n"})
            EXPECT_TRUE(answer.AddLine(line)) << header;
        EXPECT_EQ(answer.GetContentLength(), length) << header;
        EXPECT_EQ(answer.GetRangeStart(), rangeStart) << header;
        EXPECT_EQ(answer.GetRangeTotal(), total) << header;
    }
}
}
