#include "core/containers/ZVUniqueStringArray.h"

#include "core/containers/ZVStringHash.h"

int32_t ZVUniqueStringArray::Add(const ZVString& text)
{
    // If there is no memory for the string, its hash must not be added either.
    m_strings.Reserve(m_strings.GetCount() + 1);
    if (!m_hashes.Add(HashOf(text)))
        return -1;
    return m_strings.Add(text);
}

void ZVUniqueStringArray::RemoveAll()
{
    m_strings.RemoveAll();
    m_hashes.RemoveAll();
}

unsigned long ZVUniqueStringArray::HashOf(const wchar_t* text) const
{
    return m_caseSensitive ? ZVStringHash::Hash64<true>(text) : ZVStringHash::Hash64<false>(text);
}
