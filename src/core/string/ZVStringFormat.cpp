#include "core/string/ZVStringFormat.h"

#include "core/string/ZVNumberText.h"
#include "core/string/ZVString.h"

#include <algorithm>
#include <bit>

namespace
{
constexpr int32_t NotGiven = -1;

// The room for one number. A number with more digits than fit ends in "?".
constexpr int32_t NumberRoom = 32;

constexpr wchar_t LargestFormattedCharacter = 0xffff;

struct Conversion
{
    uint32_t Flags = 0;
    int32_t Width = NotGiven;
    int32_t Precision = NotGiven;
};

// The conversions that write a whole number.
struct NumberConversion
{
    wchar_t Letter;
    bool IsSigned;
    int32_t Base;
    int32_t LeastDigits;
    uint32_t Flags;
};

constexpr NumberConversion NumberConversions[] = {
    {L'd', true,  10, 0,  0                              },
    {L'i', true,  10, 0,  0                              },
    {L'u', false, 10, 0,  0                              },
    {L'x', false, 16, 0,  ZVNumberText::LowerCaseDigits  },
    {L'X', false, 16, 0,  0                              },
    {L'h', false, 16, 8,  ZVNumberText::HexadecimalPrefix},
    {L'p', false, 16, 16, 0                              },
};

// A negative hexadecimal number printed with fewer digits than this was a 32-bit value before it was extended by its sign.
constexpr int32_t SignExtendedDigits = 9;
constexpr uint64_t LowHalf = 0xffffffff;

const NumberConversion* FindNumberConversion(wchar_t letter)
{
    for (const NumberConversion& conversion : NumberConversions)
        if (conversion.Letter == letter)
            return &conversion;
    return nullptr;
}

class FormatEngine
{
public:
    FormatEngine(ZVString& out, const ZVFormatRecord* const* arguments, int32_t count)
        : m_out(out), m_arguments(arguments), m_count(count)
    {
    }

    void Run(const wchar_t* format)
    {
        while (*format != L'\0')
        {
            const wchar_t* runEnd = wcschr(format, L'%');
            if (runEnd == nullptr)
            {
                m_out.Append(format);
                return;
            }
            m_out.Append(format, static_cast<int32_t>(runEnd - format));
            format = ReadConversion(runEnd + 1);
        }
    }

private:
    // Writes the conversion after a percent sign and returns where the format continues.
    const wchar_t* ReadConversion(const wchar_t* format)
    {
        Conversion conversion;
        if (*format == L' ')
        {
            conversion.Flags |= ZVNumberText::PadWithBlanks;
            ++format;
        }
        if (IsDigit(*format))
            conversion.Width = ReadCount(format);
        if (*format == L'.')
        {
            ++format;
            conversion.Precision = ReadCount(format);
        }
        format = SkipSize(format);
        if (*format == L'\0')
            return format;
        Write(*format, conversion);
        return format + 1;
    }

    // Integers always have 64 bits, whatever the size letters say.
    static const wchar_t* SkipSize(const wchar_t* format)
    {
        if (wcsncmp(format, L"I64", 3) == 0 && (format[3] == L'd' || format[3] == L'u'))
            return format + 3;
        if (format[0] == L'l' && format[1] != L'\0' && wcschr(L"dsux", format[1]) != nullptr)
            return format + 1;
        return format;
    }

    static bool IsDigit(wchar_t character) { return character >= L'0' && character <= L'9'; }

    static int32_t ReadCount(const wchar_t*& format)
    {
        int64_t value = 0;
        for (; IsDigit(*format); ++format)
            value = std::min<int64_t>(value * 10 + (*format - L'0'), INT32_MAX);
        return static_cast<int32_t>(value);
    }

    void Write(wchar_t letter, const Conversion& conversion)
    {
        if (const NumberConversion* number = FindNumberConversion(letter))
            WriteNumber(*number, conversion);
        else if (letter == L's' || letter == L'S')
            WriteText(conversion);
        else if (letter == L'c')
            WriteCharacter();
        else if (letter == L'f')
            WriteDouble(conversion);
        else
            m_out.AppendCharacter(letter);
    }

    const ZVFormatRecord* Next() { return m_index < m_count ? m_arguments[m_index++] : nullptr; }

    int64_t NextInteger()
    {
        const ZVFormatRecord* argument = Next();
        return argument != nullptr && argument->Code == ZVFormatCode::Integer ? argument->Value : 0;
    }

    void WriteNumber(const NumberConversion& number, const Conversion& conversion)
    {
        const int32_t asked = conversion.Width != NotGiven ? conversion.Width : conversion.Precision;
        const int32_t digits = std::max(asked, number.LeastDigits);
        const ZVNumberText::WholeForm form {digits, number.Base, number.Flags | conversion.Flags};
        const int64_t value = NextInteger();
        const int32_t length = m_out.GetLength();
        wchar_t* target = m_out.GetBuffer(length + NumberRoom) + length;
        int32_t written;
        if (number.IsSigned)
        {
            written = ZVNumberText::WriteSigned(target, NumberRoom, value, form);
        }
        else
        {
            uint64_t bits = static_cast<uint64_t>(value);
            if (number.Base == 16 && digits < SignExtendedDigits && bits >> 32 == LowHalf)
                bits &= LowHalf;
            written = ZVNumberText::WriteUnsigned(target, NumberRoom, bits, form);
        }
        m_out.ReleaseBuffer(length + written);
    }

    void WriteText(const Conversion& conversion)
    {
        const ZVFormatRecord* argument = Next();
        if (argument == nullptr)
            return;
        if (argument->Code == ZVFormatCode::String)
        {
            const ZVString* text = std::bit_cast<const ZVString*>(argument->Value);
            AppendCut(*text, text->GetLength(), conversion);
        }
        else if (argument->Code == ZVFormatCode::WideText)
        {
            const wchar_t* text = std::bit_cast<const wchar_t*>(argument->Value);
            AppendWide(text == nullptr ? L"(null)" : text, conversion);
        }
        else if (argument->Code == ZVFormatCode::UTF8Text)
        {
            const char* text = std::bit_cast<const char*>(argument->Value);
            if (text == nullptr)
                AppendWide(L"(null)", conversion);
            else
                AppendWide(ZVString::FromUTF8(text), conversion);
        }
    }

    void AppendWide(const wchar_t* text, const Conversion& conversion)
    {
        // Reads no further than the width, since a text that is cut need not be terminated.
        const size_t length = conversion.Width == NotGiven ? wcslen(text) : wcsnlen(text, static_cast<size_t>(conversion.Width));
        m_out.Append(text, static_cast<int32_t>(std::min<size_t>(length, INT32_MAX)));
    }

    void AppendCut(const wchar_t* text, int32_t length, const Conversion& conversion)
    {
        m_out.Append(text, conversion.Width == NotGiven ? length : std::min(length, conversion.Width));
    }

    void WriteCharacter()
    {
        const int64_t value = NextInteger();
        if (value >= 1 && value <= LargestFormattedCharacter)
            m_out.AppendCharacter(static_cast<wchar_t>(value));
    }

    void WriteDouble(const Conversion& conversion)
    {
        const ZVFormatRecord* argument = Next();
        const bool isDouble = argument != nullptr && argument->Code == ZVFormatCode::Double;
        const double value = isDouble ? std::bit_cast<double>(argument->Value) : 0.0;
        m_out.Append(ZVString::FromDouble(value, conversion.Precision, conversion.Precision != NotGiven, conversion.Width, 0));
    }

    ZVString& m_out;
    const ZVFormatRecord* const* m_arguments;
    int32_t m_count;
    int32_t m_index = 0;
};
}

void ZVAppendFormat(ZVString& out, const wchar_t* format, const ZVFormatRecord* const* arguments, int32_t count)
{
    if (format != nullptr)
        FormatEngine(out, arguments, count).Run(format);
}

// True if an argument is this string or a text inside its buffer, which an append may move.
bool ZVString::RefersTo(const ZVFormatRecord& argument) const
{
    if (argument.Code == ZVFormatCode::String)
        return std::bit_cast<const ZVString*>(argument.Value) == this;
    return argument.Code == ZVFormatCode::WideText && IsOwnText(std::bit_cast<const wchar_t*>(argument.Value));
}

void ZVString::FormatList(const wchar_t* format, const ZVFormatRecord* const* arguments, int32_t count)
{
    ZVString text;
    ZVAppendFormat(text, format, arguments, count);
    *this = text;
}

void ZVString::AppendFormatList(const wchar_t* format, const ZVFormatRecord* const* arguments, int32_t count)
{
    bool refersToThis = format != nullptr && IsOwnText(format);
    for (int32_t index = 0; index < count; ++index)
        refersToThis |= arguments[index] != nullptr && RefersTo(*arguments[index]);
    if (!refersToThis)
    {
        ZVAppendFormat(*this, format, arguments, count);
        return;
    }
    ZVString text;
    ZVAppendFormat(text, format, arguments, count);
    Append(text);
}
