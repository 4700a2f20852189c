#include "core/xml/ZVXMLAttributeReader.h"

#include "core/xml/ZVXMLText.h"

namespace
{
bool IsQuote(wchar_t character)
{
    return character == L'"' || character == L'\'';
}
}

// A quote that opens inside a name or an unquoted value keeps blanks from ending it, as it keeps ">" from ending the tag.
const wchar_t* ZVXMLAttributeReader::SkipUnquoted(const wchar_t* text, bool isName) const
{
    for (; text != m_end && !ZVXMLText::IsBlank(*text) && !(isName && *text == L'='); ++text)
        if (IsQuote(*text))
        {
            text = ZVXMLText::FindCharacter(text + 1, m_end, *text);
            if (text == m_end)
                break;
        }
    return text;
}

bool ZVXMLAttributeReader::Read()
{
    const wchar_t* place = m_position;
    while (place != m_end && (ZVXMLText::IsBlank(*place) || *place == L'/'))
        ++place;
    if (place == m_end)
        return false;

    m_name = place;
    m_nameEnd = SkipUnquoted(place, true);
    place = ZVXMLText::SkipBlanks(m_nameEnd, m_end);
    m_hasEqualsSign = place != m_end && *place == L'=';
    m_hasQuotes = false;
    if (!m_hasEqualsSign)
    {
        m_value = m_valueEnd = m_position = m_nameEnd;
        return true;
    }

    m_value = ZVXMLText::SkipBlanks(place + 1, m_end);
    m_hasQuotes = m_value != m_end && IsQuote(*m_value);
    if (!m_hasQuotes)
    {
        m_valueEnd = m_position = SkipUnquoted(m_value, false);
        return true;
    }
    const wchar_t quote = *m_value++;
    m_valueEnd = ZVXMLText::FindCharacter(m_value, m_end, quote);
    m_position = m_valueEnd != m_end ? m_valueEnd + 1 : m_end;
    return true;
}

bool ZVXMLAttributeReader::Find(const wchar_t* name, int32_t nameLength, bool fold)
{
    while (Read())
        if (m_nameEnd - m_name == nameLength && ZVXMLText::AreEqual(m_name, name, nameLength, fold))
            return true;
    return false;
}
