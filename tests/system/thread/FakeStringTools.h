#pragma once

#include "FakeTools.h"

#include <cwchar>

// Tools that order texts by their length and take every "*" and "?" for a wild card.
class FakeStringTools final : public FakeTools, public IZVStringTools
{
public:
    IZVStringTools* GetTools(bool) override { return this; }
    int32_t Find(const wchar_t*, const wchar_t*, int32_t) override { return -1; }
    bool MatchesWildcards(const wchar_t*, const wchar_t*) override { return false; }
    bool HasWildcards(const wchar_t* text) override { return wcspbrk(text, L"*?") != nullptr; }
    int32_t Compare(const wchar_t* first, const wchar_t* second, int32_t flags, bool option, int32_t length) override
    {
        const int32_t order = static_cast<int32_t>(wcslen(first)) - static_cast<int32_t>(wcslen(second));
        return flags == 5 && option && length == -1 ? order : 0;
    }
};
