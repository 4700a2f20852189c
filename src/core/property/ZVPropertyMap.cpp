#include "core/property/ZVPropertyMap.h"

#include "core/xml/ZVXMLDocument.h"

#include <algorithm>
#include <bit>
#include <climits>

namespace
{
constexpr const wchar_t* ItemElement = L"Item";
constexpr const wchar_t* NameAttribute = L"Name";
constexpr const wchar_t* VersionAttribute = L"version";

// The most characters that the length-prefixed form adds to a text: two brackets, a colon and ten digits.
constexpr int32_t LargestPrefix = 13;

ZVString TextOf(int64_t value)
{
    return ZVString::FromInt(value);
}

ZVString TextOf(uint64_t value)
{
    return ZVString::FromUInt(value);
}

ZVString TextOf(double value)
{
    return ZVString::FromDouble(value);
}

ZVString TextOf(const void* value)
{
    return ZVFormat(L"%p", value);
}

double ParseDouble(const ZVString& text)
{
    return text.ToDouble(nullptr, true, INT32_MAX, true);
}
}

ZVPropertyMap::ZVPropertyMap(const ZVPropertyMap& other)
{
    ZVPropertyMap::CopyFrom(other);
}

ZVPropertyMap& ZVPropertyMap::operator=(const ZVPropertyMap& other)
{
    CopyFrom(other);
    return *this;
}

ZVPropertyMap::~ZVPropertyMap() = default;

const ZVPropertyMap::Entries& ZVPropertyMap::GetEntries() const
{
    static const Entries none;
    return m_entries != nullptr ? *m_entries : none;
}

bool ZVPropertyMap::IsSet(const wchar_t* key) const
{
    return GetEntries().Contains(key);
}

ZVString ZVPropertyMap::GetString(const wchar_t* key, const ZVString& defaultValue) const
{
    const ZVString* value = GetEntries().FindValue(key);
    return value != nullptr ? *value : defaultValue;
}

int32_t ZVPropertyMap::GetInt(const wchar_t* key, int32_t defaultValue) const
{
    return GetString(key, TextOf(int64_t {defaultValue})).ToInt();
}

int64_t ZVPropertyMap::GetInt64(const wchar_t* key, int64_t defaultValue) const
{
    return GetString(key, TextOf(defaultValue)).ToInt64();
}

uint64_t ZVPropertyMap::GetUInt64(const wchar_t* key, uint64_t defaultValue) const
{
    return GetString(key, TextOf(defaultValue)).ToUInt64();
}

double ZVPropertyMap::GetDouble(const wchar_t* key, double defaultValue) const
{
    return ParseDouble(GetString(key, TextOf(defaultValue)));
}

void* ZVPropertyMap::GetPointer(const wchar_t* key, void* defaultValue) const
{
    return std::bit_cast<void*>(GetString(key, TextOf(defaultValue)).ToUInt64FromHex());
}

void ZVPropertyMap::SetString(const wchar_t* key, const ZVString& value, bool removeIfEmpty)
{
    if (removeIfEmpty && value.IsEmpty())
    {
        Remove(key);
        return;
    }
    if (m_entries == nullptr)
        m_entries = std::make_unique<Entries>();
    m_entries->SetAt(key, value);
}

void ZVPropertyMap::SetInt(const wchar_t* key, int32_t value)
{
    SetString(key, TextOf(int64_t {value}));
}

void ZVPropertyMap::SetInt64(const wchar_t* key, int64_t value)
{
    SetString(key, TextOf(value));
}

void ZVPropertyMap::SetUInt64(const wchar_t* key, uint64_t value)
{
    SetString(key, TextOf(value));
}

void ZVPropertyMap::SetPointer(const wchar_t* key, const void* value)
{
    SetString(key, TextOf(value));
}

void ZVPropertyMap::SetDouble(const wchar_t* key, double value)
{
    SetString(key, TextOf(value));
}

void ZVPropertyMap::Clear()
{
    m_entries.reset();
}

bool ZVPropertyMap::Remove(const wchar_t* key)
{
    if (m_entries == nullptr || !m_entries->RemoveKey(key))
        return false;
    if (m_entries->IsEmpty())
        Clear();
    return true;
}

bool ZVPropertyMap::CopyFrom(const ZVPropertyMap& other)
{
    if (this == &other)
        return true;
    Clear();
    return MergeFrom(other);
}

bool ZVPropertyMap::MergeFrom(const ZVPropertyMap& other)
{
    if (this == &other)
        return true;
    for (const auto& entry : other.GetEntries())
        SetString(entry.Key, entry.Value, false);
    return true;
}

bool ZVPropertyMap::IsEqual(const ZVPropertyMap& other) const
{
    if (GetCount() != other.GetCount())
        return false;
    for (const auto& entry : GetEntries())
    {
        const ZVString* otherValue = other.GetEntries().FindValue(entry.Key);
        if (otherValue == nullptr || *otherValue != entry.Value)
            return false;
    }
    return true;
}

void ZVPropertyMap::Save(ZVString& text, bool withItems) const
{
    text.AppendLengthPrefixed(withItems ? GetCount() : 0);
    if (!withItems)
        return;
    // The buffer of the length-prefixed form grows in small steps, so the room for a large map is made beforehand.
    int64_t room = 0;
    for (const auto& entry : GetEntries())
        room += int64_t {entry.Key.GetLength()} + entry.Value.GetLength() + 2 * LargestPrefix;
    text.Append(nullptr, static_cast<int32_t>(std::min<int64_t>(room, INT32_MAX)), 1);
    for (const auto& entry : GetEntries())
    {
        text.AppendLengthPrefixed(entry.Key);
        text.AppendLengthPrefixed(entry.Value);
    }
}

bool ZVPropertyMap::Load(const ZVString& text)
{
    int32_t position = 0;
    return Load(text, position);
}

bool ZVPropertyMap::Load(const ZVString& text, int32_t& position)
{
    Clear();
    const int32_t count = text.ReadLengthPrefixedInt(position, 0);
    ZVString key;
    ZVString value;
    for (int32_t index = 0; index < count; ++index)
    {
        int32_t place = position;
        if (!text.ReadLengthPrefixed(place, key) || !text.ReadLengthPrefixed(place, value))
            return false;
        SetString(key, value, false);
        position = place;
    }
    return true;
}

void ZVPropertyMap::ToXML(ZVString& result, const wchar_t* rootName, bool emptyIfNoItems, double version) const
{
    result.Empty();
    if (emptyIfNoItems && GetCount() == 0)
        return;
    ZVXMLDocument items(ZVXMLDocument::FoldNames);
    WriteItems(items);
    result.AppendPieces(L"<", rootName, L" version=\"", ZVString::FromDouble(version, 1, true, 0, 0));
    result.AppendPieces(L"\">\r\n", items.GetDocument(), L"</", rootName);
    result.Append(L">");
}

bool ZVPropertyMap::FromXML(const ZVString& text, const wchar_t* rootName, double version)
{
    Clear();
    if (text.IsEmpty())
        return true;
    // The result is not checked: in a damaged document the items before the damage are still there.
    ZVXMLDocument document(ZVXMLDocument::FoldNames);
    document.SetDocument(text);
    if (!document.FindElement(rootName) || ParseDouble(document.GetAttribute(VersionAttribute)) != version)
        return false;
    document.EnterElement();
    ReadItems(document);
    document.LeaveElement();
    return true;
}

void ZVPropertyMap::WriteItems(ZVXMLDocument& document) const
{
    for (const auto& entry : GetEntries())
    {
        document.AddElement(ItemElement, entry.Value, 0);
        document.SetAttribute(NameAttribute, entry.Key);
    }
}

void ZVPropertyMap::ReadItems(ZVXMLDocument& document)
{
    Clear();
    while (document.FindElement(ItemElement))
        if (document.IsElementComplete())
            SetString(document.GetAttribute(NameAttribute), document.GetText(), false);
}

void ZVPropertyMap::ToDisplayText(ZVString& result) const
{
    constexpr const wchar_t* Indentation = L"";
    constexpr const wchar_t* LineEnd = L"\r\n";
    result.Empty();
    for (const auto& entry : GetEntries())
        result.AppendFormat(L"%s%s: %s%s", Indentation, entry.Key, entry.Value, LineEnd);
}
