#pragma once

#include "core/Rows.h"
#include "core/string/ZVString.h"

#include <algorithm>

using S = ZVString;

// The whole text, including characters of code 0.
inline std::wstring TextOf(const ZVString& text)
{
    return std::wstring(text.GetText(), static_cast<size_t>(text.GetLength()));
}

inline ZVStringData* BlockOf(const ZVString& text)
{
    return ZVStringData::FromCharacters(const_cast<wchar_t*>(text.GetText()));
}

inline int32_t RefCountOf(const ZVString& text)
{
    return BlockOf(text)->RefCount.load();
}

// A table of results, each with what it must be.
inline void ExpectTexts(std::initializer_list<std::pair<ZVString, std::wstring>> rows)
{
    for (const auto& row : rows)
        EXPECT_EQ(TextOf(row.first), row.second) << "row " << &row - rows.begin();
}

inline void ExpectNumbers(std::initializer_list<std::pair<int64_t, int64_t>> rows)
{
    for (const auto& row : rows)
        EXPECT_EQ(row.first, row.second) << "row " << &row - rows.begin();
}

// The text after an edit of a string that shares its block with another, which must stay as it was.
template <class Edit>
ZVString Edited(const wchar_t* start, Edit edit)
{
    ZVString own(start);
    edit(own);
    EXPECT_EQ(own.GetText()[own.GetLength()], L'\0') << "the terminator of " << TextOf(own);
    EXPECT_EQ(RefCountOf(own), 1) << "it must not be locked";
    const ZVString other(start);
    ZVString shared(other);
    edit(shared);
    EXPECT_EQ(TextOf(other), start);
    EXPECT_EQ(TextOf(shared), TextOf(own));
    return shared;
}

// Takes all blocks out of the manager's pool for a scope. Until a string in the scope frees its block, every new block has the
// capacity that was asked for.
class EmptyPool
{
public:
    EmptyPool()
    {
        std::generate_n(m_blocks, 16, [] { return ZVStringGlobals::Get().AllocateData(0, true); });
    }
    ~EmptyPool()
    {
        std::for_each_n(m_blocks, 16, [](ZVStringData* block) { ZVStringGlobals::Get().FreeData(block); });
    }

private:
    ZVStringData* m_blocks[16];
};
