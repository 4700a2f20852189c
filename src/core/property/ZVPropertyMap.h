#pragma once

#include "core/containers/ZVStringMap.h"
#include "core/string/ZVString.h"

#include <cstdint>
#include <memory>

class ZVXMLDocument;

// The record of the system: names with text values. Tasks write their results into one, and its XMLPH form is what the main
// application reads. Names are compared with case folded, and an entry keeps the spelling with which its name was first set.
// All values are text; numbers are turned to text when they are set and parsed when they are got. A null name is the empty one.
// No operation throws but for a failure to allocate.
//
// The entries of every form stand in the order of the hash table: by bucket, not by the time of insertion.
class ZVPropertyMap
{
public:
    ZVPropertyMap() = default;
    // A copy of each entry.
    ZVPropertyMap(const ZVPropertyMap& other);
    ZVPropertyMap& operator=(const ZVPropertyMap& other);

    // The order of the virtual functions is fixed, since maps cross library boundaries.
    virtual ~ZVPropertyMap();

    virtual bool IsSet(const wchar_t* key) const;

    // The value, or the default for a name that is not set. The typed forms give what the parse makes of a value that is no
    // number, not the default. A double may have either decimal point and an exponent; a pointer is hexadecimal.
    virtual ZVString GetString(const wchar_t* key, const ZVString& defaultValue = ZVString()) const;
    virtual int32_t GetInt(const wchar_t* key, int32_t defaultValue = 0) const;
    virtual int64_t GetInt64(const wchar_t* key, int64_t defaultValue = 0) const;
    virtual uint64_t GetUInt64(const wchar_t* key, uint64_t defaultValue = 0) const;
    virtual double GetDouble(const wchar_t* key, double defaultValue = 0.0) const;
    virtual void* GetPointer(const wchar_t* key, void* defaultValue = nullptr) const;

    // Sets or replaces a value. With removeIfEmpty an empty value removes the name, without it the name is set and has an empty
    // value.
    virtual void SetString(const wchar_t* key, const ZVString& value, bool removeIfEmpty = false);
    virtual void SetInt(const wchar_t* key, int32_t value);
    virtual void SetInt64(const wchar_t* key, int64_t value);
    virtual void SetUInt64(const wchar_t* key, uint64_t value);
    virtual void SetPointer(const wchar_t* key, const void* value);
    // With up to 16 decimals and the decimal point of the locale.
    virtual void SetDouble(const wchar_t* key, double value);

    virtual void Clear();
    // False when the name is not set.
    virtual bool Remove(const wchar_t* key);

    // Replaces all entries by copies of another map's; to copy a map to itself changes nothing. Always true.
    virtual bool CopyFrom(const ZVPropertyMap& other);
    // Adds or replaces the entries of another map and keeps the rest. Always true.
    virtual bool MergeFrom(const ZVPropertyMap& other);
    // True for the same names, folded, with exactly the same values.
    virtual bool IsEqual(const ZVPropertyMap& other) const;

    // Appends the length-prefixed form: the number of entries, then each name and value. Without withItems only the number 0.
    virtual void Save(ZVString& text, bool withItems = true) const;
    // Replaces the entries by those of the length-prefixed form at the start of a text, or at a position, which moves behind
    // what was read. A text that does not begin with a number has no entries. False when the text has fewer entries than its
    // number tells; the whole ones are set, and the position is behind the last of them.
    virtual bool Load(const ZVString& text);
    virtual bool Load(const ZVString& text, int32_t& position);

    // The XMLPH form: an element rootName with the attribute version, to one decimal with the locale's point, around the items.
    // With emptyIfNoItems the text for no entries is empty.
    virtual void ToXML(ZVString& result, const wchar_t* rootName, bool emptyIfNoItems, double version) const;
    // Replaces the entries by those of the XMLPH form. Items before damage are read; an item that the end of the text cuts off is
    // left out, since nobody knows the rest of its value. False, with no entries, for another root or another version; an empty
    // text is a map without entries and gives true.
    virtual bool FromXML(const ZVString& text, const wchar_t* rootName, double version);
    // Adds an element Item for each entry at the position of the document, which is then at the last of them.
    virtual void WriteItems(ZVXMLDocument& document) const;
    // Replaces the entries by the Item elements behind the position of the document. A later one of the same name replaces an
    // earlier one.
    virtual void ReadItems(ZVXMLDocument& document);

    // A line "name: value" for each entry, ended by a carriage return and a line feed.
    virtual void ToDisplayText(ZVString& result) const;

    int32_t GetCount() const { return m_entries != nullptr ? m_entries->GetCount() : 0; }

    // Calls visit(key, value) for each entry, in the order of all forms and with the key as it was first spelled. The map must
    // not change meanwhile.
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
