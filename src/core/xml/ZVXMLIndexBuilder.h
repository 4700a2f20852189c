#pragma once

#include "core/xml/ZVXMLElementIndex.h"
#include "core/xml/ZVXMLText.h"
#include "core/xml/ZVXMLTokenReader.h"

// Builds the index of a document's elements in one pass over the text, and collects what is wrong with the text. Damage does not
// stop it: an element whose end tag is missing or wrong ends where this is noticed, and reading goes on. It only stops at a tag
// that cannot be read.
class ZVXMLIndexBuilder
{
public:
    // The index must be clear. If names are folded, an end tag may differ from its start tag in case.
    ZVXMLIndexBuilder(const ZVString& document, ZVXMLText::Case names, ZVXMLElementIndex& index);

    // True if no tag is damaged, missing or left over.
    bool Build();
    // True if there is text that is neither white space nor markup.
    bool HasText() const { return m_hasText; }
    // Adds a message on a new line.
    void AddError(const ZVString& message);
    const ZVString& GetErrors() const { return m_errors; }

private:
    // A hostile text could consist of wrong end tags. More messages than this would not help to find the cause.
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
    uint32_t m_open = 0;      // the innermost element whose end tag is still to come
    uint32_t m_previous = 0;  // the last element that ended inside it
    ZVXMLText::Case m_names;
    bool m_hasText = false;
};
