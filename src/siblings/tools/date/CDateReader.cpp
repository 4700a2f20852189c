#include "siblings/tools/date/CDateReader.h"

#include "core/date/ZVCalendar.h"
#include "core/date/ZVDate.h"
#include "core/date/ZVDateNames.h"
#include "core/date/ZVTimeUnits.h"
#include "siblings/tools/date/CDateCursor.h"

namespace
{
using namespace ZVTimeUnits;

constexpr int32_t NotGiven = -1;

// A shorter number is not a FILETIME: 17 digits only reach 1917, and are more likely a time with milliseconds.
constexpr int32_t LeastFileTimeDigits = 18;
constexpr int32_t MostFileTimeDigits = 19;

constexpr int32_t MostWeeks = 53;
constexpr int32_t Thursday = 4;

// The numbers that were read by the codes of a pattern.
struct Fields
{
    int32_t Year = NotGiven;
    int32_t ShortYear = NotGiven;
    int32_t Month = NotGiven;
    int32_t Day = NotGiven;
    int32_t YearDay = NotGiven;  // from 1
    int32_t Week = NotGiven;     // from 1
    int32_t WeekDay = NotGiven;  // 1 is Monday
};

// A code of a pattern that reads a number.
struct NumberCode
{
    wchar_t Code;
    int32_t LeastDigits;
    int32_t MostDigits;
    int32_t Fields::*Field;
};

constexpr NumberCode NumberCodes[] = {
    {L'Y', 4, 4, &Fields::Year     },
    {L'y', 2, 2, &Fields::ShortYear},
    {L'm', 2, 2, &Fields::Month    },
    {L'N', 1, 2, &Fields::Month    },
    {L'd', 2, 2, &Fields::Day      },
    {L'e', 1, 2, &Fields::Day      },
    {L'j', 3, 3, &Fields::YearDay  },
    {L'V', 2, 2, &Fields::Week     },
    {L'u', 1, 1, &Fields::WeekDay  },
};

// What may follow a pattern.
enum class Tail
{
    Nothing,
    Time,  // after "T" or blanks, with its zone
    Zone,
};

// One form of a date. Besides the codes above, %b is the name of a month, %t a time with at least its minutes, and %z a zone. A
// blank stands for one or more blanks, any other character for itself.
struct Pattern
{
    const wchar_t* Text;
    Tail MayFollow;
};

constexpr Pattern Patterns[] = {
    {L"%Y",             Tail::Nothing},
    {L"%Y-%N",          Tail::Nothing},
    {L"%Y-%N-%e",       Tail::Time   },
    {L"%Y%m%d",         Tail::Time   },
    {L"%Y-%j",          Tail::Time   },
    {L"%Y%j",           Tail::Time   },
    {L"%Y-W%V-%u",      Tail::Time   },
    {L"%YW%V%u",        Tail::Time   },
    {L"%Y-W%V",         Tail::Nothing},
    {L"%YW%V",          Tail::Nothing},
    {L"%Y/%N",          Tail::Nothing},
    {L"%Y/%N/%e",       Tail::Time   },
    {L"%Y:%N",          Tail::Nothing},
    {L"%Y:%N:%e",       Tail::Time   },
    {L"%Y.%N",          Tail::Nothing},
    {L"%Y.%N.%e",       Tail::Time   },
    {L"%e.%N.%Y",       Tail::Time   },
    {L"%e %b %Y",       Tail::Time   },
    {L"%e-%b-%Y",       Tail::Time   },
    {L"%e-%b-%y",       Tail::Time   },
    {L"%e %b %y",       Tail::Time   },
    {L"%b %e, %Y",      Tail::Time   },
    {L"%b %e %Y",       Tail::Time   },
    {L"%b %Y",          Tail::Nothing},
    {L"%Y %b %e",       Tail::Time   },
    {L"%b %e %t %Y",    Tail::Zone   },
    {L"%b %e %t %z %Y", Tail::Nothing},
    {L"%Y%m%d%t",       Tail::Zone   },
};

// Zones with a name, in hours ahead of UTC.
struct NamedZone
{
    const wchar_t* Name;
    int32_t Hours;
};

constexpr NamedZone NamedZones[] = {
    {L"Z",   0 },
    {L"UTC", 0 },
    {L"GMT", 0 },
    {L"UT",  0 },
    {L"EST", -5},
    {L"EDT", -4},
    {L"CST", -6},
    {L"CDT", -5},
    {L"MST", -7},
    {L"MDT", -6},
    {L"PST", -8},
    {L"PDT", -7},
};

// ISO 8601 also allows this minus sign.
constexpr wchar_t MinusSign = L'\u2212';

// The parts of a time that are in the text.
enum class TimeParts
{
    Hours,
    Minutes,
    Seconds,
};

// Reads a text by one pattern.
class DateMatch
{
public:
    DateMatch(const CDateCursor& cursor, CParsedDate& date) : m_cursor(cursor), m_date(date) {}

    bool Read(const Pattern& pattern)
    {
        return ReadPattern(pattern.Text) && ReadTail(pattern.MayFollow) && IsAtEnd() && SetDay();
    }

private:
    bool ReadPattern(const wchar_t* pattern)
    {
        for (; *pattern != L'\0'; ++pattern)
        {
            const bool isRead = *pattern == L'%'   ? ReadCode(*++pattern)
                                : *pattern == L' ' ? m_cursor.SkipBlanks()
                                                   : m_cursor.Skip(*pattern);
            if (!isRead)
                return false;
        }
        return true;
    }

    bool ReadCode(wchar_t code)
    {
        switch (code)
        {
        case L'b':
            if (!m_cursor.ReadName(ZVDateNames::Months, m_fields.Month))
                return false;
            ++m_fields.Month;
            return true;
        case L't':
            return ReadTime(TimeParts::Minutes);
        case L'z':
            return ReadZone();
        default:
            break;
        }
        for (const NumberCode& number : NumberCodes)
            if (number.Code == code)
                return m_cursor.ReadNumber(number.LeastDigits, number.MostDigits, m_fields.*number.Field);
        return false;
    }

    bool ReadTail(Tail tail)
    {
        const bool hasBlanks = m_cursor.SkipBlanks();
        if (tail == Tail::Nothing || m_cursor.IsAtEnd())
            return true;
        if (tail == Tail::Time && ((!m_cursor.Skip(L'T') && !hasBlanks) || !ReadTime(TimeParts::Hours)))
            return false;
        return IsAtEnd() || ReadZone();
    }

    bool ReadTime(TimeParts least)
    {
        int32_t hour = 0;
        int32_t minute = 0;
        int32_t second = 0;
        if (!m_cursor.ReadNumber(2, 2, hour) && !m_cursor.ReadNumber(1, 1, hour))
            return false;
        TimeParts parts = TimeParts::Hours;
        if (m_cursor.Skip(L':'))
        {
            if (!m_cursor.ReadNumber(2, 2, minute))
                return false;
            parts = TimeParts::Minutes;
            if (m_cursor.Skip(L':'))
            {
                if (!m_cursor.ReadNumber(2, 2, second))
                    return false;
                parts = TimeParts::Seconds;
            }
        }
        else if (m_cursor.ReadNumber(2, 2, minute))
        {
            parts = m_cursor.ReadNumber(2, 2, second) ? TimeParts::Seconds : TimeParts::Minutes;
        }
        return parts >= least && SetTime(hour, minute, second, parts);
    }

    // The decimals belong to the smallest part. Only the last minute of an hour can have a leap second.
    bool SetTime(int32_t hour, int32_t minute, int32_t second, TimeParts parts)
    {
        constexpr int32_t PartLengths[] = {SecondsPerHour, SecondsPerMinute, 1};
        const double decimals = m_cursor.ReadDecimals() * PartLengths[static_cast<int>(parts)];
        if (minute >= SecondsPerMinute || second > SecondsPerMinute ||
            (second == SecondsPerMinute && minute != SecondsPerMinute - 1))
            return false;
        m_date.SecondOfDay = hour * SecondsPerHour + minute * SecondsPerMinute + second + decimals;
        m_date.Precision = ZVDatePrecision::Time;
        return hour < HoursPerDay || m_date.SecondOfDay == HoursPerDay * SecondsPerHour;
    }

    bool ReadZone()
    {
        m_date.HasZone = true;
        for (const NamedZone& zone : NamedZones)
            if (m_cursor.SkipWord(zone.Name))
            {
                m_date.ZoneSeconds = zone.Hours * SecondsPerHour;
                return true;
            }
        const bool isBehind = m_cursor.Skip(L'-') || m_cursor.Skip(MinusSign);
        int32_t hours = 0;
        if ((!isBehind && !m_cursor.Skip(L'+')) || !m_cursor.ReadNumber(2, 2, hours))
            return false;
        int32_t minutes = 0;
        if ((m_cursor.Skip(L':') || m_cursor.IsAtDigit()) && !m_cursor.ReadNumber(2, 2, minutes))
            return false;
        const int32_t seconds = hours * SecondsPerHour + minutes * SecondsPerMinute;
        m_date.ZoneSeconds = isBehind ? -seconds : seconds;
        return hours < HoursPerDay && minutes < SecondsPerMinute;
    }

    bool IsAtEnd()
    {
        m_cursor.SkipBlanks();
        return m_cursor.IsAtEnd();
    }

    bool SetDay()
    {
        if (m_fields.ShortYear != NotGiven)
            m_fields.Year = ZVDate::YearOf(ZVDate::FromFields(m_fields.ShortYear == 0 ? 2000 : m_fields.ShortYear, 1, 1));
        if (m_fields.Year < ZVCalendar::FirstYear || !ForgetZeros())
            return false;
        if (m_date.Precision == ZVDatePrecision::None)
        {
            const bool isYear = m_fields.Month == NotGiven && m_fields.YearDay == NotGiven && m_fields.Week == NotGiven;
            m_date.Precision = isYear ? ZVDatePrecision::Year : ZVDatePrecision::Day;
        }
        if (m_fields.YearDay != NotGiven)
            return SetYearDay();
        if (m_fields.Week != NotGiven)
            return SetWeekDay();
        return SetMonthDay();
    }

    // Tags write 00 for a month or a day that nobody knew. There is no day of an unknown month, and no time of an unknown day.
    bool ForgetZeros()
    {
        if (m_fields.Day == 0)
        {
            m_fields.Day = NotGiven;
            if (m_date.Precision == ZVDatePrecision::Time)
                return false;
        }
        if (m_fields.Month == 0)
        {
            m_fields.Month = NotGiven;
            return m_fields.Day == NotGiven;
        }
        return true;
    }

    bool SetYearDay()
    {
        m_date.DayNumber = ZVCalendar::DayNumber(m_fields.Year, 1, 1) + m_fields.YearDay - 1;
        return m_fields.YearDay >= 1 && m_fields.YearDay <= ZVCalendar::DaysInYear(m_fields.Year);
    }

    // A week belongs to the year of its Thursday. A week alone is its Monday.
    bool SetWeekDay()
    {
        const int32_t weekDay = m_fields.WeekDay == NotGiven ? 1 : m_fields.WeekDay;
        if (m_fields.Week < 1 || m_fields.Week > MostWeeks || weekDay < 1 || weekDay > ZVCalendar::DaysPerWeek)
            return false;
        // January 4 is always in the first week.
        const int64_t january4 = ZVCalendar::DayNumber(m_fields.Year, 1, 4);
        const int32_t daysAfterMonday = (ZVCalendar::DayOfWeek(january4) + ZVCalendar::DaysPerWeek - 2) % ZVCalendar::DaysPerWeek;
        const int64_t monday = january4 - daysAfterMonday + ZVCalendar::DaysPerWeek * (m_fields.Week - 1);
        m_date.DayNumber = monday + weekDay - 1;
        return ZVCalendar::FromDayNumber(monday + Thursday - 1).Year == m_fields.Year;
    }

    bool SetMonthDay()
    {
        const int32_t month = m_fields.Month == NotGiven ? 1 : m_fields.Month;
        const int32_t day = m_fields.Day == NotGiven ? 1 : m_fields.Day;
        if (month < 1 || month > ZVCalendar::MonthsPerYear || day < 1 || day > ZVCalendar::DaysInMonth(m_fields.Year, month))
            return false;
        m_date.DayNumber = ZVCalendar::DayNumber(m_fields.Year, month, day);
        return true;
    }

    CDateCursor m_cursor;
    CParsedDate& m_date;
    Fields m_fields;
};

// Reads a FILETIME, the number of 100 nanoseconds since 1601 in UTC. The text must have nothing but its digits.
bool ReadFileTime(CDateCursor cursor, CParsedDate& date)
{
    constexpr uint64_t UnitsPerSecond = 10'000'000;
    constexpr uint64_t UnitsPerDay = SecondsPerDay * UnitsPerSecond;
    uint64_t count = 0;
    int32_t digits = 0;
    for (int32_t digit = 0; digits <= MostFileTimeDigits && cursor.ReadNumber(1, 1, digit); ++digits)
        count = count * 10 + static_cast<uint64_t>(digit);
    cursor.SkipBlanks();
    if (digits < LeastFileTimeDigits || digits > MostFileTimeDigits || !cursor.IsAtEnd())
        return false;
    date.DayNumber = ZVCalendar::DayNumber(1601, 1, 1) + static_cast<int64_t>(count / UnitsPerDay);
    date.SecondOfDay = static_cast<double>(count % UnitsPerDay) / static_cast<double>(UnitsPerSecond);
    date.HasZone = true;
    date.Precision = ZVDatePrecision::Time;
    return true;
}

// Skips the day of the week before a date, if there is one, and a comma or a full stop after it.
void SkipDayName(CDateCursor& cursor)
{
    int32_t day = 0;
    if (!cursor.ReadName(ZVDateNames::Days, day))
        return;
    if (!cursor.Skip(L','))
        cursor.Skip(L'.');
    cursor.SkipBlanks();
}
}

bool CDateReader::Read(const wchar_t* text, CParsedDate& date)
{
    CDateCursor cursor(text);
    cursor.SkipBlanks();
    date = CParsedDate();
    if (ReadFileTime(cursor, date))
        return true;
    SkipDayName(cursor);
    for (const Pattern& pattern : Patterns)
    {
        date = CParsedDate();
        if (DateMatch(cursor, date).Read(pattern))
            return true;
    }
    date = CParsedDate();
    return false;
}
