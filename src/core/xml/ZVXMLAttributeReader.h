#pragma once

#include <cstdint>

// Reads the attributes in a start tag or a declaration one after the other. It keeps to the same rule of quotes as the token
// reader, by which the tag's end was found, so what it takes for a value never reaches beyond the tag.
class ZVXMLAttributeReader
{
public:
    // Takes the characters between the name at the start of a tag and the mark at its end.
    ZVXMLAttributeReader(const wchar_t* text, const wchar_t* end) : m_end(end), m_position(text) {}

    // Goes to the next attribute. False at the end, where the fields still tell of the last one.
    bool Read();
    // Goes to the attribute of that name, searched for from the start of the tag.
    bool Find(const wchar_t* name, int32_t nameLength, bool fold);

    // The value is what stands between the quotes. Without quotes it goes up to the next blank or the end of the tag; an
    // attribute without a value has an empty one behind its name.
    const wchar_t* GetValue() const { return m_value; }
    int32_t GetValueLength() const { return static_cast<int32_t>(m_valueEnd - m_value); }
    bool HasEqualsSign() const { return m_hasEqualsSign; }
    bool HasQuotes() const { return m_hasQuotes; }
    // Behind the value's closing quote, or where the tag's name ends when no attribute was read.
    const wchar_t* GetEnd() const { return m_position; }

private:
    const wchar_t* SkipUnquoted(const wchar_t* text, bool isName) const;

    const wchar_t* m_end;
    const wchar_t* m_position;
    const wchar_t* m_name = nullptr;
    const wchar_t* m_nameEnd = nullptr;
    const wchar_t* m_value = nullptr;
    const wchar_t* m_valueEnd = nullptr;
    bool m_hasEqualsSign = false;
    bool m_hasQuotes = false;
};
