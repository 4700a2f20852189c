#pragma once

#include "core/containers/ZVStringMap.h"
#include "core/string/ZVString.h"
#include "core/xml/ZVXMLElementIndex.h"
#include "core/xml/ZVXMLText.h"
#include "core/xml/ZVXMLTokenReader.h"

#include <cstdint>

// An XML text with an index of its elements and a position among them. The document is one string, which is shared with the
// caller's. Reading copies parts of it; writing changes it in place and updates the index. There are no node objects: the caller
// walks with find, enter and leave.
//
// The position is a parent, a main element below it and a child element below that; each of them may be missing. Names are
// compared exactly, or ignoring case with the flag FoldNames. Offsets and lengths count characters. Reading from a missing
// element returns an empty text. An operation that returns false has changed nothing. Nothing throws except std::bad_alloc.
//
// A damaged document can be walked and changed as far as its index goes. After a change a new parse may read the damage
// differently.
class ZVXMLDocument
{
public:
    // Flag of the document: names of elements and attributes are compared ignoring case.
    static constexpr uint32_t FoldNames = 8;

    // Flags of AddElement.
    static constexpr uint32_t ValueAsCDATA = 1;
    static constexpr uint32_t NoLineBreak = 2;
    static constexpr uint32_t BlankBeforeEnd = 4;  // an empty element ends with " />"
    static constexpr uint32_t NoEndTag = 0x10;     // an empty element whatever the value
    static constexpr uint32_t InFrontOfCurrent = 0x2000;
    static constexpr uint32_t ChildOfMain = 0x4000;

    // An empty document.
    explicit ZVXMLDocument(uint32_t flags = 0) : m_flags(flags) {}
    ZVXMLDocument(const ZVXMLDocument&) = delete;
    ZVXMLDocument& operator=(const ZVXMLDocument&) = delete;

    // --- Document -------------------------------------------------------------------------------------------------------------

    // Shares the text and indexes it. True if it is well-formed; otherwise GetError says why not, and the elements that could be
    // read are there all the same. The position is reset and saved positions are forgotten.
    bool SetDocument(const ZVString& text);
    const ZVString& GetDocument() const { return m_document; }
    // The messages of the last SetDocument, each on its own line.
    const ZVString& GetError() const { return m_error; }
    // True if no tag was wrong and there is exactly one top element.
    bool IsWellFormed() const;
    // The value of the pseudo-attribute "encoding" in the XML declaration at the start of a text, or empty.
    static ZVString GetEncoding(const ZVString& text);

    // --- Position: false if there is no such element; the position then stays as it was ----------------------------------------

    // Moves the main or the child position to the next sibling with that name, or to the first one if there is no current
    // element; null finds any name. The name can be a path: steps separated by "/", with a "/" at the start for a path from the
    // root, and with "[n]" after a step for the n-th sibling of that name, counted from 1. Each step takes the first element that
    // fits. Then the whole position moves to where the path leads.
    bool FindElement(const wchar_t* name = nullptr);
    bool FindChildElement(const wchar_t* name = nullptr);
    // Makes the main element the parent and the child the main element.
    bool EnterElement();
    // Makes the parent the main element, and the main element the child.
    bool LeaveElement();
    // Go back to before the first top element, the first main element, or the first child.
    void ResetPosition();
    void ResetMainPosition();
    void ResetChildPosition();
    // Save the position under a name and return to it. A saved position is lost when one of its elements is removed.
    void SavePosition(const wchar_t* name);
    bool RestorePosition(const wchar_t* name);

    // Moves to the next node of one of the types on the level of the main element. An element becomes the main element; for any
    // other node the last element before it does. types combines values of ZVXMLNodeType above zero. Returns the type of the
    // node, or EndOfText if there is none.
    ZVXMLNodeType FindNode(int32_t types);

    // --- Read -----------------------------------------------------------------------------------------------------------------

    ZVString GetElementName() const { return GetName(m_position.Main); }
    ZVString GetChildElementName() const { return GetName(m_position.Child); }
    // The names from the root to the main element, or to the parent if there is none, each after a "/" and followed by "[n]" if
    // siblings have the same name.
    ZVString GetElementPath() const;
    // The text in an element, with decoded entities, joined with the CDATA sections as they are; empty for an element with child
    // elements. After FindNode has found a node that is not an element, GetText returns the content of that node without its
    // markers.
    ZVString GetText() const;
    // False if the text was cut off inside the main element, whose own text may then be only the beginning.
    bool IsElementComplete() const { return !m_index[m_position.Main].Has(ZVXMLElement::CutOff); }
    ZVString GetChildText() const { return GetElementText(m_position.Child); }
    // The decoded value of an attribute; empty if it is missing.
    ZVString GetAttribute(const wchar_t* name) const { return GetAttributeOf(m_position.Main, name); }
    ZVString GetChildAttribute(const wchar_t* name) const { return GetAttributeOf(m_position.Child, name); }

    // --- Write ----------------------------------------------------------------------------------------------------------------

    // Replaces the value of an attribute, or adds the attribute at the end of the tag. False for a name that an attribute cannot
    // have.
    bool SetAttribute(const wchar_t* name, const ZVString& value) { return SetAttributeOf(m_position.Main, name, value); }
    bool SetChildAttribute(const wchar_t* name, const ZVString& value) { return SetAttributeOf(m_position.Child, name, value); }
    // Replaces the content of an element, including child elements.
    bool SetText(const ZVString& text, bool useCDATA = false) { return SetTextOf(m_position.Main, text, useCDATA); }
    bool SetChildText(const ZVString& text, bool useCDATA = false) { return SetTextOf(m_position.Child, text, useCDATA); }
    // Adds an element after the main element, or before it with InFrontOfCurrent, and makes it the main element. Without a main
    // element it becomes the last element below the parent, or the first. An element with an empty value is written as a single
    // tag; a line break follows unless NoLineBreak is set. False for a name that an element cannot have.
    bool AddElement(const wchar_t* name, const ZVString& value, uint32_t flags = 0);
    // The same below the main element, at the child position.
    bool AddChildElement(const wchar_t* name, const ZVString& value, uint32_t flags = 0);
    // Removes an element and a line break right after it. In the position the previous element takes its place.
    bool RemoveElement() { return RemoveAt(m_position.Main); }
    bool RemoveChildElement() { return RemoveAt(m_position.Child); }

private:
    struct Position
    {
        uint32_t Parent = 0;
        uint32_t Main = 0;
        uint32_t Child = 0;
    };

    struct NodePosition
    {
        ZVXMLNodeType Type = ZVXMLNodeType::Element;
        int32_t Start = 0;
        int32_t Length = 0;
    };

    // What AddElement is asked for.
    struct NewElement
    {
        const wchar_t* Name;
        const ZVString& Value;
        uint32_t Flags;

        bool Has(uint32_t flag) const { return (Flags & flag) != 0; }
    };

    struct PathStep;

    ZVXMLText::Case NameCase() const { return (m_flags & FoldNames) != 0 ? ZVXMLText::Case::Folded : ZVXMLText::Case::Exact; }
    ZVString Part(int32_t start, int32_t end) const { return m_document.Mid(start, end - start); }
    // The current node is an element again.
    void LeaveNode() { m_node = {}; }

    uint32_t FindPath(uint32_t parent, uint32_t current, const wchar_t* path) const;
    uint32_t FindStep(uint32_t parent, uint32_t current, const PathStep& step) const;
    uint32_t NextElement(uint32_t parent, uint32_t current) const;
    bool HasName(uint32_t element, const wchar_t* name, int32_t length) const;
    void AppendPathStep(ZVString& path, uint32_t element) const;

    ZVString GetName(uint32_t element) const;
    int32_t GetNameEnd(uint32_t element) const;
    int32_t GetStartTagLength(uint32_t element) const;
    int32_t GetEndTagLength(uint32_t element) const;
    // The offsets of the text between the tags; for the root those of the whole text.
    int32_t GetContentStart(uint32_t element) const;
    int32_t GetContentEnd(uint32_t element) const;
    // The offset of the ">" or "/>" of a start tag.
    int32_t GetTagBodyEnd(uint32_t element) const;
    int32_t GetEndWithLineBreak(uint32_t element) const;
    ZVString GetElementText(uint32_t element) const;
    ZVString JoinText(int32_t start, int32_t end) const;
    ZVString GetAttributeOf(uint32_t element, const wchar_t* name) const;

    int32_t ReplaceText(int32_t start, int32_t end, const ZVString& text);
    void ReplaceInStartTag(uint32_t element, int32_t start, int32_t end, const ZVString& text);
    void OpenEmptyElement(uint32_t element);
    bool SetAttributeOf(uint32_t element, const wchar_t* name, const ZVString& value);
    bool SetTextOf(uint32_t element, const ZVString& text, bool useCDATA);
    uint32_t InsertElement(uint32_t parent, uint32_t current, const NewElement& element);
    bool RemoveAt(uint32_t& position);
    void ForgetLostPositions();

    ZVString m_document;
    ZVString m_error;
    Position m_position;
    NodePosition m_node;
    ZVXMLElementIndex m_index;
    ZVStringMap<ZVString, true, Position> m_saved;
    uint32_t m_flags;
    bool m_isDamaged = false;
};
