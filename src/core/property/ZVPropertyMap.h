#pragma once

#include "core/containers/ZVStringMap.h"
#include "core/string/ZVString.h"

#include <cstdint>
#include <memory>

class ZVXMLDocument;

// The general record of the system: names with text values. Tasks write their results into a map, and the main application reads
// its XMLPH form. Names are compared ignoring case, and an entry keeps the spelling with which its name was first set. All values
// are text: setters convert numbers to text, and getters parse them. A null name counts as the empty name. Nothing throws except
// std::bad_alloc.
//
// All forms have the entries in the order of the hash table, by bucket, and not in the order in which they were set.
class ZVPropertyMap
{
public:
    ZVPropertyMap() = default;
    // Copies each entry.
    ZVPropertyMap(const ZVPropertyMap& other);
    ZVPropertyMap& operator=(const ZVPropertyMap& other);

    // The order of the virtual functions is fixed, since maps cross library boundaries.
    virtual ~ZVPropertyMap();

    virtual bool IsSet(const wchar_t* key) const;

    // The value, or the default if the name is not set. For a value that is not a number the typed getters return what the parse
    // makes of it, and not the default. A double may have either decimal point and an exponent; a pointer is hexadecimal.
    virtual ZVString GetString(const wchar_t* key, const ZVString& defaultValue = ZVString()) const;
    virtual int32_t GetInt(const wchar_t* key, int32_t defaultValue = 0) const;
    virtual int64_t GetInt64(const wchar_t* key, int64_t defaultValue = 0) const;
    virtual uint64_t GetUInt64(const wchar_t* key, uint64_t defaultValue = 0) const;
    virtual double GetDouble(const wchar_t* key, double defaultValue = 0.0) const;
    virtual void* GetPointer(const wchar_t* key, void* defaultValue = nullptr) const;

    // Sets or replaces a value. With removeIfEmpty an empty value removes the name; otherwise the name is set to an empty value.
    virtual void SetString(const wchar_t* key, const ZVString& value, bool removeIfEmpty = false);
    virtual void SetInt(const wchar_t* key, int32_t value);
    virtual void SetInt64(const wchar_t* key, int64_t value);
    virtual void SetUInt64(const wchar_t* key, uint64_t value);
    virtual void SetPointer(const wchar_t* key, const void* value);
    // With up to 16 decimals and the decimal point of the locale.
    virtual void SetDouble(const wchar_t* key, double value);

    virtual void Clear();
    // False if the name is not set.
    virtual bool Remove(const wchar_t* key);

    // Replaces all entries by copies of the other map's. Copying a map to itself changes nothing. Always true.
    virtual bool CopyFrom(const ZVPropertyMap& other);
    // Adds copies of the other map's entries, which replace those of the same name, and keeps the rest. Always true.
    virtual bool MergeFrom(const ZVPropertyMap& other);
    // True for the same names, ignoring case, with exactly the same values.
    virtual bool IsEqual(const ZVPropertyMap& other) const;

    // Appends the length-prefixed form: the number of entries, then each name and value. Without withItems just the number 0.
    virtual void Save(ZVString& text, bool withItems = true) const;
    // Replaces the entries by those of the length-prefixed form at the start of a text, or at a position, which moves past what
    // was read. A text that does not begin with a number has no entries. False if the text has fewer entries than its number
    // says; the complete ones are then set, and the position is after the last of them.
    virtual bool Load(const ZVString& text);
    virtual bool Load(const ZVString& text, int32_t& position);

    // Sets result to the XMLPH form: an element rootName around the items, whose attribute version has one decimal after the
    // locale's decimal point. With emptyIfNoItems the text of a map without entries is empty.
    virtual void ToXML(ZVString& result, const wchar_t* rootName, bool emptyIfNoItems, double version) const;
    // Replaces the entries by those of the XMLPH form. Items before damage are read; an item that the end of the text cuts off is
    // left out, since nobody knows the rest of its value. False, with no entries, for another root or another version; an empty
    // text is a map without entries and gives true.
    virtual bool FromXML(const ZVString& text, const wchar_t* rootName, double version);
    // Adds an element Item for each entry at the position of the document, which ends at the last of them.
    virtual void WriteItems(ZVXMLDocument& document) const;
    // Replaces the entries by the Item elements after the position of the document. A later item replaces an earlier one of the
    // same name; an item that is cut off is left out.
    virtual void ReadItems(ZVXMLDocument& document);

    // Sets result to a line "name: value" for each entry, with a carriage return and a line feed at its end.
    virtual void ToDisplayText(ZVString& result) const;

    int32_t GetCount() const { return m_entries != nullptr ? m_entries->GetCount() : 0; }

    // Calls visit(key, value) for each entry, in the order of all forms. The map must not change during the call.
    template <class Visitor>
    void ForEach(Visitor&& visit) const
    {
        for (const auto& entry : GetEntries())
            visit(entry.Key, entry.Value);
    }

private:
    using Entries = ZVStringMap<ZVString, false, ZVString, const ZVString&, true>;

    // The entries in the order of all forms.
    const Entries& GetEntries() const;

    // Null while there are no entries.
    std::unique_ptr<Entries> m_entries;
};
