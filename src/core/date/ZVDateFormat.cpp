#include "core/date/ZVDate.h"
#include "core/date/ZVDateLocale.h"
#include "core/date/ZVDatePrecision.h"
#include "core/date/ZVDateText.h"
#include "core/date/ZVSpanText.h"
#include "core/date/ZVTimeUnits.h"
#include "core/string/ZVNumberText.h"

#include <cmath>
#include <cwchar>

namespace
{
using ZVDateLocale::NameLength;

constexpr double SecondsPerDay = ZVTimeUnits::SecondsPerDay;

// The codes that the system library writes.
constexpr wchar_t Codes[] = L"AaBbcdHIjMmpSUWwXxYy";

// The date that is being written.
struct Subject
{
    double Value;
    ZVDatePrecision Precision;
    ZVDateFields Fields;
    int32_t Flags;
};

ZVString WriteTime(const Subject& subject, ZVDateSeconds seconds)
{
    return ZVDate::ToTimeOfDay(subject.Value, ZVDateLocale::GetClock(), seconds);
}

ZVString WriteBoth(const ZVString& date, const ZVString& time)
{
    return time.IsEmpty() ? date : date + L" " + time;
}

// In whole seconds; negative for a date in the future.
double GetElapsed(const Subject& subject)
{
    return std::floor((ZVDate::Now() - subject.Value) * SecondsPerDay + 0.5);
}

// The words of a pattern, with one function for each.
namespace Words
{
ZVString Year(const Subject& subject)
{
    return ZVString::FromInt(subject.Fields.GetCalendarYear());
}
ZVString Month(const Subject& subject)
{
    return ZVDateLocale::GetMonthName(subject.Fields, NameLength::Full, subject.Flags);
}
ZVString DayOrdinal(const Subject& subject)
{
    return ZVString::FromInt(subject.Fields.Day, 0, 10, ZVNumberText::OrdinalSuffix);
}
ZVString DayName(const Subject& subject)
{
    return ZVDateLocale::GetDayName(subject.Fields, NameLength::Full, subject.Flags);
}
ZVString Hour(const Subject& subject)
{
    return ZVString::FromInt(subject.Fields.Hour, 2);
}
ZVString Minute(const Subject& subject)
{
    return ZVString::FromInt(subject.Fields.Minute, 2);
}
ZVString Second(const Subject& subject)
{
    return ZVString::FromInt(subject.Fields.Second, 2);
}
ZVString FileName(const Subject& subject)
{
    return ZVDate::ToFileNameText(subject.Value);
}
ZVString Elapsed(const Subject& subject)
{
    return ZVDate::ElapsedText(GetElapsed(subject), ZVDate::SpanInWords);
}
ZVString ElapsedAgo(const Subject& subject)
{
    const double seconds = GetElapsed(subject);
    const ZVString span = ZVDate::ElapsedText(std::fabs(seconds), ZVDate::SpanInWords);
    return seconds < 0.0 ? L"in " + span : span + L" ago";
}
ZVString ShortDate(const Subject& subject)
{
    return ZVDate::ToShortDate(subject.Value, subject.Flags);
}
ZVString ShortTime(const Subject& subject)
{
    return WriteTime(subject, ZVDateSeconds::Never);
}
ZVString ShortDateTime(const Subject& subject)
{
    return WriteBoth(ShortDate(subject), ShortTime(subject));
}
ZVString Date(const Subject& subject)
{
    return subject.Precision == ZVDatePrecision::Year ? Year(subject) : ZVDateLocale::Write(L"%x", subject.Fields);
}
ZVString Time(const Subject& subject)
{
    return WriteTime(subject, ZVDateSeconds::Automatic);
}
ZVString DateTime(const Subject& subject)
{
    return WriteBoth(Date(subject), Time(subject));
}
ZVString Decade(const Subject& subject)
{
    return ZVDate::ToDecade(subject.Value);
}
}

// A word, and how much of the date must be known to write it.
struct Word
{
    const wchar_t* Name;
    ZVDatePrecision Least;
    ZVString (*Write)(const Subject& subject);
};

// A word that begins with another word comes before it.
constexpr Word WordTable[] = {
    {L"year",          ZVDatePrecision::Year, Words::Year         },
    {L"month",         ZVDatePrecision::Day,  Words::Month        },
    {L"dayordinal",    ZVDatePrecision::Day,  Words::DayOrdinal   },
    {L"dayname",       ZVDatePrecision::Day,  Words::DayName      },
    {L"hour",          ZVDatePrecision::Time, Words::Hour         },
    {L"minute",        ZVDatePrecision::Time, Words::Minute       },
    {L"second",        ZVDatePrecision::Time, Words::Second       },
    {L"filename",      ZVDatePrecision::Year, Words::FileName     },
    {L"elapsedago",    ZVDatePrecision::Year, Words::ElapsedAgo   },
    {L"elapsed",       ZVDatePrecision::Year, Words::Elapsed      },
    {L"shortdatetime", ZVDatePrecision::Year, Words::ShortDateTime},
    {L"shortdate",     ZVDatePrecision::Year, Words::ShortDate    },
    {L"shorttime",     ZVDatePrecision::Time, Words::ShortTime    },
    {L"datetime",      ZVDatePrecision::Year, Words::DateTime     },
    {L"date",          ZVDatePrecision::Year, Words::Date         },
    {L"time",          ZVDatePrecision::Time, Words::Time         },
    {L"decade",        ZVDatePrecision::Year, Words::Decade       },
};

const Word* FindWord(const wchar_t* text)
{
    for (const Word& word : WordTable)
        if (wcsncasecmp(text, word.Name, wcslen(word.Name)) == 0)
            return &word;
    return nullptr;
}

// Copies a quoted text and returns where the pattern continues. The closing quote may be missing.
const wchar_t* CopyQuoted(const wchar_t* pattern, ZVString& out)
{
    ++pattern;
    if (*pattern == L'"')
    {
        out += L'"';
        return pattern + 1;
    }
    while (*pattern != L'\0')
    {
        if (*pattern == L'"' && *++pattern != L'"')
            break;
        out += *pattern++;
    }
    return pattern;
}

ZVString WriteCode(wchar_t code, const Subject& subject)
{
    if (code == L'%')
        return L"%";
    if (code == L'B' || code == L'b')
        return ZVDateLocale::GetMonthName(subject.Fields, code == L'b' ? NameLength::Short : NameLength::Full, subject.Flags);
    if (code == L'A' || code == L'a')
        return ZVDateLocale::GetDayName(subject.Fields, code == L'a' ? NameLength::Short : NameLength::Full, subject.Flags);
    const wchar_t format[] = {L'%', code, L'\0'};
    return ZVDateLocale::Write(format, subject.Fields);
}

bool IsCode(wchar_t character)
{
    return character == L'%' || (character != L'\0' && wcschr(Codes, character) != nullptr);
}
}

ZVString ZVDate::Format(double value, const wchar_t* pattern, int32_t flags)
{
    ZVString out;
    const Subject subject {value, GetPrecision(value), ToFields(value), flags};
    if (!subject.Fields.Valid || pattern == nullptr)
        return out;
    const bool hasWords = (flags & CodesOnly) == 0;
    while (*pattern != L'\0')
    {
        const Word* word = nullptr;
        if (hasWords && *pattern == L'"')
        {
            pattern = CopyQuoted(pattern, out);
        }
        else if (hasWords && (word = FindWord(pattern)) != nullptr)
        {
            if (subject.Precision >= word->Least)
                out += word->Write(subject);
            pattern += wcslen(word->Name);
        }
        else if (*pattern == L'%' && IsCode(pattern[1]))
        {
            out += WriteCode(pattern[1], subject);
            pattern += 2;
        }
        else
        {
            out += *pattern++;
        }
    }
    return out;
}
