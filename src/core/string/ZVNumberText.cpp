#include "core/string/ZVNumberText.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cwchar>
#include <iterator>

namespace
{
constexpr int32_t MinimumRoom = 8;
constexpr int32_t MaximumSignedBase = 36;
constexpr int32_t MaximumUnsignedBase = 16;
constexpr int32_t MaximumDigits = 64;  // of 64 bits in base 2
constexpr int32_t MaximumPrecision = 16;
constexpr int32_t GroupSize = 3;

constexpr double LargestWhole = 9223372036854774784.0;  // the largest double below 2^63

constexpr wchar_t UpperDigits[] = L"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr wchar_t LowerDigits[] = L"0123456789abcdefghijklmnopqrstuvwxyz";

// Indexed by the last digit if that is 1 to 3; the first is for all others.
constexpr const wchar_t* OrdinalSuffixes[] = {L"th", L"st", L"nd", L"rd"};

// Writes characters until there is no room left; then the last one becomes "?" and nothing more is written.
class NumberWriter
{
public:
    NumberWriter(wchar_t* target, int32_t room) : m_target(target), m_room(room) {}

    void Put(wchar_t character)
    {
        if (m_isCut)
            return;
        if (m_count < m_room)
        {
            m_target[m_count++] = character;
            return;
        }
        m_target[m_room - 1] = L'?';
        m_isCut = true;
    }

    int32_t GetCount() const { return m_count; }
    int32_t GetRoomLeft() const { return m_room - m_count; }
    wchar_t GetFromEnd(int32_t back) const { return back <= m_count ? m_target[m_count - back] : L'\0'; }

private:
    wchar_t* m_target;
    int32_t m_room;
    int32_t m_count = 0;
    bool m_isCut = false;
};

void WriteOrdinalSuffix(NumberWriter& writer)
{
    if (writer.GetRoomLeft() < 2)
        return;
    const wchar_t last = writer.GetFromEnd(1);
    const bool isTeen = writer.GetFromEnd(2) == L'1';
    const wchar_t* suffix = OrdinalSuffixes[!isTeen && last >= L'1' && last <= L'3' ? last - L'0' : 0];
    writer.Put(suffix[0]);
    writer.Put(suffix[1]);
}

// What stands before the digits of a whole number.
void WriteSign(NumberWriter& writer, int64_t sign, const ZVNumberText::WholeForm& form)
{
    if (sign < 0)
        writer.Put(L'-');
    else if ((form.Flags & ZVNumberText::PlusSign) != 0 && sign > 0)
        writer.Put(L'+');
    if ((form.Flags & ZVNumberText::HexadecimalPrefix) != 0 && form.Base == 16)
    {
        writer.Put(L'0');
        writer.Put(L'x');
    }
}

// Writes the digits of a number from the lowest place up and returns how many there are.
int32_t SplitDigits(uint64_t magnitude, uint64_t base, const wchar_t* digitNames, wchar_t* digits)
{
    int32_t count = 0;
    do
    {
        digits[count++] = digitNames[magnitude % base];
        magnitude /= base;
    } while (magnitude != 0);
    return count;
}

void WriteDigits(NumberWriter& writer, uint64_t magnitude, const ZVNumberText::WholeForm& form)
{
    const wchar_t* digitNames = (form.Flags & ZVNumberText::LowerCaseDigits) != 0 ? LowerDigits : UpperDigits;
    wchar_t digits[MaximumDigits];  // from the lowest place up
    // Division by a constant is much faster, and nearly all numbers are decimal.
    const int32_t digitCount = form.Base == 10 ? SplitDigits(magnitude, 10, digitNames, digits)
                                               : SplitDigits(magnitude, static_cast<uint64_t>(form.Base), digitNames, digits);

    // Everything beyond the room ends in the same "?", so a larger number of places makes no difference.
    const int32_t places = std::clamp(form.MinimumDigits, digitCount, digitCount + writer.GetRoomLeft() + 1);
    const bool padsWithBlanks = (form.Flags & ZVNumberText::PadWithBlanks) != 0;
    const bool hasGroups = (form.Flags & ZVNumberText::ThousandsSeparators) != 0;
    const wchar_t separator = ZVNumberText::GetDecimalPoint() == L'.' ? L',' : L'.';
    bool hasDigit = false;
    for (int32_t place = places - 1; place >= 0; --place)
    {
        if (hasGroups && hasDigit && (place + 1) % GroupSize == 0)
            writer.Put(separator);
        const bool isLeading = place >= digitCount;
        hasDigit |= !isLeading || !padsWithBlanks;
        if (isLeading)
            writer.Put(padsWithBlanks ? L' ' : L'0');
        else
            writer.Put(digits[place]);
    }
    if ((form.Flags & ZVNumberText::OrdinalSuffix) != 0)
        WriteOrdinalSuffix(writer);
}

// The decimals of a fraction below 1, as a whole number of Count digits.
struct Decimals
{
    uint64_t Digits = 0;
    int32_t Count = 0;
    bool HasCarry = false;  // rounding adds 1 to the whole part
};

Decimals RoundFraction(double fraction, int32_t precision)
{
    Decimals decimals;
    double scaled = fraction;
    while (scaled != std::floor(scaled) && decimals.Count <= precision)
    {
        scaled *= 10.0;
        ++decimals.Count;
    }
    decimals.Digits = static_cast<uint64_t>(scaled);
    if (decimals.Count > precision)
    {
        decimals.Digits = (decimals.Digits + 5) / 10;
        --decimals.Count;
    }
    uint64_t one = 1;
    for (int32_t index = 0; index < decimals.Count; ++index)
        one *= 10;
    decimals.HasCarry = decimals.Digits >= one;
    if (decimals.HasCarry)
        decimals.Digits -= one;
    return decimals;
}
}

int32_t ZVNumberText::WriteSigned(wchar_t* target, int32_t room, int64_t value, const WholeForm& form)
{
    if (form.Base < 2 || form.Base > MaximumSignedBase || room < MinimumRoom)
        return 0;
    NumberWriter writer(target, room);
    WriteSign(writer, value, form);
    const uint64_t bits = static_cast<uint64_t>(value);
    WriteDigits(writer, value < 0 ? 0 - bits : bits, form);
    return writer.GetCount();
}

int32_t ZVNumberText::WriteUnsigned(wchar_t* target, int32_t room, uint64_t value, const WholeForm& form)
{
    if (form.Base < 2 || form.Base > MaximumUnsignedBase || room < MinimumRoom)
        return 0;
    NumberWriter writer(target, room);
    WriteSign(writer, value != 0 ? 1 : 0, form);
    WriteDigits(writer, value, form);
    return writer.GetCount();
}

int32_t ZVNumberText::WriteDouble(wchar_t* target, int32_t room, double value, const DecimalForm& form)
{
    NumberWriter writer(target, room);
    if (!std::isfinite(value))
    {
        writer.Put(L'?');
        return writer.GetCount();
    }
    if (value < 0.0)
        writer.Put(L'-');
    else if ((form.Flags & PlusUnlessNegative) != 0)
        writer.Put(L'+');

    const double magnitude = std::min(std::fabs(value), LargestWhole);
    uint64_t whole = static_cast<uint64_t>(magnitude);
    const int32_t precision = form.Precision < 0 ? MaximumPrecision : std::min(form.Precision, MaximumPrecision);
    Decimals decimals = RoundFraction(magnitude - static_cast<double>(whole), precision);
    if (decimals.HasCarry)
        ++whole;
    if (form.FixedPrecision)
    {
        for (; decimals.Count < precision; ++decimals.Count)
            decimals.Digits *= 10;
    }
    else
    {
        for (; decimals.Count > 0 && decimals.Digits % 10 == 0; --decimals.Count)
            decimals.Digits /= 10;
    }

    const bool dropsWhole = (form.Flags & DropZeroWhole) != 0 && whole == 0 && decimals.Count > 0;
    if (!dropsWhole && writer.GetRoomLeft() >= MinimumRoom)
        WriteDigits(writer, whole, {form.MinimumDigits});
    int32_t written = writer.GetCount();
    if (decimals.Count == 0 || room - written <= decimals.Count)
        return written;
    target[written++] = (form.Flags & AlwaysPoint) != 0 ? L'.' : GetDecimalPoint();
    for (int32_t place = decimals.Count - 1; place >= 0; --place)
    {
        target[written + place] = static_cast<wchar_t>(L'0' + decimals.Digits % 10);
        decimals.Digits /= 10;
    }
    return written + decimals.Count;
}

wchar_t ZVNumberText::GetDecimalPoint()
{
    static std::atomic<wchar_t> s_point {L'\0'};
    wchar_t point = s_point.load(std::memory_order_relaxed);
    if (point == L'\0')
    {
        wchar_t sample[8] = {};
        swprintf(sample, std::size(sample), L"%.1f", 1.1);
        point = sample[1] == L',' ? L',' : L'.';
        s_point.store(point, std::memory_order_relaxed);
    }
    return point;
}
