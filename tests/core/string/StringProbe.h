#pragma once

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "core/string/ZVString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <initializer_list>

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

// The cases of a table: a name, what came out and what must.
struct TextCase
{
    const char* Name;
    ZVString Actual;
    std::wstring Expected;
};

struct NumberCase
{
    const char* Name;
    int64_t Actual;
    int64_t Expected;
};

inline void ExpectTexts(std::initializer_list<TextCase> cases)
{
    for (const TextCase& one : cases)
        EXPECT_EQ(TextOf(one.Actual), one.Expected) << one.Name;
}

inline void ExpectNumbers(std::initializer_list<NumberCase> cases)
{
    for (const NumberCase& one : cases)
        EXPECT_EQ(one.Actual, one.Expected) << one.Name;
}

// The text after an edit, which is made to a string that shares its block with another: the other must not notice.
template <class Edit>
ZVString Edited(const wchar_t* start, Edit edit)
{
    ZVString own(start);
    edit(own);
    EXPECT_EQ(own.GetText()[own.GetLength()], L'\0');
    EXPECT_NE(RefCountOf(own), ZVStringData::LockedCount);
    const ZVString other(start);
    ZVString shared(other);
    edit(shared);
    EXPECT_EQ(TextOf(other), start);
    EXPECT_EQ(TextOf(shared), TextOf(own));
    return shared;
}

// Empties the manager's pool for a scope and holds what was in it: until a string of the scope gives its block back, every new
// block has exactly the capacity that was asked for.
class EmptyPool
{
public:
    EmptyPool()
    {
        for (ZVStringData*& block : m_blocks)
            block = ZVStringGlobals::Get().AllocateData(0, true);
    }

    ~EmptyPool()
    {
        for (ZVStringData* block : m_blocks)
            ZVStringGlobals::Get().FreeData(block);
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
        const size_t found = Lowered(text).find(Lowered(needle));
        return found == std::wstring::npos ? -1 : static_cast<int32_t>(found);
    }

    int32_t Compare(const wchar_t* a, const wchar_t* b, int32_t, bool, int32_t) override { return wcscmp(a, b); }
    bool MatchesWildcards(const wchar_t*, const wchar_t*) override { return false; }
    bool HasWildcards(const wchar_t*) override { return false; }

    int32_t LastMode = 0;

private:
    static std::wstring Lowered(std::wstring text)
    {
        for (wchar_t& character : text)
            character = static_cast<wchar_t>(towlower(static_cast<wint_t>(character)));
        return text;
    }

    bool m_hasSearch;
};
