#include "system/thread/ZVStringArraySort.h"

#include "contracts/IZVStringTools.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "core/string/ZVCharacter.h"

#include <cwchar>

namespace
{
constexpr int32_t WholeLength = -1;

int32_t CompareLowered(const wchar_t* first, const wchar_t* second)
{
    for (;; ++first, ++second)
    {
        const wchar_t left = ZVCharacter::ToLower(*first);
        const wchar_t right = ZVCharacter::ToLower(*second);
        if (left != right)
            return left < right ? -1 : 1;
        if (left == L'\0')
            return 0;
    }
}
}

int32_t ZVStringArraySort::Compare(const ZVString& first, const ZVString& second)
{
    IZVStringTools* const tools = g_pZVTools == nullptr ? nullptr : g_pZVTools->GetTools(false);
    if (tools != nullptr)
        return tools->Compare(first, second, m_flags, m_option, WholeLength);
    const int32_t lowered = CompareLowered(first, second);
    return lowered != 0 ? lowered : wcscmp(first, second);
}
