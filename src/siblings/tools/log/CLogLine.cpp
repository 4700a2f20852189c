#include "siblings/tools/log/CLogLine.h"

#include "core/string/ZVUTF8.h"
#include "system/library/ZVNativeBytes.h"

#include <chrono>
#include <ctime>
#include <unistd.h>

namespace
{
// Most lines fit into this, so they are built without growing.
constexpr int32_t UsualLength = 255;

constexpr wchar_t LineBreak = L'\n';

struct CodeRange
{
    uint32_t First;
    uint32_t Last;
    wchar_t Replacement;
};

constexpr CodeRange ReplacedCodes[] = {
    {0x00,    0x1f,       L' '               },
    {0x7f,    0x9f,       L' '               },
    {0x2028,  0x2029,     L' '               },
    {0xd800,  0xdfff,     ZVUTF8::Replacement},
    {0x10000, UINT32_MAX, ZVUTF8::Replacement},
};

wchar_t CleanCharacter(wchar_t character)
{
    // Almost all text is of these.
    if (character >= L' ' && character < 0x7f)
        return character;
    const uint32_t code = static_cast<uint32_t>(character);
    for (const CodeRange& range : ReplacedCodes)
        if (code >= range.First && code <= range.Last)
            return range.Replacement;
    return character;
}
}

CLogLine::CLogLine(const ZVLogSource& source, const wchar_t* format, const ZVFormatRecord* const* arguments,
                   int32_t argumentCount)
{
    m_line.GetBuffer(UsualLength);
    m_line.ReleaseBuffer(0);
    AppendTimeStamp();
    m_line.AppendFormat(L"\t%d\t%d\t%u\t", getpid(), gettid(), source.Category);

    const int32_t scopeStart = m_line.GetLength();
    m_line.Append(source.Name);
    CleanFrom(scopeStart);
    m_line.AppendCharacter(L'\t');

    m_textStart = m_line.GetLength();
    if (arguments == nullptr)
        m_line.Append(format);
    else
        m_line.AppendFormatList(format, arguments, argumentCount);
    CleanFrom(m_textStart);
    m_line.AppendCharacter(LineBreak);
}

// The calendar is worked out here because gmtime_r would read the file of the time zone with the first line of each process.
void CLogLine::AppendTimeStamp()
{
    using namespace std::chrono;
    timespec now {};
    clock_gettime(CLOCK_REALTIME, &now);
    const sys_seconds second {seconds(now.tv_sec)};
    const sys_days day = floor<days>(second);
    const year_month_day date(day);
    const hh_mm_ss time(second - day);
    m_line.AppendFormat(L"%4d-%2d-%2dT%2d:%2d:%2d.%3dZ", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                        static_cast<unsigned>(date.day()), time.hours().count(), time.minutes().count(), time.seconds().count(),
                        now.tv_nsec / 1'000'000);
}

void CLogLine::CleanFrom(int32_t start)
{
    ShowCarriedBytes(start);
    const int32_t length = m_line.GetLength();
    wchar_t* const characters = m_line.GetBuffer(length);
    for (int32_t index = start; index < length; ++index)
        characters[index] = CleanCharacter(characters[index]);
    m_line.ReleaseBuffer(length);
}

// The text of a path may carry bytes of its name. They are shown as the characters that the report shows for them.
void CLogLine::ShowCarriedBytes(int32_t start)
{
    for (int32_t index = start; index < m_line.GetLength(); ++index)
    {
        int32_t end = index;
        while (ZVNativeBytes::GetCarriedByte(m_line[end]) != 0)
            ++end;
        if (end == index)
            continue;
        const ZVString shown = ZVString::FromUTF8(ZVNativeBytes(m_line.Mid(index, end - index)));
        m_line.Replace(index, end, shown);
        index += shown.GetLength() - 1;
    }
}

int32_t CLogLine::GetTextLength() const
{
    return m_line.GetLength() - m_textStart - 1;
}

std::unique_ptr<char[]> CLogLine::GetBytes(size_t& size) const
{
    int32_t count = 0;
    std::unique_ptr<char[]> bytes(m_line.GetUTF8(&count));
    size = static_cast<size_t>(count);
    return bytes;
}
