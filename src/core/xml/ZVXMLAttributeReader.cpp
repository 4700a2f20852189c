#include "core/xml/ZVXMLAttributeReader.h"

#include "core/xml/ZVXMLText.h"

namespace
{
bool IsQuote(wchar_t character)
{
    return character == L'"' || character == L'\'';
}

// The place where a name or an unquoted value ends, at most end. Inside quotes nothing ends it, just as a ">" inside quotes does
// not end the tag.
template <class Test>
const wchar_t* SkipUnquoted(const wchar_t* text, const wchar_t* end, Test isEnd)
{
    for (; text != end && !isEnd(*text); ++text)
        if (IsQuote(*text))
        {
            text = ZVXMLText::FindCharacter(text + 1, end, *text);
            if (text == end)
                break;
        }
    return text;
}
}

const wchar_t* ZVXMLAttributeReader::SkipName(const wchar_t* text) const
{
    return SkipUnquoted(text, m_end, [](wchar_t character) { return character == L'=' || ZVXMLText::IsBlank(character); });
}

const wchar_t* ZVXMLAttributeReader::SkipUnquotedValue(const wchar_t* text) const
{
    return SkipUnquoted(text, m_end, ZVXMLText::IsBlank);
}

bool ZVXMLAttributeReader::Read()
{
    const wchar_t* place = m_position;
    while (place != m_end && (ZVXMLText::IsBlank(*place) || *place == L'/'))
        ++place;
    if (place == m_end)
        return false;

    m_name = place;
    m_nameEnd = SkipName(place);
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
        m_valueEnd = m_position = SkipUnquotedValue(m_value);
        return true;
    }
    const wchar_t quote = *m_value++;
    m_valueEnd = ZVXMLText::FindCharacter(m_value, m_end, quote);
    m_position = m_valueEnd != m_end ? m_valueEnd + 1 : m_end;
    return true;
}

bool ZVXMLAttributeReader::Find(std::wstring_view name, ZVXMLText::Case names)
{
    const int32_t length = static_cast<int32_t>(name.size());
    while (Read())
        if (m_nameEnd - m_name == length && ZVXMLText::AreEqual(m_name, name.data(), length, names))
            return true;
    return false;
}
