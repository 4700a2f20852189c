#include "core/xml/ZVXMLTokenReader.h"

#include "core/xml/ZVXMLText.h"

#include <algorithm>
#include <string_view>

namespace
{
constexpr const wchar_t* Incorrect = L"Incorrect %s at offset %d";
constexpr const wchar_t* Unterminated = L"%s at offset %d unterminated";

// Nodes that end at the first occurrence of a text.
struct Markup
{
    std::wstring_view Opening;
    std::wstring_view Ending;
    ZVXMLNodeType Type;
    const wchar_t* Name;
    const wchar_t* WrongOpening;  // the error if only the first characters of the opening are there
};

// An opening has only the characters that tell it from the others: "<![C" is enough for a CDATA section.
constexpr Markup Markups[] = {
    {L"<?",   L"?>",  ZVXMLNodeType::ProcessingInstruction, L"Processing instruction", nullptr       },
    {L"<!--", L"-->", ZVXMLNodeType::Comment,               L"Comment",                L"comment tag"},
    {L"<![C", L"]]>", ZVXMLNodeType::CDATASection,          L"CDATA Section",          L"! tag"      },
};

// The number of characters before and after the content of a node.
struct Markers
{
    ZVXMLNodeType Type;
    int32_t Front;
    int32_t Back;
};

constexpr Markers NodeMarkers[] = {
    {ZVXMLNodeType::Comment,               4, 3},
    {ZVXMLNodeType::ProcessingInstruction, 2, 2},
    {ZVXMLNodeType::CDATASection,          9, 3},
    {ZVXMLNodeType::UnpairedEndTag,        2, 1},
};

// The place after the first occurrence of an ending, or null. All endings end with ">".
const wchar_t* FindAfter(const wchar_t* text, const wchar_t* end, std::wstring_view ending)
{
    const size_t front = ending.size() - 1;
    for (const wchar_t* place = text; (place = ZVXMLText::FindCharacter(place, end, L'>')) != end; ++place)
        if (static_cast<size_t>(place - text) >= front && std::equal(ending.begin(), ending.end(), place - front))
            return place + 1;
    return nullptr;
}
}

ZVXMLNodeType ZVXMLTokenReader::Read()
{
    m_start = m_position;
    if (m_position == m_end)
        return ZVXMLNodeType::EndOfText;
    if (*m_position != L'<')
        return ReadText();
    if (m_position + 1 == m_end)
        return Fail(Unterminated, L"tag");

    const wchar_t next = m_position[1];
    if (next == L'/')
        return ReadEndTag();
    if (ZVXMLText::IsNameStart(next))
        return ReadStartTag();
    if (next == L'?' || next == L'!')
        return ReadMarkup();
    return Fail(Incorrect, L"tag name character");
}

ZVXMLNodeType ZVXMLTokenReader::ReadText()
{
    const wchar_t* place = ZVXMLText::SkipBlanks(m_start, m_end);
    if (place == m_end || *place == L'<')
    {
        m_position = place;
        return ZVXMLNodeType::WhiteSpace;
    }
    m_position = ZVXMLText::FindCharacter(place, m_end, L'<');
    return ZVXMLNodeType::Text;
}

ZVXMLNodeType ZVXMLTokenReader::ReadStartTag()
{
    m_name = m_start + 1;
    const wchar_t* place = ZVXMLText::SkipName(m_name, m_end);
    m_nameLength = static_cast<int32_t>(place - m_name);
    for (; place != m_end; ++place)
    {
        const wchar_t character = *place;
        if (character > L'>')
            continue;
        if (character == L'>')
        {
            m_isEmptyElement = place[-1] == L'/';
            m_position = place + 1;
            return ZVXMLNodeType::Element;
        }
        if (character == L'"' || character == L'\'')
        {
            place = ZVXMLText::FindCharacter(place + 1, m_end, character);
            if (place == m_end)
                break;
        }
    }
    return Fail(Unterminated, L"Element tag");
}

ZVXMLNodeType ZVXMLTokenReader::ReadEndTag()
{
    m_name = m_start + 2;
    const wchar_t* place = ZVXMLText::SkipName(m_name, m_end);
    m_nameLength = static_cast<int32_t>(place - m_name);
    place = ZVXMLText::FindCharacter(place, m_end, L'>');
    if (place == m_end)
        return Fail(Unterminated, L"Element end tag");
    if (m_nameLength == 0)
        return Fail(Incorrect, L"tag");
    m_position = place + 1;
    return ZVXMLNodeType::EndTag;
}

ZVXMLNodeType ZVXMLTokenReader::ReadMarkup()
{
    const std::wstring_view rest(m_start, static_cast<size_t>(m_end - m_start));
    if (rest.starts_with(L"<!D"))
        return ReadDocumentType();

    for (const Markup& markup : Markups)
    {
        if (rest.starts_with(markup.Opening))
        {
            const wchar_t* after = FindAfter(m_start + markup.Opening.size(), m_end, markup.Ending);
            if (after == nullptr)
                return Fail(Unterminated, markup.Name);
            m_position = after;
            return markup.Type;
        }
        if (markup.Opening.starts_with(rest))
            return Fail(Unterminated, rest.size() > 2 ? markup.Name : L"tag");
        if (rest.starts_with(markup.Opening.substr(0, 3)))
            return Fail(Incorrect, markup.WrongOpening);
    }
    return Fail(Incorrect, L"! tag");
}

ZVXMLNodeType ZVXMLTokenReader::ReadDocumentType()
{
    // Declarations inside have brackets of their own. Quotes are not looked at.
    int32_t depth = 0;
    for (const wchar_t* place = m_start; place != m_end; ++place)
    {
        if (*place == L'<')
        {
            ++depth;
        }
        else if (*place == L'>' && --depth == 0)
        {
            m_position = place + 1;
            return ZVXMLNodeType::DocumentType;
        }
    }
    return Fail(Unterminated, L"Doctype");
}

ZVXMLNodeType ZVXMLTokenReader::Fail(const wchar_t* format, const wchar_t* what)
{
    m_errorFormat = format;
    m_errorSubject = what;
    m_position = m_start;
    return ZVXMLNodeType::Error;
}

ZVString ZVXMLTokenReader::GetErrorText() const
{
    return m_errorFormat != nullptr ? ZVFormat(m_errorFormat, m_errorSubject, GetStart()) : ZVString();
}

void ZVXMLTokenReader::CutMarkers(ZVXMLNodeType type, const wchar_t*& text, int32_t& length)
{
    for (const Markers& markers : NodeMarkers)
        if (markers.Type == type)
        {
            const int32_t front = std::min(markers.Front, length);
            text += front;
            length = std::max(length - front - markers.Back, 0);
            return;
        }
}
