#include "core/string/ZVStringLeadingCharacters.h"

#include "core/string/ZVCharacter.h"

ZVString ZVStringGetLeadingCharacters::Get(const ZVString& text) const
{
    int32_t count = 0;
    while (count < text.GetLength() && Belongs(text[count]))
        ++count;
    return text.Left(count);
}

bool ZVStringLeadingAlphaCharacters::Belongs(wchar_t character) const
{
    return ZVCharacter::IsAlphabetic(character);
}

bool ZVStringLeadingWordCharacters::Belongs(wchar_t character) const
{
    return character == L'_' || ZVCharacter::IsAlphabetic(character) || ZVCharacter::IsDigit(character);
}
