#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/containers/ZVUniqueList.h"

// Strings in the order in which they were added, each only once. Only their 64-bit hashes are compared: a string whose hash is
// already there counts as a repetition.
class ZVUniqueStringArray
{
public:
    explicit ZVUniqueStringArray(bool caseSensitive = false) : m_caseSensitive(caseSensitive) {}

    // Appends a string and returns its index, or -1 if it is already there.
    int32_t Add(const ZVString& text);
    bool Contains(const wchar_t* text) const { return m_hashes.Contains(HashOf(text)); }
    void RemoveAll();

    int32_t GetCount() const { return m_strings.GetCount(); }
    // The string at an index, which is not checked.
    const ZVString& operator[](int32_t index) const { return m_strings[index]; }
    const ZVStringArray& GetStrings() const { return m_strings; }

private:
    unsigned long HashOf(const wchar_t* text) const;

    ZVStringArray m_strings;
    ZVUniqueList<unsigned long, unsigned long> m_hashes;
    bool m_caseSensitive;
};
