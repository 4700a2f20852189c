#include "system/library/ZVStandardOutput.h"

#include <climits>
#include <cstdio>
#include <cwchar>

namespace
{
constexpr wchar_t Unprintable = L'?';

bool CanBeWritten(wchar_t character)
{
    char bytes[MB_LEN_MAX];
    mbstate_t state {};
    return wcrtomb(bytes, character, &state) != static_cast<size_t>(-1);
}
}

void ZVStandardOutput::MakeWide()
{
    fwide(stdout, 1);
}

void ZVStandardOutput::Print(const ZVString& text)
{
    const int32_t length = text.GetLength();
    for (int32_t index = 0; index < length; ++index)
        putwc(CanBeWritten(text[index]) ? text[index] : Unprintable, stdout);
}

void ZVStandardOutput::Flush()
{
    fflush(stdout);
}
