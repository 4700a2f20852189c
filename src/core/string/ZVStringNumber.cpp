// ZVString: numbers from text and to text.

#include "core/string/ZVCharacter.h"
#include "core/string/ZVDigits.h"
#include "core/string/ZVNumberText.h"
#include "core/string/ZVString.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <type_traits>

namespace
{
constexpr wchar_t FigureDash = 0x2012;

// Numbers are written into a buffer of the first size; decimal ones use no more of it than the second.
constexpr int32_t NumberBufferSize = 256;
constexpr int32_t DoubleRoom = 191;

// The sign and the digits of a text, limited to what the type can hold.
template <class Integer>
Integer ParseInteger(const wchar_t* text)
{
    using Unsigned = std::make_unsigned_t<Integer>;
    constexpr Integer Largest = std::numeric_limits<Integer>::max();
    constexpr Integer BeforeLast = Largest / 10;
    constexpr int LastDigit = static_cast<int>(Largest % 10);

    while (ZVCharacter::IsSpace(*text))
        ++text;
    const bool isNegative = *text == L'-';
    if (isNegative || *text == L'+')
        ++text;
    Integer value = 0;
    for (; ZVDigits::DecimalValue(*text) != ZVDigits::NotADigit; ++text)
    {
        const int digit = ZVDigits::DecimalValue(*text);
        if (value > BeforeLast || (value == BeforeLast && digit > LastDigit))
        {
            value = Largest;
            break;
        }
        value = static_cast<Integer>(value * 10 + static_cast<Integer>(digit));
    }
    return isNegative ? static_cast<Integer>(Unsigned {0} - static_cast<Unsigned>(value)) : value;
}

// A number times a power of ten. The power alone may be out of a double's range even where the result is not.
double ScaledByTen(double number, double exponent)
{
    constexpr double LargestPower = 1e308;
    constexpr double LargestExponent = 308.0;
    if (number == 0.0 || exponent >= 0.0)
        return number == 0.0 ? 0.0 : number * std::pow(10.0, exponent);
    if (exponent < -LargestExponent)
    {
        number /= LargestPower;
        exponent += LargestExponent;
    }
    return number / std::pow(10.0, -exponent);
}

// The digits of one side of a decimal point, as far as 64 bits hold them.
class DigitRun
{
public:
    void Add(int digit)
    {
        if (m_value > (UINT64_MAX - 9) / 10)
        {
            ++m_dropped;
            return;
        }
        m_value = m_value * 10 + static_cast<uint64_t>(digit);
        ++m_kept;
    }

    // The value of the digits, before the point or after it, times a power of ten.
    double AsWhole(double exponent) const { return ScaledByTen(static_cast<double>(m_value), m_dropped + exponent); }
    double AsFraction(double exponent) const { return ScaledByTen(static_cast<double>(m_value), exponent - m_kept); }

private:
    uint64_t m_value = 0;
    int32_t m_kept = 0;
    int32_t m_dropped = 0;
};

// What a decimal number may hold besides digits.
struct DecimalRules
{
    bool AnyDecimalPoint;
    bool AllowExponent;
};

double ParseDouble(std::wstring_view text, DecimalRules rules, size_t& consumed)
{
    size_t position = 0;
    while (position < text.size() && (text[position] == L' ' || text[position] == L'+'))
        ++position;
    const bool isNegative = position < text.size() && (text[position] == L'-' || text[position] == FigureDash);
    if (isNegative)
        ++position;

    DigitRun whole;
    DigitRun fraction;
    bool hasPoint = false;
    double exponent = 0.0;
    for (; position < text.size(); ++position)
    {
        const wchar_t character = text[position];
        const int digit = ZVDigits::DecimalValue(character);
        if (digit != ZVDigits::NotADigit)
        {
            (hasPoint ? fraction : whole).Add(digit);
        }
        else if ((character == L',' || character == L'.') && !hasPoint)
        {
            hasPoint = rules.AnyDecimalPoint || character == ZVNumberText::GetDecimalPoint();
        }
        else if ((character == L'e' || character == L'E') && rules.AllowExponent)
        {
            size_t exponentLength = 0;
            exponent = ParseDouble(text.substr(position + 1), {rules.AnyDecimalPoint, false}, exponentLength);
            position += 1 + exponentLength;
            break;
        }
        else
        {
            break;
        }
    }
    consumed = position;
    const double value = whole.AsWhole(exponent) + fraction.AsFraction(exponent);
    return isNegative ? -value : value;
}
}

int32_t ZVString::ToInt() const
{
    return ParseInteger<int32_t>(m_text);
}

uint32_t ZVString::ToUInt() const
{
    return ParseInteger<uint32_t>(m_text);
}

int64_t ZVString::ToInt64() const
{
    return ParseInteger<int64_t>(m_text);
}

uint64_t ZVString::ToUInt64() const
{
    return ParseInteger<uint64_t>(m_text);
}

uint64_t ZVString::ToUInt64FromHex() const
{
    const wchar_t* text = m_text;
    while (ZVCharacter::IsSpace(*text))
        ++text;
    if (text[0] == L'0' && (text[1] | 0x20) == L'x')
        text += 2;
    uint64_t value = 0;
    for (; ZVDigits::HexadecimalValue(*text) != ZVDigits::NotADigit; ++text)
    {
        if (value > UINT64_MAX >> 4)
            return UINT64_MAX;
        value = value << 4 | static_cast<uint64_t>(ZVDigits::HexadecimalValue(*text));
    }
    return value;
}

double ZVString::ToDouble(int32_t* consumed, bool anyDecimalPoint, int32_t maxLength, bool allowExponent) const
{
    size_t read = 0;
    const std::wstring_view text = View().substr(0, static_cast<size_t>(std::max(maxLength, 0)));
    const double value = ParseDouble(text, {anyDecimalPoint, allowExponent}, read);
    if (consumed != nullptr)
        *consumed = static_cast<int32_t>(read);
    return value;
}

bool ZVString::ToBool() const
{
    if (IsEmpty())
        return false;
    if (ZVCharacter::IsDigit(m_text[0]))
        return GetLength() == 1 ? m_text[0] != L'0' : ToDouble() != 0.0;
    return IsEqual(L"true", false) || IsEqual(L"yes", false);
}

ZVString ZVString::FromInt(int64_t value, int32_t minimumDigits, int32_t base, uint32_t flags)
{
    wchar_t buffer[NumberBufferSize];
    return ZVString(buffer, ZVNumberText::WriteSigned(buffer, NumberBufferSize, value, {minimumDigits, base, flags}));
}

ZVString ZVString::FromUInt(uint64_t value, int32_t minimumDigits, int32_t base, uint32_t flags)
{
    wchar_t buffer[NumberBufferSize];
    return ZVString(buffer, ZVNumberText::WriteUnsigned(buffer, NumberBufferSize, value, {minimumDigits, base, flags}));
}

ZVString ZVString::FromDouble(double value, int32_t precision, bool fixedPrecision, int32_t minimumDigits, uint32_t flags)
{
    wchar_t buffer[NumberBufferSize];
    return ZVString(buffer,
                    ZVNumberText::WriteDouble(buffer, DoubleRoom, value, {precision, fixedPrecision, minimumDigits, flags}));
}

ZVString ZVString::ToHexString(uint64_t value)
{
    return ZVFormat(L"0x%X", value);
}

ZVString ZVString::FromPointer(const void* pointer)
{
    return ZVFormat(L"%p", pointer);
}

ZVString ZVString::FromIPAddress(uint32_t address)
{
    return ZVFormat(L"%d.%d.%d.%d", address >> 24, address >> 16 & 0xff, address >> 8 & 0xff, address & 0xff);
}
