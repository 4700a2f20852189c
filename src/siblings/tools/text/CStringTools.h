#pragma once

#include "contracts/IZVStringTools.h"

// The string tools of the library. They have no state, so any thread may use them.
class CStringTools final : public IZVStringTools
{
public:
    int32_t Find(const wchar_t* text, const wchar_t* needle, int32_t mode) override;
    int32_t Compare(const wchar_t* a, const wchar_t* b, int32_t flags, bool option, int32_t length) override;
    bool MatchesWildcards(const wchar_t* text, const wchar_t* pattern) override;
    bool HasWildcards(const wchar_t* text) override;
};
