// The texts of HTTP: requests that callers describe, and the heads of answers.

#include "siblings/reader/ReaderFixture.h"
#include "siblings/reader/internet/CAnswer.h"
#include "siblings/reader/internet/CRequest.h"

#include <gmock/gmock.h>

namespace
{
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

CAnswer ReadAnswer(std::initializer_list<const char*> lines)
{
    CAnswer answer;
    for (const char* const line : lines)
        EXPECT_TRUE(answer.AddLine(line));
    return answer;
}

class CRequestTest : public ReaderTest
{
};

TEST_F(CRequestTest, OptionsAreTakenOutOfTheHeaders)
{
    CRequest request;
    request.SetHeaders(
        "HTTPREQUEST_TYPE: PUT|Content-Type: text/xml; charset=UTF-8\r\nAccept-Encoding: gzip\r\nContent-length: 7|"
        "RANGE_START:12|succeed_on_error: 1|USE_CACHE: 1|If-Modified-Since: Mon|Transfer-Encoding: chunked|Expect: x||Empty:");
    EXPECT_TRUE(request.IsValid());
    EXPECT_EQ(request.GetMethod(), CRequestMethod::Put);
    EXPECT_EQ(request.GetRangeStart(), 12);
    EXPECT_TRUE(request.SucceedsOnError());
    EXPECT_THAT(request.GetHeaders(false), ElementsAre("Content-Type: text/xml; charset=UTF-8", "Accept-Encoding: gzip",
                                                       "If-Modified-Since: Mon", "Empty;"));
    EXPECT_THAT(request.GetHeaders(true),
                ElementsAre("Content-Type: text/xml; charset=UTF-8", "Accept-Encoding: gzip", "Empty;"));

    request.SetHeaders("");
    EXPECT_EQ(request.GetMethod(), CRequestMethod::Get);
    EXPECT_EQ(request.GetRangeStart(), 0);
    EXPECT_FALSE(request.SucceedsOnError());
    EXPECT_THAT(request.GetHeaders(false), ElementsAre("Cache-Control: no-cache"));
    request.SetBody("x", 1);
    EXPECT_EQ(request.GetMethod(), CRequestMethod::Post);
    request.SetHeaders("HTTPREQUEST_TYPE: get|cache-control: max-age=0");
    EXPECT_EQ(request.GetMethod(), CRequestMethod::Get);
    EXPECT_THAT(request.GetHeaders(false), ElementsAre("cache-control: max-age=0"));
}

TEST_F(CRequestTest, WhatIsNoHeaderIsLeftOut)
{
    CRequest request;
    request.SetHeaders("no colon|Bad Name: secret1|: x|Bad\x01: x|Good: a\tb|Bad-Value: secret2\x01|Good2: b");
    EXPECT_THAT(request.GetHeaders(false), ElementsAre("Good: a\tb", "Good2: b", "Cache-Control: no-cache"));
    const std::string log = TakeLog();
    EXPECT_THAT(log, HasSubstr("Bad-Value"));
    EXPECT_THAT(log, Not(HasSubstr("secret")));
    for (const char* const headers : {"RANGE_START: -1", "RANGE_START: 1x", "RANGE_START:", "RANGE_START: 9223372036854775808",
                                      "HTTPREQUEST_TYPE: DELETE", "HTTPREQUEST_TYPE:"})
    {
        request.SetHeaders(headers);
        EXPECT_FALSE(request.IsValid()) << headers;
    }
}

TEST(CAnswer, KeepsTheLastAnswer)
{
    CAnswer answer = ReadAnswer({"HTTP/1.1 100 Continue\r\n", "\r\n", "HTTP/1.1 302 Found\r\n", "location:  /b \r\n", "\r\n"});
    EXPECT_FALSE(answer.IsFinal()) << "it will be followed";
    EXPECT_EQ(answer.GetValue("Location"), "/b");
    answer.AddLine("HTTP/1.0 404\r\n");
    answer.AddLine("Content-Length: 12\n");
    answer.AddLine("X:y\r\n");
    EXPECT_FALSE(answer.IsFinal()) << "its head has not ended";
    answer.AddLine("\n");
    EXPECT_TRUE(answer.IsFinal());
    answer.AddLine("Trailer: z\r\n");
    EXPECT_EQ(answer.GetStatus(), 404);
    EXPECT_EQ(answer.GetHeaders(), "Content-Length: 12\r\nX:y\r\n");
    EXPECT_EQ(answer.GetContentLength(), 12);

    CAnswer endless = ReadAnswer({"HTTP/1.1 200 OK\r\n"});
    const std::string line = std::string(1000, 'a') + "\r\n";
    int count = 0;
    while (endless.AddLine(line) && count < 10000)
        ++count;
    EXPECT_EQ(count, 1046) << "1048576 bytes less the status line, in lines of 1002";
}

TEST(CAnswer, ReadsSizesOnlyWhereTheyAreClear)
{
    const struct
    {
        const char* Header;
        int64_t Length;
        int64_t RangeStart;
        int64_t Total;
    } rows[] = {
        {"Content-Length: 0",                   0,         -1,  -1  },
        {"Content-Length: 9223372036854775807", INT64_MAX, -1,  -1  },
        {"Content-Length: 9223372036854775808", -1,        -1,  -1  },
        {"Content-Length: -1",                  -1,        -1,  -1  },
        {"Content-Length: 12 13",               -1,        -1,  -1  },
        {"Content-Range: bytes 100-199/5000",   -1,        100, 5000},
        {"content-range: Bytes 0-0/*",          -1,        0,   -1  },
        {"Content-Range: bytes */5000",         -1,        -1,  5000},
        {"Content-Range: items 1-2/3",          -1,        -1,  -1  },
        {"Content-Range: bytes",                -1,        -1,  -1  },
    };
    for (const auto& row : rows)
    {
        const CAnswer answer = ReadAnswer({"HTTP/1.1 200 OK\r\n", row.Header, "\r\n"});
        EXPECT_EQ(answer.GetContentLength(), row.Length) << row.Header;
        EXPECT_EQ(answer.GetRangeStart(), row.RangeStart) << row.Header;
        EXPECT_EQ(answer.GetRangeTotal(), row.Total) << row.Header;
    }
    EXPECT_EQ(ReadAnswer({"HTTP/1.1 200 OK\r\n", "Content-Length: 5", "Transfer-Encoding: chunked", "\r\n"}).GetContentLength(),
              -1);
    EXPECT_EQ(ReadAnswer({"HTTP/1.1 2000 OK\r\n"}).GetStatus(), 0);
    EXPECT_EQ(ReadAnswer({"HTTP/1.1\r\n"}).GetStatus(), 0);
}
}
