#include "siblings/tools/date/CDateServices.h"

#include "core/date/ZVDate.h"
#include "core/date/ZVDatePrecision.h"
#include "core/date/ZVDateText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>

namespace
{
// A date as ISO text, which shows how much of it is known.
ZVString Read(const wchar_t* text, int32_t flags = 0)
{
    const double value = CDateServices().Parse(text, flags);
    return value == 0.0 ? ZVString(L"none") : ZVDate::ToISO(value, false, true);
}

TEST(CDateServices, ReadsWhatTagsAndServersHold)
{
    // clang-format off
    constexpr std::pair<const wchar_t*, const wchar_t*> Rows[] = {
        // How much is known
        {L" 2024\r\n", L"2024"}, {L"0001", L"0001"}, {L"2024-01", L"2024-01-01"},
        {L"2024-01-01T00:00:00.7Z", L"2024-01-01T00:00:00"},
        {L"1899-12-30", L"1899-12-30"}, {L"1899-12-30T00:00", L"1899-12-30T00:00:00"}, {L"2024-02-29", L"2024-02-29"},
        {L"9999-12-31T23:59:59", L"9999-12-31T23:59:59"},
        {L"2004-05-00", L"2004-05-01"}, {L"2004-00-00", L"2004"}, {L"2004-00", L"2004"}, {L"00.00.2004", L"2004"},
        // ISO 8601
        {L"20240506", L"2024-05-06"}, {L"20240506T070809Z", L"2024-05-06T07:08:09"}, {L"2024-05-06T07", L"2024-05-06T07:00:00"},
        {L"2024-05-06 07:08:09,5", L"2024-05-06T07:08:09"}, {L"2024-05-06t07.5z", L"2024-05-06T07:30:00"},
        {L"2024-05-06T07:08.25", L"2024-05-06T07:08:15"}, {L"2024-05-06T07:08:09+0200", L"2024-05-06T05:08:09"},
        {L"2024-05-06T23:08:09\u221203", L"2024-05-07T02:08:09"}, {L"2024-05-06T02:00:00+02:00", L"2024-05-06T00:00:00"},
        {L"2024-02-28T24:00", L"2024-02-29T00:00:00"}, {L"2016-12-31T23:59:60Z", L"2017-01-01T00:00:00"},
        {L"2024-127", L"2024-05-06"}, {L"2024366", L"2024-12-31"}, {L"2024W197T07", L"2024-05-12T07:00:00"},
        {L"2024-W01", L"2024-01-01"}, {L"2020-W53-7", L"2021-01-03"}, {L"2026-W01-1", L"2025-12-29"},
        // Tags and EXIF
        {L"2024-5-6", L"2024-05-06"}, {L"2024/05/06", L"2024-05-06"}, {L"2024:05:06 07:08:09.25+02:00", L"2024-05-06T05:08:09"},
        {L"2024.05.06 7:08", L"2024-05-06T07:08:00"}, {L"6.5.2024", L"2024-05-06"}, {L"202405060708", L"2024-05-06T07:08:00"},
        {L"\uff12\uff10\uff12\uff14", L"2024"}, {L"133594528890000000", L"2024-05-06T07:08:09"},
        // HTTP, mail and RIFF
        {L"Sunday, 06-Nov-94 08:49:37 GMT", L"1994-11-06T08:49:37"}, {L"6 May 00", L"2000-05-06"},
        {L"Mon May  6 07:08:09 EDT 2024\n", L"2024-05-06T11:08:09"}, {L"mon, 6 may 2024 07:08 -0700", L"2024-05-06T14:08:00"},
        {L"6 September 2024", L"2024-09-06"}, {L"Sept 6, 2024", L"2024-09-06"}, {L"May 2024", L"2024-05-01"},
    };
    // clang-format on
    for (const auto& [text, date] : Rows)
        EXPECT_STREQ(Read(text), date) << testing::PrintToString(text);
}

TEST(CDateServices, RefusesWhatIsNoDate)
{
    // clang-format off
    constexpr const wchar_t* Texts[] = {
        L"", L"0", L"0000", L"0000-00-00", L"24", L"20245", L"2024-", L"2024-13", L"2024-00-10", L"20240506070809123",
        L"2024-05-00T07:08", L"2023-02-29", L"2023-366", L"2024-000", L"2024-W00-1", L"2023-W53-1", L"2024-W19-8", L"2024-05-06T",
        L"2024-05-06T24:00:01", L"2024-05-06T07:60", L"2024-05-06T07:8", L"2024-05-06T07:08:09+2", L"2024-05-06T07:08+24:00",
        L"2024-05-06T07:08 XYZ", L"2024-05-06x", L"2024T07:08", L"2024 (live)", L"-2024-05-06", L"6 Foo 2024", L"Monday",
        L"32 May 2024", L"1715000000", L"99999999999999999999999", L"0001-01-01T00:00:00+02:00", L"9999-12-31T23:00:00-02:00",
    };
    // clang-format on
    for (const wchar_t* text : Texts)
        EXPECT_STREQ(Read(text), L"none") << testing::PrintToString(text);
}

TEST(CDateServices, ReturnsATimeWithAZoneAsLocalTimeWhenAsked)
{
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    constexpr int32_t Local = IZVDateServices::LocalTime;
    EXPECT_STREQ(Read(L"2024-05-06T07:08:09Z", Local), L"2024-05-06T09:08:09");
    EXPECT_STREQ(Read(L"2024-01-06T07:08:09+01:00", Local), L"2024-01-06T07:08:09");
    EXPECT_STREQ(Read(L"2023-12-31T23:00:00Z", Local), L"2024-01-01T00:00:00");
    for (const wchar_t* text : {L"2024", L"2024-05-06", L"2024-05-06T07:08:09"})
        EXPECT_STREQ(Read(text, Local), text) << "a date without a zone is not converted";
    setenv("TZ", "UTC0", 1);
}

TEST(CDateServices, KeepsDecimalsAndTakesTimeInProportionToTheText)
{
    CDateServices services;
    const double whole = services.Parse(L"2024-05-06T07:08:09", 0);
    const std::wstring digits(1'000'000, L'3');
    const std::wstring blanks(1'000'000, L' ');
    EXPECT_NEAR((services.Parse((L"2024-05-06T07:08:09." + digits).c_str(), 0) - whole) * 86400.0, 1.0 / 3.0, 1e-5);
    EXPECT_EQ(services.Parse((blanks + L"2024-05-06" + blanks + L"07:08:09" + blanks).c_str(), 0), whole);
}
}
