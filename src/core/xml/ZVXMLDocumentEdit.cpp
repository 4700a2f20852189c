#include "core/xml/ZVXMLDocument.h"

#include "core/xml/ZVXMLAttributeReader.h"
#include "core/xml/ZVXMLText.h"

#include <algorithm>

namespace
{
constexpr const wchar_t* LineBreak = L"\r\n";

bool IsElementName(const wchar_t* name)
{
    return name != nullptr && ZVXMLText::IsNameStart(*name) && wcspbrk(name, L" \t\n\r/><") == nullptr;
}

bool IsAttributeName(const wchar_t* name)
{
    return name != nullptr && *name != L'\0' && wcspbrk(name, L" \t\n\r/><=\"'") == nullptr;
}

// A text in the form in which it stands between two tags.
ZVString MakeContent(const ZVString& text, bool useCDATA)
{
    if (text.IsEmpty() || !useCDATA)
        return text.GetEscapedXML();
    // An end mark in the text is split between two sections.
    ZVString inner = text;
    inner.Replace(L"]]>", L"]]]]><![CDATA[>");
    ZVString content;
    content.AppendPieces(L"<![CDATA[", inner, L"]]>");
    return content;
}
}

// Returns by how much the document has grown.
int32_t ZVXMLDocument::ReplaceText(int32_t start, int32_t end, const ZVString& text)
{
    // Strings above this size grow by a fixed step, with which many insertions would take quadratic time.
    constexpr int32_t LargeDocument = 0x100000;
    constexpr int32_t LargestStep = 0x4000000;
    const int32_t difference = text.GetLength() - (end - start);
    const int32_t length = m_document.GetLength();
    if (difference > 0 && length > LargeDocument && m_document.GetCapacity() - length <= difference)
        m_document.Append(nullptr, difference, std::min(length / 2, LargestStep));
    m_document.Replace(start, end, ZVStringPiece(text));
    LeaveNode();
    return difference;
}

int32_t ZVXMLDocument::GetEndWithLineBreak(uint32_t element) const
{
    const int32_t limit = GetContentEnd(m_index[element].Parent);
    int32_t end = m_index[element].End();
    const int32_t carriageReturn = end < limit && m_document[end] == L'\r' ? 1 : 0;
    end += carriageReturn;
    return end < limit && m_document[end] == L'\n' ? end + 1 : end;
}

// Replaces characters that lie in the start tag of an element.
void ZVXMLDocument::ReplaceInStartTag(uint32_t element, int32_t start, int32_t end, const ZVString& text)
{
    const int32_t startTag = GetStartTagLength(element);
    const int32_t endTag = GetEndTagLength(element);
    const int32_t difference = ReplaceText(start, end, text);
    m_index[element].Length += difference;
    m_index[element].SetTagLengths(startTag + difference, endTag);
    m_index.MoveChildren(element, difference);
    m_index.MoveFollowing(element, difference);
}

// Turns a single tag into a start tag and an end tag with nothing between them.
void ZVXMLDocument::OpenEmptyElement(uint32_t element)
{
    int32_t bodyEnd = GetTagBodyEnd(element);
    const int32_t nameEnd = GetNameEnd(element);
    // If a slash were left at the end, the tag would still be an empty element.
    while (bodyEnd > nameEnd && (ZVXMLText::IsBlank(m_document[bodyEnd - 1]) || m_document[bodyEnd - 1] == L'/'))
        --bodyEnd;
    ZVString tags;
    tags.AppendPieces(L"></", GetName(element), L">");

    ZVXMLElement& record = m_index[element];
    const int32_t difference = ReplaceText(bodyEnd, record.End(), tags);
    record.Length += difference;
    record.SetTagLengths(bodyEnd + 1 - record.Start, tags.GetLength() - 1);
    record.FlagsAndLevel &= ~ZVXMLElement::EmptyElement;
    m_index.MoveFollowing(element, difference);
}

bool ZVXMLDocument::SetAttributeOf(uint32_t element, const wchar_t* name, const ZVString& value)
{
    if (element == 0 || !IsAttributeName(name))
        return false;
    ZVString quoted;
    quoted.AppendPieces(L"\"", value.GetEscapedXML(ZVString::ForAttribute), L"\"");

    const wchar_t* text = m_document.GetText();
    ZVXMLAttributeReader attributes(text + GetNameEnd(element), text + GetTagBodyEnd(element));
    ZVString written;
    int32_t start = 0;
    int32_t end = 0;
    if (attributes.Find(name, NameCase()))
    {
        start = static_cast<int32_t>(attributes.GetValue() - text);
        end = start + attributes.GetValueLength();
        if (attributes.HasQuotes())
            written = quoted.Mid(1, quoted.GetLength() - 2);
        else
            written.AppendPieces(attributes.HasEqualsSign() ? L"" : L"=", quoted);
    }
    else
    {
        start = end = static_cast<int32_t>(attributes.GetEnd() - text);
        // An attribute with "=" but no value would take the new attribute for its value.
        const bool waitsForValue = attributes.HasEqualsSign() && !attributes.HasQuotes() && attributes.GetValueLength() == 0;
        written.AppendPieces(waitsForValue ? L"\"\" " : L" ", name, L"=", quoted);
    }
    ReplaceInStartTag(element, start, end, written);
    return true;
}

bool ZVXMLDocument::SetTextOf(uint32_t element, const ZVString& text, bool useCDATA)
{
    if (element == 0)
        return false;
    LeaveNode();
    ZVXMLElement& record = m_index[element];
    const ZVString content = MakeContent(text, useCDATA);
    if (record.Has(ZVXMLElement::EmptyElement))
    {
        if (content.IsEmpty())
            return true;
        OpenEmptyElement(element);
    }

    const int32_t startTag = GetStartTagLength(element);
    const int32_t endTag = GetEndTagLength(element);
    const int32_t difference = ReplaceText(record.Start + startTag, record.End() - endTag, content);
    m_index.RemoveChildren(element);
    record.Length += difference;
    m_index.MoveFollowing(element, difference);
    if (element == m_position.Main)
        m_position.Child = 0;
    ForgetLostPositions();
    return true;
}

bool ZVXMLDocument::AddElement(const wchar_t* name, const ZVString& value, uint32_t flags)
{
    if ((flags & ChildOfMain) != 0)
        return AddChildElement(name, value, flags);
    const uint32_t added = InsertElement(m_position.Parent, m_position.Main, {name, value, flags});
    if (added == 0)
        return false;
    m_position = {m_position.Parent, added, 0};
    return true;
}

bool ZVXMLDocument::AddChildElement(const wchar_t* name, const ZVString& value, uint32_t flags)
{
    if (m_position.Main == 0)
        return false;
    const uint32_t added = InsertElement(m_position.Main, m_position.Child, {name, value, flags});
    if (added == 0)
        return false;
    m_position.Child = added;
    return true;
}

uint32_t ZVXMLDocument::InsertElement(uint32_t parent, uint32_t current, const NewElement& element)
{
    if (!IsElementName(element.Name))
        return 0;
    const bool isEmpty = element.Value.IsEmpty() || element.Has(NoEndTag);
    ZVString startTag;
    startTag.AppendPieces(L"<", element.Name, isEmpty ? (element.Has(BlankBeforeEnd) ? L" />" : L"/>") : L">");
    ZVString content;
    ZVString endTag;
    if (!isEmpty)
    {
        content = MakeContent(element.Value, element.Has(ValueAsCDATA));
        endTag.AppendPieces(L"</", element.Name, L">");
    }

    const bool inFront = element.Has(InFrontOfCurrent);
    if (current == 0)
        current = inFront ? m_index[parent].FirstChild : m_index.LastChild(parent);
    if (m_index[parent].Has(ZVXMLElement::EmptyElement))
        OpenEmptyElement(parent);

    int32_t place = 0;
    uint32_t previous = 0;
    const wchar_t* lead = L"";
    if (current == 0)
    {
        place = GetContentEnd(parent);
        if (parent != 0 && place == GetContentStart(parent))
            lead = LineBreak;
    }
    else
    {
        place = inFront ? m_index[current].Start : GetEndWithLineBreak(current);
        previous = inFront ? m_index.PreviousSibling(current) : current;
    }

    ZVString text;
    text.AppendPieces(lead, startTag, content, endTag);
    const int32_t elementEnd = text.GetLength();
    if (!element.Has(NoLineBreak))
        text.Append(LineBreak);

    ReplaceText(place, place, text);
    const uint32_t added = m_index.Insert(parent, previous);
    ZVXMLElement& record = m_index[added];
    record.Start = place + static_cast<int32_t>(wcslen(lead));
    record.Length = place + elementEnd - record.Start;
    record.SetTagLengths(startTag.GetLength(), endTag.GetLength());
    if (isEmpty)
        record.FlagsAndLevel |= ZVXMLElement::EmptyElement;
    m_index.MoveFollowing(added, text.GetLength());
    return added;
}

bool ZVXMLDocument::RemoveAt(uint32_t& position)
{
    const uint32_t element = position;
    if (element == 0)
        return false;
    const uint32_t previous = m_index.PreviousSibling(element);
    const int32_t difference = ReplaceText(m_index[element].Start, GetEndWithLineBreak(element), ZVString());
    m_index.MoveFollowing(element, difference);
    m_index.Remove(element);
    position = previous;
    if (&position == &m_position.Main)
        m_position.Child = 0;
    ForgetLostPositions();
    return true;
}

void ZVXMLDocument::ForgetLostPositions()
{
    if (m_saved.IsEmpty())
        return;
    for (ZVMapPosition place = m_saved.GetFirstPosition(); place;)
    {
        const auto* node = m_saved.GetNext(place);
        const Position& position = node->Value;
        // Record 0 is never freed, so a position with a missing element is not lost.
        if (m_index[position.Parent].Has(ZVXMLElement::Freed) || m_index[position.Main].Has(ZVXMLElement::Freed) ||
            m_index[position.Child].Has(ZVXMLElement::Freed))
            m_saved.RemoveKey(node->Key);
    }
}
