#include "core/xml/ZVXMLDocument.h"

#include "core/xml/ZVXMLAttributeReader.h"
#include "core/xml/ZVXMLIndexBuilder.h"

#include <algorithm>

bool ZVXMLDocument::SetDocument(const ZVString& text)
{
    m_document = text;
    m_index.Clear();
    m_saved.RemoveAll();
    ResetPosition();

    ZVXMLIndexBuilder builder(m_document, NameCase(), m_index);
    m_isDamaged = !builder.Build();
    const uint32_t top = m_index[0].FirstChild;
    if (top == 0)
        builder.AddError(builder.HasText() ? L"No root element" : L"Empty document");
    else if (!m_index[top].Has(ZVXMLElement::LastSibling))
        builder.AddError(L"Root element has sibling");
    m_error = builder.GetErrors();
    return IsWellFormed();
}

bool ZVXMLDocument::IsWellFormed() const
{
    const uint32_t top = m_index[0].FirstChild;
    return !m_isDamaged && top != 0 && m_index[top].Has(ZVXMLElement::LastSibling);
}

ZVString ZVXMLDocument::GetEncoding(const ZVString& text)
{
    constexpr std::wstring_view Declaration = L"<?xml";
    constexpr std::wstring_view Encoding = L"encoding";
    constexpr wchar_t ByteOrderMark = 0xfeff;

    std::wstring_view head = text.View();
    if (head.starts_with(ByteOrderMark))
        head.remove_prefix(1);
    head.remove_prefix(std::min(head.find_first_not_of(ZVXMLText::Blanks), head.size()));
    if (!head.starts_with(Declaration) || head.size() == Declaration.size() || !ZVXMLText::IsBlank(head[Declaration.size()]))
        return ZVString();

    ZVXMLTokenReader reader(head.data(), 0, static_cast<int32_t>(head.size()));
    if (reader.Read() != ZVXMLNodeType::ProcessingInstruction)
        return ZVString();
    constexpr int32_t EndMark = 2;
    ZVXMLAttributeReader attributes(head.data() + Declaration.size(), head.data() + reader.GetLength() - EndMark);
    if (!attributes.Find(Encoding, ZVXMLText::Case::Exact))
        return ZVString();
    return ZVString(attributes.GetValue(), attributes.GetValueLength());
}

bool ZVXMLDocument::FindElement(const wchar_t* name)
{
    const uint32_t found =
        name != nullptr ? FindPath(m_position.Parent, m_position.Main, name) : NextElement(m_position.Parent, m_position.Main);
    if (found == 0)
        return false;
    m_position = {m_index[found].Parent, found, 0};
    LeaveNode();
    return true;
}

bool ZVXMLDocument::FindChildElement(const wchar_t* name)
{
    if (m_position.Main == 0)
        return false;
    const uint32_t found =
        name != nullptr ? FindPath(m_position.Main, m_position.Child, name) : NextElement(m_position.Main, m_position.Child);
    // A path from the root can lead to a top element, which is not the child of any element.
    if (found == 0 || m_index[found].Parent == 0)
        return false;
    const uint32_t main = m_index[found].Parent;
    m_position = {m_index[main].Parent, main, found};
    LeaveNode();
    return true;
}

bool ZVXMLDocument::EnterElement()
{
    if (m_position.Main == 0)
        return false;
    m_position = {m_position.Main, m_position.Child, 0};
    LeaveNode();
    return true;
}

bool ZVXMLDocument::LeaveElement()
{
    if (m_position.Parent == 0)
        return false;
    m_position = {m_index[m_position.Parent].Parent, m_position.Parent, m_position.Main};
    LeaveNode();
    return true;
}

void ZVXMLDocument::ResetPosition()
{
    m_position = {};
    LeaveNode();
}

void ZVXMLDocument::ResetMainPosition()
{
    m_position = {m_position.Parent, 0, 0};
    LeaveNode();
}

void ZVXMLDocument::ResetChildPosition()
{
    m_position.Child = 0;
}

void ZVXMLDocument::SavePosition(const wchar_t* name)
{
    m_saved.SetAt(name, m_position);
}

bool ZVXMLDocument::RestorePosition(const wchar_t* name)
{
    if (!m_saved.Lookup(name, m_position))
        return false;
    LeaveNode();
    return true;
}

ZVXMLNodeType ZVXMLDocument::FindNode(int32_t types)
{
    const bool isAtOtherNode = m_node.Type != ZVXMLNodeType::Element;
    uint32_t main = m_position.Main;
    int32_t offset = main != 0 ? m_index[main].End() : GetContentStart(m_position.Parent);
    if (isAtOtherNode)
        offset = m_node.Start + m_node.Length;

    const uint32_t parent = m_position.Parent;
    const int32_t end = parent != 0 ? m_index[parent].End() : m_document.GetLength();
    ZVXMLTokenReader reader(m_document, offset, std::max(offset, end));
    for (;;)
    {
        ZVXMLNodeType type = reader.Read();
        if (type == ZVXMLNodeType::EndOfText || type == ZVXMLNodeType::Error)
            return ZVXMLNodeType::EndOfText;
        if (type == ZVXMLNodeType::EndTag)
        {
            // Inside an element the first end tag always ends it.
            if (parent != 0)
                return ZVXMLNodeType::EndOfText;
            type = ZVXMLNodeType::UnpairedEndTag;
        }
        if (type == ZVXMLNodeType::Element)
        {
            main = NextElement(parent, main);
            if (main == 0)
                return ZVXMLNodeType::EndOfText;
            reader.SeekTo(m_index[main].End());
        }
        if ((types & static_cast<int32_t>(type)) == 0)
            continue;
        if (main != m_position.Main)
            m_position = {parent, main, 0};
        m_node = {type, reader.GetStart(), reader.GetLength()};
        return type;
    }
}

ZVString ZVXMLDocument::GetName(uint32_t element) const
{
    return element != 0 ? Part(m_index[element].Start + 1, GetNameEnd(element)) : ZVString();
}

int32_t ZVXMLDocument::GetNameEnd(uint32_t element) const
{
    const wchar_t* text = m_document.GetText();
    return static_cast<int32_t>(ZVXMLText::SkipName(text + m_index[element].Start + 1, text + m_document.GetLength()) - text);
}

int32_t ZVXMLDocument::GetStartTagLength(uint32_t element) const
{
    const ZVXMLElement& record = m_index[element];
    if (record.PackedStartTag() < ZVXMLElement::LongStartTag)
        return record.PackedStartTag();
    ZVXMLTokenReader reader(m_document, record.Start, record.End());
    reader.Read();
    return reader.GetLength();
}

int32_t ZVXMLDocument::GetEndTagLength(uint32_t element) const
{
    const ZVXMLElement& record = m_index[element];
    if (record.PackedEndTag() < ZVXMLElement::LongEndTag)
        return record.PackedEndTag();
    // An end tag may contain nearly anything, so its start cannot be found backwards from its end.
    const uint32_t lastChild = m_index.LastChild(element);
    const int32_t start = lastChild != 0 ? m_index[lastChild].End() : record.Start + GetStartTagLength(element);
    ZVXMLTokenReader reader(m_document, start, record.End());
    for (;;)
    {
        const ZVXMLNodeType type = reader.Read();
        if (type == ZVXMLNodeType::EndTag || type == ZVXMLNodeType::Error || type == ZVXMLNodeType::EndOfText)
            return record.End() - reader.GetStart();
    }
}

int32_t ZVXMLDocument::GetContentStart(uint32_t element) const
{
    return element != 0 ? m_index[element].Start + GetStartTagLength(element) : 0;
}

int32_t ZVXMLDocument::GetContentEnd(uint32_t element) const
{
    return element != 0 ? m_index[element].End() - GetEndTagLength(element) : m_document.GetLength();
}

ZVString ZVXMLDocument::GetText() const
{
    if (m_node.Type == ZVXMLNodeType::Element)
        return GetElementText(m_position.Main);

    const wchar_t* text = m_document.GetText() + m_node.Start;
    int32_t length = m_node.Length;
    ZVXMLTokenReader::CutMarkers(m_node.Type, text, length);
    ZVString content;
    content.Append(text, length);
    if (m_node.Type == ZVXMLNodeType::Text)
        content.DecodeXMLEntities();
    return content;
}

ZVString ZVXMLDocument::GetElementText(uint32_t element) const
{
    if (element == 0 || m_index[element].FirstChild != 0 || m_index[element].Has(ZVXMLElement::EmptyElement))
        return ZVString();
    const int32_t start = GetContentStart(element);
    const int32_t end = GetContentEnd(element);
    if (wmemchr(m_document.GetText() + start, L'<', static_cast<size_t>(end - start)) != nullptr)
        return JoinText(start, end);
    ZVString text = Part(start, end);
    text.DecodeXMLEntities();
    return text;
}

ZVString ZVXMLDocument::JoinText(int32_t start, int32_t end) const
{
    ZVString joined;
    joined.GetBuffer(end - start, true);
    joined.ReleaseBuffer(0);
    ZVXMLTokenReader reader(m_document, start, end);
    for (;;)
    {
        const ZVXMLNodeType type = reader.Read();
        if (type == ZVXMLNodeType::EndOfText || type == ZVXMLNodeType::Error)
            return joined;
        if (type == ZVXMLNodeType::CDATASection)
        {
            const wchar_t* text = m_document.GetText() + reader.GetStart();
            int32_t length = reader.GetLength();
            ZVXMLTokenReader::CutMarkers(type, text, length);
            joined.Append(text, length);
        }
        else if (type == ZVXMLNodeType::Text || type == ZVXMLNodeType::WhiteSpace)
        {
            ZVString text = Part(reader.GetStart(), reader.GetEnd());
            text.DecodeXMLEntities();
            joined.Append(text.GetText(), text.GetLength());
        }
    }
}

int32_t ZVXMLDocument::GetTagBodyEnd(uint32_t element) const
{
    constexpr int32_t EmptyElementMark = 2;
    return GetContentStart(element) - (m_index[element].Has(ZVXMLElement::EmptyElement) ? EmptyElementMark : 1);
}

ZVString ZVXMLDocument::GetAttributeOf(uint32_t element, const wchar_t* name) const
{
    if (element == 0 || name == nullptr)
        return ZVString();
    const wchar_t* text = m_document.GetText();
    ZVXMLAttributeReader attributes(text + GetNameEnd(element), text + GetTagBodyEnd(element));
    if (!attributes.Find(name, NameCase()))
        return ZVString();
    ZVString value;
    value.Append(attributes.GetValue(), attributes.GetValueLength());
    value.DecodeXMLEntities();
    return value;
}
