#include "siblings/tools/text/CWildcards.h"

#include "core/string/ZVCharacter.h"

#include <cwchar>

bool CWildcards::Match(const wchar_t* text, const wchar_t* pattern)
{
    // Only the last "*" is ever tried with a longer run: what stands before it matches already, and a longer run further in
    // front could not help what follows.
    const wchar_t* behindStar = nullptr;
    const wchar_t* endOfRun = nullptr;
    while (*text != L'\0')
    {
        if (*pattern == L'*')
        {
            behindStar = ++pattern;
            endOfRun = text;
        }
        else if (*pattern == L'?' || (*pattern != L'\0' && ZVCharacter::ToLower(*pattern) == ZVCharacter::ToLower(*text)))
        {
            ++pattern;
            ++text;
        }
        else if (behindStar != nullptr)
        {
            pattern = behindStar;
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
