#pragma once

#include "core/xml/ZVXMLText.h"

#include <cstdint>
#include <string_view>

// Reads the attributes in a start tag or a declaration one after the other. It follows the same rule for quotes as the token
// reader, which found the end of the tag, so a value never reaches beyond the tag.
class ZVXMLAttributeReader
{
public:
    // Takes the characters between the name at the start of a tag and the ">" or "/>" at its end.
    ZVXMLAttributeReader(const wchar_t* text, const wchar_t* end) : m_end(end), m_position(text) {}

    // Goes to the next attribute. False at the end; the getters then still describe the last attribute.
    bool Read();
    // Goes to the next attribute of that name. False if there is none.
    bool Find(std::wstring_view name, ZVXMLText::Case names);

    // The value is the text between the quotes. Without quotes it ends at the next blank or at the end of the tag. An attribute
    // without a value has an empty one right after its name.
    const wchar_t* GetValue() const { return m_value; }
    int32_t GetValueLength() const { return static_cast<int32_t>(m_valueEnd - m_value); }
    bool HasEqualsSign() const { return m_hasEqualsSign; }
    bool HasQuotes() const { return m_hasQuotes; }
    // The place after the value and its closing quote, or the end of the tag's name if no attribute was read.
    const wchar_t* GetEnd() const { return m_position; }

private:
    const wchar_t* SkipName(const wchar_t* text) const;
    const wchar_t* SkipUnquotedValue(const wchar_t* text) const;

    const wchar_t* m_end;
    const wchar_t* m_position;
    const wchar_t* m_name = nullptr;
    const wchar_t* m_nameEnd = nullptr;
    const wchar_t* m_value = nullptr;
    const wchar_t* m_valueEnd = nullptr;
    bool m_hasEqualsSign = false;
    bool m_hasQuotes = false;
};
