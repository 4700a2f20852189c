#pragma once

// The English names of months and days, for texts that machines read. The first three letters are the short form.
namespace ZVDateNames
{
inline constexpr int ShortLength = 3;

inline constexpr const wchar_t* Months[] = {
    L"January", L"February", L"March",     L"April",   L"May",      L"June",
    L"July",    L"August",   L"September", L"October", L"November", L"December",
};

inline constexpr const wchar_t* Days[] = {
    L"Sunday", L"Monday", L"Tuesday", L"Wednesday", L"Thursday", L"Friday", L"Saturday",
};
}
