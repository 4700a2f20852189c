#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// The nodes of an XML text. The values above zero can be combined to a mask.
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

// Reads the nodes of an XML text one after the other, from any offset at which a node can begin. It knows nothing of the tree:
// an element node is its start tag alone. The text belongs to the caller, may hold NUL characters and is read in one pass
// without a copy.
class ZVXMLTokenReader
{
public:
    // Reads the characters of a text from offset up to, not including, end.
    ZVXMLTokenReader(const wchar_t* text, int32_t offset, int32_t end)
        : m_text(text), m_end(text + end), m_position(text + offset)
    {
    }

    // Reads the next node and gives its type. A text node ends before the next "<". It is white space when it holds nothing but
    // blanks, tabs and line ends. After an error the reader stays where it is.
    ZVXMLNodeType Read();
    // Goes on at another offset.
    void SeekTo(int32_t offset) { m_position = m_text + offset; }

    // The node that was read last, in characters from the start of the text. A node with an error has no length.
    int32_t GetStart() const { return static_cast<int32_t>(m_start - m_text); }
    int32_t GetLength() const { return static_cast<int32_t>(m_position - m_start); }
    int32_t GetEnd() const { return static_cast<int32_t>(m_position - m_text); }
    // The name in a start or end tag.
    const wchar_t* GetName() const { return m_name; }
    int32_t GetNameLength() const { return m_nameLength; }
    // True for a start tag that ends with "/>".
    bool IsEmptyElement() const { return m_isEmptyElement; }
    // What is wrong with a node of type Error, with the offset at which the node begins.
    ZVString GetErrorText() const;

    // Cuts the markers off a node that lies at text: the four and three characters of a comment, for example. The rest of a
    // node that is shorter than its markers is empty. Nodes without markers are left as they are.
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
