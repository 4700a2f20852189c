#include "mp4/tags/GenreAtoms.h"

#include "core/string/ZVDigits.h"
#include "mp4/model/Exception.h"
#include "mp4/tags/CTagDataAtom.h"
#include "mp4/tags/GenreNames.h"

namespace
{
constexpr int32_t NoNumber = -1;
// Of a number in parentheses.
constexpr int32_t MaximumDigits = 3;

// The number of a text that is nothing but one to three digits in parentheses.
int32_t ReadNumberInParentheses(std::wstring_view text)
{
    if (!text.starts_with(L'(') || !text.ends_with(L')') || text.size() < 3 || text.size() > MaximumDigits + 2)
        return NoNumber;
    int32_t number = 0;
    for (const wchar_t character : text.substr(1, text.size() - 2))
    {
        const int digit = ZVDigits::DecimalValue(character);
        if (digit == ZVDigits::NotADigit)
            return NoNumber;
        number = 10 * number + digit;
    }
    return number;
}
}

bool CStandardGenreAtom::GetValue(ZVString& value) const
{
    // A big-endian number of 16 bits, of which players look at the second byte alone.
    const std::string_view bytes = GetBytes();
    const wchar_t* const name = bytes.size() < 2 ? nullptr : GetGenreName(static_cast<uint8_t>(bytes[1]) - 1);
    if (name == nullptr)
        return false;
    value = name;
    return true;
}

void CStandardGenreAtom::SetValue(const ZVString& value)
{
    const int32_t number = FindGenreNumber(value);
    if (number < 0)
        ThrowException(L"\"%s\" is no genre of the standard list", value);
    SetNumber(CTagDataAtom::Implicit, static_cast<uint32_t>(number + 1), 2);
}

bool CCustomGenreAtom::GetValue(ZVString& value) const
{
    if (!CStringTagAtomBase::GetValue(value))
        return false;
    if (const wchar_t* const name = GetGenreName(ReadNumberInParentheses(value.View())))
        value = name;
    return true;
}
