#include "siblings/tools/text/CWildcards.h"

#include "core/string/ZVCharacter.h"

#include <cwchar>

bool CWildcards::Match(const wchar_t* text, const wchar_t* pattern)
{
    // Only the last "*" is tried with a longer run: everything before it matches already, and a longer run of an earlier "*"
    // could not make the rest match.
    const wchar_t* afterStar = nullptr;
    const wchar_t* endOfRun = nullptr;
    while (*text != L'\0')
    {
        if (*pattern == L'*')
        {
            afterStar = ++pattern;
            endOfRun = text;
        }
        else if (*pattern == L'?' || (*pattern != L'\0' && ZVCharacter::ToLower(*pattern) == ZVCharacter::ToLower(*text)))
        {
            ++pattern;
            ++text;
        }
        else if (afterStar != nullptr)
        {
            pattern = afterStar;
            text = ++endOfRun;
        }
        else
        {
            return false;
        }
    }
    while (*pattern == L'*')
        ++pattern;
    return *pattern == L'\0';
}

bool CWildcards::AreIn(const wchar_t* text)
{
    return wcspbrk(text, L"*?") != nullptr;
}
