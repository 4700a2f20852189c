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

// By the last digit from 1 to 3; the first for all others.
constexpr const wchar_t* OrdinalSuffixes[] = {L"th", L"st", L"nd", L"rd"};

// Writes characters until the room is used up; then the last place is "?" and nothing more is written.
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

int32_t WriteMagnitude(wchar_t* target, int32_t room, uint64_t magnitude, bool isNegative, int32_t minimumDigits, int32_t base,
                       uint32_t flags)
{
    if (room < MinimumRoom)
        return 0;
    NumberWriter writer(target, room);
    if (isNegative)
        writer.Put(L'-');
    else if ((flags & ZVNumberText::PlusSign) != 0 && magnitude != 0)
        writer.Put(L'+');
    if ((flags & ZVNumberText::HexadecimalPrefix) != 0 && base == 16)
    {
        writer.Put(L'0');
        writer.Put(L'x');
    }

    const wchar_t* digitNames = (flags & ZVNumberText::LowerCaseDigits) != 0 ? LowerDigits : UpperDigits;
    wchar_t digits[MaximumDigits];  // from the lowest place up
    int32_t digitCount = 0;
    do
    {
        digits[digitCount++] = digitNames[magnitude % static_cast<uint64_t>(base)];
        magnitude /= static_cast<uint64_t>(base);
    } while (magnitude != 0);

    // Places beyond the room end in the same "?", however many they are.
    const int32_t places = std::clamp(minimumDigits, digitCount, digitCount + room + 1);
    const bool padsWithBlanks = (flags & ZVNumberText::PadWithBlanks) != 0;
    const bool hasGroups = (flags & ZVNumberText::ThousandsSeparators) != 0;
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
    if ((flags & ZVNumberText::OrdinalSuffix) != 0)
        WriteOrdinalSuffix(writer);
    return writer.GetCount();
}

// The decimals of a fraction below 1 as a whole number of so many digits.
struct Decimals
{
    uint64_t Digits = 0;
    int32_t Count = 0;
    bool HasCarry = false;  // the rounding reached the whole part
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

int32_t ZVNumberText::WriteSigned(wchar_t* target, int32_t room, int64_t value, int32_t minimumDigits, int32_t base,
                                  uint32_t flags)
{
    if (base < 2 || base > MaximumSignedBase)
        return 0;
    const uint64_t bits = static_cast<uint64_t>(value);
    return WriteMagnitude(target, room, value < 0 ? 0 - bits : bits, value < 0, minimumDigits, base, flags);
}

int32_t ZVNumberText::WriteUnsigned(wchar_t* target, int32_t room, uint64_t value, int32_t minimumDigits, int32_t base,
                                    uint32_t flags)
{
    if (base < 2 || base > MaximumUnsignedBase)
        return 0;
    return WriteMagnitude(target, room, value, false, minimumDigits, base, flags);
}

int32_t ZVNumberText::WriteDouble(wchar_t* target, int32_t room, double value, int32_t precision, bool fixedPrecision,
                                  int32_t minimumDigits, uint32_t flags)
{
    NumberWriter writer(target, room);
    if (!std::isfinite(value))
    {
        writer.Put(L'?');
        return writer.GetCount();
    }
    if (value < 0.0)
        writer.Put(L'-');
    else if ((flags & PlusUnlessNegative) != 0)
        writer.Put(L'+');

    const double magnitude = std::min(std::fabs(value), LargestWhole);
    uint64_t whole = static_cast<uint64_t>(magnitude);
    precision = precision < 0 ? MaximumPrecision : std::min(precision, MaximumPrecision);
    Decimals decimals = RoundFraction(magnitude - static_cast<double>(whole), precision);
    if (decimals.HasCarry)
        ++whole;
    if (fixedPrecision)
    {
        for (; decimals.Count < precision; ++decimals.Count)
            decimals.Digits *= 10;
    }
    else
    {
        for (; decimals.Count > 0 && decimals.Digits % 10 == 0; --decimals.Count)
            decimals.Digits /= 10;
    }

    int32_t written = writer.GetCount();
    const bool dropsWhole = (flags & DropZeroWhole) != 0 && whole == 0 && decimals.Count > 0;
    if (!dropsWhole)
        written += WriteMagnitude(target + written, room - written, whole, false, minimumDigits, 10, 0);
    if (decimals.Count == 0 || room - written <= decimals.Count)
        return written;
    target[written++] = (flags & AlwaysPoint) != 0 ? L'.' : GetDecimalPoint();
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
