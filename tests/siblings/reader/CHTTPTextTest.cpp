// The texts of HTTP: requests that callers describe, and the heads of answers.

#include "siblings/reader/ReaderFixture.h"
#include "siblings/reader/internet/CAnswer.h"
#include "siblings/reader/internet/CRequest.h"

#include <gmock/gmock.h>

namespace
{
using testing::ElementsAre;
using testing::HasSubstr;

CAnswer ReadAnswer(std::initializer_list<const char*> lines)
{
    CAnswer answer;
    for (const char* const line : lines)
        EXPECT_TRUE(answer.AddLine(line));
    return answer;
}

using CRequestTest = ReaderTest;

TEST_F(CRequestTest, OptionsAreTakenOutOfTheHeaders)
{
    CRequest request;
    request.SetHeaders(
        "HTTPREQUEST_TYPE: PUT|Content-Type: text/xml\r\nAccept-Encoding: gzip\r\nContent-length: 7|RANGE_START:12|"
        "succeed_on_error: 1|USE_CACHE: 1|If-Modified-Since: Mon|Transfer-Encoding: chunked|Expect: x||Empty:");
    EXPECT_TRUE(request.IsValid());
    EXPECT_EQ(request.GetRangeStart(), 12);
    EXPECT_THAT(request.GetHeaders(false),
                ElementsAre("Content-Type: text/xml", "Accept-Encoding: gzip", "If-Modified-Since: Mon", "Empty;"));
    EXPECT_THAT(request.GetHeaders(true), ElementsAre("Content-Type: text/xml", "Accept-Encoding: gzip", "Empty;"));

    request.SetHeaders("cache-control: max-age=0");
    EXPECT_THAT(request.GetHeaders(false), ElementsAre("cache-control: max-age=0"));
}

TEST_F(CRequestTest, WhatIsNoHeaderIsLeftOut)
{
    CRequest request;
    request.SetHeaders("no colon|Bad Name: secret1|: x|Bad\x01: x|Good: a\tb|Bad-Value: secret2\x01|Good2: b");
    EXPECT_THAT(request.GetHeaders(false), ElementsAre("Good: a\tb", "Good2: b", "Cache-Control: no-cache"));
    EXPECT_THAT(TakeLog(), testing::AllOf(HasSubstr("Bad-Value"), testing::Not(HasSubstr("secret"))));
    for (const char* const headers : {"RANGE_START: -1", "RANGE_START: 9223372036854775808", "HTTPREQUEST_TYPE:"})
    {
        request.SetHeaders(headers);
        EXPECT_FALSE(request.IsValid()) << headers;
    }
}

TEST(CAnswer, BoundsAHead)
{
    CAnswer endless = ReadAnswer({"HTTP/1.1 200 OK\r\n"});
    const std::string line = std::string(1000, 'a') + "\r\n";
    int count = 0;
    while (endless.AddLine(line) && count < 10000)
        ++count;
    EXPECT_EQ(count, 1046) << "1048576 bytes less the status line, in lines of 1002";
}

TEST(CAnswer, ReadsSizesOnlyWhereTheyAreClear)
{
    const std::tuple<const char*, int64_t, int64_t, int64_t> rows[] = {
        {"Content-Length: 9223372036854775807",             INT64_MAX, -1, -1  },
        {"Content-Length: 9223372036854775808",             -1,        -1, -1  },
        {"Content-Length: -1",                              -1,        -1, -1  },
        {"Transfer-Encoding: chunked\r\nContent-Length: 5", -1,        -1, -1  },
        {"content-range: Bytes 0-0/*",                      -1,        0,  -1  },
        {"Content-Range: bytes */5000",                     -1,        -1, 5000},
        {"Content-Range: items 1-2/3",                      -1,        -1, -1  },
    };
    for (const auto& [header, length, rangeStart, total] : rows)
    {
        const CAnswer answer = ReadAnswer({"HTTP/1.1 200 OK\r\n", header, "\r\n"});
        EXPECT_EQ(answer.GetContentLength(), length) << header;
        EXPECT_EQ(answer.GetRangeStart(), rangeStart) << header;
        EXPECT_EQ(answer.GetRangeTotal(), total) << header;
    }
    EXPECT_EQ(ReadAnswer({"HTTP/1.1 2000 OK\r\n"}).GetStatus(), 0);
}
}
