#pragma once

#include "FakeTools.h"
#include "core/Rows.h"
#include "core/ZVToolsPointer.h"
#include "core/string/ZVCharacter.h"
#include "core/string/ZVString.h"

#include <algorithm>

using S = ZVString;

// The whole text, characters of code 0 among it.
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

// A table of what came out with what must, for results that the row itself explains.
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

// The text after an edit, which is made to a string that shares its block with another: the other must not notice.
template <class Edit>
ZVString Edited(const wchar_t* start, Edit edit)
{
    ZVString own(start);
    edit(own);
    EXPECT_TRUE(own.GetText()[own.GetLength()] == L'\0' && RefCountOf(own) == 1);
    const ZVString other(start);
    ZVString shared(other);
    edit(shared);
    EXPECT_TRUE(TextOf(other) == start && TextOf(shared) == TextOf(own));
    return shared;
}

// Empties the manager's pool for a scope and holds what was in it: until a string of the scope gives its block back, every new
// block has exactly the capacity that was asked for.
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

// A tools library, bound for a scope, that has a folded search, or not even that.
class FakeSearchTools final : public FakeTools, public IZVStringTools
{
public:
    explicit FakeSearchTools(bool hasSearch = true) : m_hasSearch(hasSearch) { g_pZVTools = this; }
    ~FakeSearchTools() override { g_pZVTools = nullptr; }

    IZVStringTools* GetTools(bool) override { return m_hasSearch ? this : nullptr; }

    int32_t Find(const wchar_t* text, const wchar_t* needle, int32_t mode) override
    {
        LastMode = mode;
        const std::wstring_view whole(text), part(needle);
        const auto isSame = [](wchar_t a, wchar_t b) { return ZVCharacter::ToLower(a) == ZVCharacter::ToLower(b); };
        const auto found = std::search(whole.begin(), whole.end(), part.begin(), part.end(), isSame);
        return found == whole.end() && !part.empty() ? -1 : static_cast<int32_t>(found - whole.begin());
    }

    int32_t Compare(const wchar_t*, const wchar_t*, int32_t, bool, int32_t) override { return 0; }
    bool MatchesWildcards(const wchar_t*, const wchar_t*) override { return false; }
    bool HasWildcards(const wchar_t*) override { return false; }

    int32_t LastMode = 0;

private:
    bool m_hasSearch;
};
