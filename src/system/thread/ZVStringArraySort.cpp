#include "system/thread/ZVStringArraySort.h"

#include "contracts/IZVStringTools.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "core/string/ZVCharacter.h"

#include <algorithm>
#include <string_view>

namespace
{
constexpr int32_t WholeLength = -1;

int32_t CompareLowered(std::wstring_view first, std::wstring_view second)
{
    const auto [left, right] = std::ranges::mismatch(first, second, {}, ZVCharacter::ToLower, ZVCharacter::ToLower);
    if (left == first.end() || right == second.end())
        return (left != first.end()) - (right != second.end());
    return ZVCharacter::ToLower(*left) < ZVCharacter::ToLower(*right) ? -1 : 1;
}
}

int32_t ZVStringArraySort::Compare(const ZVString& first, const ZVString& second)
{
    IZVStringTools* const tools = g_pZVTools == nullptr ? nullptr : g_pZVTools->GetTools(false);
    if (tools != nullptr)
        return tools->Compare(first, second, m_flags, m_option, WholeLength);
    const int32_t lowered = CompareLowered(first.View(), second.View());
    return lowered != 0 ? lowered : first.View().compare(second.View());
}
