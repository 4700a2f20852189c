#include "siblings/tools/text/CNaturalCompare.h"

#include "core/string/ZVCharacter.h"

namespace
{
bool IsDigit(wchar_t character)
{
    return character >= L'0' && character <= L'9';
}

template <class Number>
int32_t Order(Number a, Number b)
{
    return a < b ? -1 : a > b ? 1 : 0;
}

int32_t OrderOfCodes(wchar_t a, wchar_t b)
{
    return Order(static_cast<uint32_t>(a), static_cast<uint32_t>(b));
}

// A text with a length limit, read from the start. At the end Current returns NUL.
class BoundedText
{
public:
    BoundedText(const wchar_t* text, int32_t length) : m_position(text), m_left(length < 0 ? INT32_MAX : length) {}

    wchar_t Current() const { return m_left == 0 ? L'\0' : *m_position; }

    void Advance()
    {
        ++m_position;
        --m_left;
    }

    // Skips the leading zeros of a number and returns how many there are.
    int32_t SkipZeros()
    {
        int32_t count = 0;
        for (; Current() == L'0'; Advance())
            ++count;
        return count;
    }

private:
    const wchar_t* m_position;
    int32_t m_left;
};

// Compares the numbers at which two texts are, which may have any length but no leading zeros, and skips them. The one with more
// digits is larger; otherwise the first digit that differs decides.
int32_t CompareNumbers(BoundedText& a, BoundedText& b)
{
    int32_t order = 0;
    for (; IsDigit(a.Current()) && IsDigit(b.Current()); a.Advance(), b.Advance())
        if (order == 0)
            order = OrderOfCodes(a.Current(), b.Current());
    if (IsDigit(a.Current()))
        return 1;
    return IsDigit(b.Current()) ? -1 : order;
}

// The order by code points alone.
int32_t CompareExactly(BoundedText a, BoundedText b)
{
    while (a.Current() == b.Current() && a.Current() != L'\0')
    {
        a.Advance();
        b.Advance();
    }
    return OrderOfCodes(a.Current(), b.Current());
}
}

int32_t CNaturalCompare::Compare(const wchar_t* textA, const wchar_t* textB, int32_t length, Ties ties)
{
    BoundedText a(textA, length);
    BoundedText b(textB, length);
    int32_t orderOfZeros = 0;
    while (a.Current() != L'\0' && b.Current() != L'\0')
    {
        if (IsDigit(a.Current()) && IsDigit(b.Current()))
        {
            const int32_t zerosA = a.SkipZeros();
            const int32_t zerosB = b.SkipZeros();
            if (const int32_t order = CompareNumbers(a, b); order != 0)
                return order;
            if (orderOfZeros == 0)
                orderOfZeros = Order(zerosA, zerosB);
            continue;
        }
        if (const int32_t order = OrderOfCodes(ZVCharacter::ToLower(a.Current()), ZVCharacter::ToLower(b.Current())); order != 0)
            return order;
        a.Advance();
        b.Advance();
    }
    // At least one text is at its end. It comes first if the other is not.
    if (const int32_t order = OrderOfCodes(a.Current(), b.Current()); order != 0)
        return order;
    if (ties == Ties::Kept)
        return 0;
    return orderOfZeros != 0 ? orderOfZeros : CompareExactly(BoundedText(textA, length), BoundedText(textB, length));
}
