#include "mp4/tags/ReadWholeNumber.h"

#include "core/string/ZVDigits.h"
#include "mp4/model/Exception.h"

namespace
{
// A text of more digits is never a number of 32 bits, but for leading zeros that nobody writes.
constexpr int32_t MaximumDigits = 18;
}

uint32_t ReadWholeNumber(const ZVString& text, uint32_t maximum)
{
    ZVString digits = text;
    digits.TrimWhitespace();
    uint64_t number = 0;
    bool isNumber = !digits.IsEmpty() && digits.GetLength() <= MaximumDigits;
    for (const wchar_t character : digits.View().substr(0, MaximumDigits))
    {
        const int digit = ZVDigits::DecimalValue(character);
        isNumber = isNumber && digit != ZVDigits::NotADigit;
        number = 10 * number + static_cast<uint64_t>(digit);
    }
    if (!isNumber || number > maximum)
        ThrowException(L"\"%s\" is no whole number from 0 to %u", text, maximum);
    return static_cast<uint32_t>(number);
}
