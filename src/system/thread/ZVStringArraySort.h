#pragma once

#include "core/string/ZVString.h"
#include "system/thread/IZVQSortCompare.h"

// Orders strings by the comparison of the tools library. Without the library they are ordered by their characters in lower case,
// and strings that are then equal by the characters themselves.
class ZVStringArraySort final : public IZVQSortCompare<ZVString>
{
public:
    // Both are passed to the library's comparison. Without the library they have no effect.
    ZVStringArraySort(int32_t flags, bool option) : m_flags(flags), m_option(option) {}

    int32_t Compare(const ZVString& first, const ZVString& second) override;

private:
    int32_t m_flags;
    bool m_option;
};
