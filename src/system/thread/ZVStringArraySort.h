#pragma once

#include "core/string/ZVString.h"
#include "system/thread/IZVQSortCompare.h"

// The order of strings by the comparison of the tools library. Without the library strings are ordered by their characters in
// lower case, and strings that are then equal by the characters themselves.
class ZVStringArraySort final : public IZVQSortCompare<ZVString>
{
public:
    // What the library's comparison is given with every two strings; without the library neither counts.
    ZVStringArraySort(int32_t flags, bool option) : m_flags(flags), m_option(option) {}

    int32_t Compare(const ZVString& first, const ZVString& second) override;

private:
    int32_t m_flags;
    bool m_option;
};
