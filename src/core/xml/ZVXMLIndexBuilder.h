#pragma once

#include "core/xml/ZVXMLElementIndex.h"
#include "core/xml/ZVXMLTokenReader.h"

// Makes the index of a document's elements in one pass over the text, and collects what is wrong with it. Damage does not end
// the index: an element whose end tag is missing or belongs to another one ends where that is found out, and reading goes on.
// Only a tag that cannot be read ends it.
class ZVXMLIndexBuilder
{
public:
    // The index must be clear. With foldNames an end tag may differ from its start tag in case.
    ZVXMLIndexBuilder(const ZVString& document, bool foldNames, ZVXMLElementIndex& index);

    // True when no tag is damaged, missing or left over.
    bool Build();
    // True when there is text outside of white space and markup.
    bool HasText() const { return m_hasText; }
    // Takes up one more message; they are separated by line feeds.
    void AddError(const ZVString& message);
    const ZVString& GetErrors() const { return m_errors; }

private:
    // A hostile text could have a wrong end tag everywhere. The messages behind this many would not help to find the cause.
    static constexpr int32_t MaximumErrorCount = 100;

    void StartElement();
    void EndElement();
    void FinishOpen(int32_t end, int32_t endTagLength);
    void FinishAllOpen(int32_t end);
    bool IsEndTagOf(uint32_t element) const;
    bool WantsTagError() const { return m_errorCount < MaximumErrorCount; }
    ZVString TagName() const { return ZVString(m_reader.GetName(), m_reader.GetNameLength()); }
    ZVString ElementName(uint32_t element) const;

    const wchar_t* m_text;
    const wchar_t* m_end;
    ZVXMLElementIndex& m_index;
    ZVXMLTokenReader m_reader;
    ZVString m_errors;
    int32_t m_errorCount = 0;
    uint32_t m_open = 0;      // the innermost element that waits for its end tag
    uint32_t m_previous = 0;  // the last element that ended inside of it
    bool m_foldNames;
    bool m_hasText = false;
};
