#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// The nodes of an XML text. The values above zero can be combined into a mask.
enum class ZVXMLNodeType : int32_t
{
    EndOfText = -2,
    Error = -1,
    EndTag = 0,
    Element = 1,
    Text = 2,
    WhiteSpace = 4,
    CDATASection = 8,
    ProcessingInstruction = 16,
    Comment = 32,
    DocumentType = 64,
    UnpairedEndTag = 128,
};

// Reads the nodes of an XML text one after the other, from any offset at which a node can begin. It does not know the tree: an
// element node is only its start tag. The text belongs to the caller and may contain NUL characters; it is read in one pass and
// not copied.
class ZVXMLTokenReader
{
public:
    // Reads the characters of a text from offset up to but not including end.
    ZVXMLTokenReader(const wchar_t* text, int32_t offset, int32_t end)
        : m_text(text), m_end(text + end), m_position(text + offset)
    {
    }

    // Reads the next node and returns its type. A text node ends before the next "<"; if it has only blanks, tabs and line ends
    // it is white space. After an error the reader stays where it is.
    ZVXMLNodeType Read();
    // Continues at another offset.
    void SeekTo(int32_t offset) { m_position = m_text + offset; }

    // The place of the last node, in characters from the start of the text. After an error the length is 0.
    int32_t GetStart() const { return static_cast<int32_t>(m_start - m_text); }
    int32_t GetLength() const { return static_cast<int32_t>(m_position - m_start); }
    int32_t GetEnd() const { return static_cast<int32_t>(m_position - m_text); }
    // The name in a start or end tag.
    const wchar_t* GetName() const { return m_name; }
    int32_t GetNameLength() const { return m_nameLength; }
    // True if the start tag ends with "/>".
    bool IsEmptyElement() const { return m_isEmptyElement; }
    // What is wrong, with the offset of the node, after an error.
    ZVString GetErrorText() const;

    // Cuts the markers off the node at text, for example four and three characters of a comment. What is left of a node that is
    // shorter than its markers is empty. A node without markers stays as it is.
    static void CutMarkers(ZVXMLNodeType type, const wchar_t*& text, int32_t& length);

private:
    ZVXMLNodeType ReadText();
    ZVXMLNodeType ReadStartTag();
    ZVXMLNodeType ReadEndTag();
    ZVXMLNodeType ReadMarkup();
    ZVXMLNodeType ReadDocumentType();
    ZVXMLNodeType Fail(const wchar_t* format, const wchar_t* what);

    const wchar_t* m_text;
    const wchar_t* m_end;
    const wchar_t* m_position;
    const wchar_t* m_start = nullptr;
    const wchar_t* m_name = nullptr;
    int32_t m_nameLength = 0;
    bool m_isEmptyElement = false;
    const wchar_t* m_errorFormat = nullptr;
    const wchar_t* m_errorSubject = nullptr;
};
