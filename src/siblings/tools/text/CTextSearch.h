#pragma once

#include "core/string/ZVCharacter.h"

#include <cstdint>
#include <cwchar>
#include <memory>

// Searches texts for a needle by the algorithm of Knuth, Morris and Pratt, which reads each character of a text only once. Folded
// ignores case; each character is lowered by itself, so a match is as long as the needle.
template <bool Folded>
class CTextSearch
{
public:
    // Prepares a NUL-terminated needle. Throws std::bad_alloc.
    explicit CTextSearch(const wchar_t* needle) : m_length(wcslen(needle))
    {
        if (m_length > UsualLength)
        {
            m_allocated.reset(new Place[m_length]);
            m_places = m_allocated.get();
        }
        size_t border = 0;
        for (size_t index = 0; index < m_length; ++index)
        {
            const wchar_t character = Fold(needle[index]);
            m_places[index].Character = character;
            if (index > 0)
                border = Advance(border, character);
            m_places[index].Border = border;
        }
    }

    CTextSearch(const CTextSearch&) = delete;
    CTextSearch& operator=(const CTextSearch&) = delete;

    // The position of the first occurrence in a NUL-terminated text, or -1. An empty needle is found at the start.
    int32_t FindIn(const wchar_t* text) const
    {
        size_t matched = 0;
        const wchar_t* position = text;
        for (; matched < m_length; ++position)
        {
            if (*position == L'\0')
                return -1;
            matched = Advance(matched, Fold(*position));
        }
        return static_cast<int32_t>(position - text - static_cast<ptrdiff_t>(m_length));
    }

private:
    // Needles up to this length need no allocation.
    static constexpr size_t UsualLength = 64;

    struct Place
    {
        wchar_t Character;
        size_t Border;  // the length of the longest proper prefix of the needle that also ends here
    };

    static wchar_t Fold(wchar_t character) { return Folded ? ZVCharacter::ToLower(character) : character; }

    // How many characters of the needle match after one more character of the text.
    size_t Advance(size_t matched, wchar_t character) const
    {
        while (matched > 0 && m_places[matched].Character != character)
            matched = m_places[matched - 1].Border;
        return m_places[matched].Character == character ? matched + 1 : 0;
    }

    const size_t m_length;
    Place m_usual[UsualLength];
    std::unique_ptr<Place[]> m_allocated;
    Place* m_places = m_usual;
};
