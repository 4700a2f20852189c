// The XMLFN form of ZVFilename, and the rest of what Parse reads.

#include "core/xml/ZVXMLDocument.h"
#include "system/filename/ZVFilename.h"

namespace
{
constexpr wchar_t FormStart[] = L"<XMLFN version=";
constexpr wchar_t RootElement[] = L"XMLFN";
constexpr wchar_t VersionAttribute[] = L"version";
constexpr wchar_t Version[] = L"1.0";
constexpr wchar_t ItemElement[] = L"Item";
constexpr wchar_t NameAttribute[] = L"Name";
constexpr wchar_t FilenameItem[] = L"Filename";

// EscapeQuotationMarks and HandleControlCharacters. No escape looks at the third bit.
constexpr uint32_t EscapeFlags = 0x1a;

// The most characters that may stand between the last "." and a ";".
constexpr int32_t MaximumExtensionLength = 5;

ZVString Escaped(const ZVString& text)
{
    ZVString escaped = text;
    escaped.EscapeXML(EscapeFlags);
    return escaped;
}

void AppendItem(ZVString& form, const ZVString& name, const ZVString& value)
{
    form.AppendPieces(L"<Item Name=\"", Escaped(name), L"\">", Escaped(value));
    form.Append(L"</Item>");
}
}

void ZVFilename::Parse(bool clearProperties)
{
    if (clearProperties)
        m_properties.Clear();
    if (m_path.StartsWith(FormStart, false))
        ParseSerialized();
    else
        CutPostExtensionData();
}

void ZVFilename::ParseSerialized()
{
    // A damaged form still gives the items before the damage.
    ZVXMLDocument document(ZVXMLDocument::FoldNames);
    document.SetDocument(m_path);
    m_path = ZVString();
    if (!document.FindElement(RootElement) || document.GetAttribute(VersionAttribute) != Version)
        return;
    document.EnterElement();
    while (document.FindElement(ItemElement))
    {
        const ZVString name = document.GetAttribute(NameAttribute);
        if (name.IsEqual(FilenameItem, false))
            m_path = document.GetText();
        else
            m_properties.SetString(name, document.GetText());
    }
    document.LeaveElement();
}

void ZVFilename::CutPostExtensionData()
{
    const int32_t dot = m_path.ReverseFind(L'.');
    const int32_t semicolon = dot == -1 ? -1 : m_path.Find(L';', dot + 1);
    const int32_t extensionLength = semicolon - dot - 1;
    if (semicolon == -1 || extensionLength < 1 || extensionLength > MaximumExtensionLength)
        return;
    if (IsRemote(m_path) || m_path.EndsWith(L"/", false))
        return;
    m_properties.SetString(PostExtensionDataProperty, m_path.Mid(semicolon + 1));
    m_path = m_path.Left(semicolon);
}

ZVString ZVFilename::GetSerialized() const
{
    if (m_properties.GetCount() == 0)
        return m_path;
    ZVString form = L"<XMLFN version=\"1.0\">";
    AppendItem(form, FilenameItem, m_path);
    m_properties.ForEach(
        [&form](const ZVString& name, const ZVString& value)
        {
            if (!name.IsEqual(FilenameItem, false))
                AppendItem(form, name, value);
        });
    form.Append(L"</XMLFN>");
    return form;
}
