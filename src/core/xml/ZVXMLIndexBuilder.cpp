#include "core/xml/ZVXMLIndexBuilder.h"

ZVXMLIndexBuilder::ZVXMLIndexBuilder(const ZVString& document, ZVXMLText::Case names, ZVXMLElementIndex& index)
    : m_text(document.GetText()),
      m_end(m_text + document.GetLength()),
      m_index(index),
      m_reader(m_text, 0, document.GetLength()),
      m_names(names)
{
}

bool ZVXMLIndexBuilder::Build()
{
    for (;;)
    {
        switch (m_reader.Read())
        {
        case ZVXMLNodeType::Element:
            StartElement();
            break;
        case ZVXMLNodeType::EndTag:
            EndElement();
            break;
        case ZVXMLNodeType::Text:
        case ZVXMLNodeType::CDATASection:
            m_hasText = true;
            break;
        case ZVXMLNodeType::Error:
            AddError(m_reader.GetErrorText());
            FinishAllOpen(m_reader.GetStart());
            return false;
        case ZVXMLNodeType::EndOfText:
            // The elements around the innermost one are open for the same reason, so one message is enough.
            if (m_open != 0)
                AddError(ZVFormat(L"Element '%s' at offset %d not ended", ElementName(m_open), m_index[m_open].Start));
            FinishAllOpen(m_reader.GetEnd());
            return m_errorCount == 0;
        default:
            break;
        }
    }
}

void ZVXMLIndexBuilder::StartElement()
{
    const uint32_t index = m_index.Insert(m_open, m_previous);
    ZVXMLElement& element = m_index[index];
    element.Start = m_reader.GetStart();
    element.SetTagLengths(m_reader.GetLength(), 0);
    m_open = index;
    m_previous = 0;
    if (m_reader.IsEmptyElement())
    {
        element.FlagsAndLevel |= ZVXMLElement::EmptyElement;
        FinishOpen(m_reader.GetEnd(), 0);
    }
}

void ZVXMLIndexBuilder::EndElement()
{
    if (m_open == 0)
    {
        if (WantsTagError())
            AddError(ZVFormat(L"No start tag for end tag '%s' at offset %d", TagName(), m_reader.GetStart()));
        return;
    }

    if (!IsEndTagOf(m_open))
    {
        if (WantsTagError())
            AddError(ZVFormat(L"End tag '%s' at offset %d does not match start tag '%s' at offset %d", TagName(),
                              m_reader.GetStart(), ElementName(m_open), m_index[m_open].Start));
        // Most likely this is the misspelt end tag of this element, or it is that of the parent and this element's own is
        // missing. Looking further up would take, for each such tag, time in proportion to the depth of the tree.
        const uint32_t parent = m_index[m_open].Parent;
        if (parent != 0 && IsEndTagOf(parent))
            FinishOpen(m_reader.GetStart(), 0);
    }
    FinishOpen(m_reader.GetEnd(), m_reader.GetLength());
}

void ZVXMLIndexBuilder::FinishOpen(int32_t end, int32_t endTagLength)
{
    ZVXMLElement& element = m_index[m_open];
    element.Length = end - element.Start;
    element.SetTagLengths(element.PackedStartTag(), endTagLength);
    m_previous = m_open;
    m_open = element.Parent;
}

void ZVXMLIndexBuilder::FinishAllOpen(int32_t end)
{
    while (m_open != 0)
    {
        m_index[m_open].FlagsAndLevel |= ZVXMLElement::CutOff;
        FinishOpen(end, 0);
    }
}

bool ZVXMLIndexBuilder::IsEndTagOf(uint32_t element) const
{
    const wchar_t* name = m_text + m_index[element].Start + 1;
    const int32_t length = m_reader.GetNameLength();
    return m_end - name > length && ZVXMLText::AreEqual(name, m_reader.GetName(), length, m_names) &&
           ZVXMLText::IsNameEnd(name[length]);
}

ZVString ZVXMLIndexBuilder::ElementName(uint32_t element) const
{
    const wchar_t* name = m_text + m_index[element].Start + 1;
    return ZVString(name, static_cast<int32_t>(ZVXMLText::SkipName(name, m_end) - name));
}

void ZVXMLIndexBuilder::AddError(const ZVString& message)
{
    ++m_errorCount;
    if (!m_errors.IsEmpty())
        m_errors.AppendCharacter(L'\n');
    m_errors.Append(message);
}
