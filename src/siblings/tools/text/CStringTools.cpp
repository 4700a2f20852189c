#include "siblings/tools/text/CStringTools.h"

#include "siblings/tools/text/CNaturalCompare.h"
#include "siblings/tools/text/CTextSearch.h"
#include "siblings/tools/text/CWildcards.h"

#include <new>

int32_t CStringTools::Find(const wchar_t* text, const wchar_t* needle, int32_t mode)
{
    try
    {
        return mode == FindFolded ? CTextSearch<true>(needle).FindIn(text) : CTextSearch<false>(needle).FindIn(text);
    }
    catch (const std::bad_alloc&)
    {
        return -1;
    }
}

int32_t CStringTools::Compare(const wchar_t* a, const wchar_t* b, int32_t flags, bool option, int32_t length)
{
    using Ties = CNaturalCompare::Ties;
    const Ties ties = (flags & CompareWithoutTieBreaks) != 0 ? Ties::Kept : Ties::Broken;
    const int32_t order = CNaturalCompare::Compare(a, b, length, ties);
    return option ? -order : order;
}

bool CStringTools::MatchesWildcards(const wchar_t* text, const wchar_t* pattern)
{
    return CWildcards::Match(text, pattern);
}

bool CStringTools::HasWildcards(const wchar_t* text)
{
    return CWildcards::AreIn(text);
}
