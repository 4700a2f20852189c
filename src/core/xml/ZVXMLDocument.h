#pragma once

#include "core/containers/ZVStringMap.h"
#include "core/string/ZVString.h"
#include "core/xml/ZVXMLElementIndex.h"
#include "core/xml/ZVXMLTokenReader.h"

#include <cstdint>

// An XML text with an index of its elements and a position among them. The document is one string, shared with whoever gave it;
// reading cuts parts out of it, writing changes it in place and moves the index along. There are no node objects: the caller
// walks with find, enter and leave.
//
// The position is a parent, a main element below it and a child element below that, each of which may be missing. Names are
// compared exactly, or folded with the flag FoldNames. Offsets and lengths count characters. What is asked of an element that
// is missing is empty, and what is to be changed there stays: operations that can fail give false and then have changed
// nothing. Only a failure to allocate throws.
//
// A damaged document can be walked and changed as far as its index goes. After a change its damage may read differently to a
// new parse.
class ZVXMLDocument
{
public:
    // Flag of the document: names of elements and attributes are compared with case folded.
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

    // Takes a share of the text and indexes it. True when it is well-formed; otherwise GetError says why not, and the elements
    // that could be read are there all the same. The position and saved positions are reset.
    bool SetDocument(const ZVString& text);
    const ZVString& GetDocument() const { return m_document; }
    // The messages of the last SetDocument, one a line.
    const ZVString& GetError() const { return m_error; }
    // True when no tag of the text was wrong and there is one element at the top.
    bool IsWellFormed() const;
    // The value of the pseudo-attribute "encoding" of the XML declaration with which a text begins, or empty.
    static ZVString GetEncoding(const ZVString& text);

    // --- Position: false when there is no such element, and the position is left as it was -------------------------------------

    // Moves the main or the child position to the next sibling with that name, from the first one when the position has none;
    // null takes the next of any name. The name can be a path: steps separated by "/", a leading "/" for a path from the root,
    // and "[n]" behind a step for the n-th sibling of that name, counted from 1. Each step takes the first element that fits.
    // The whole position moves to where the path leads.
    bool FindElement(const wchar_t* name = nullptr);
    bool FindChildElement(const wchar_t* name = nullptr);
    // Makes the main element the parent and the child the main element.
    bool EnterElement();
    // Makes the parent the main element and what was the main element its child.
    bool LeaveElement();
    // Back in front of the first top element, of the first main element, or of the first child.
    void ResetPosition();
    void ResetMainPosition();
    void ResetChildPosition();
    // Keeps the present position under a name, and goes back to it. A position is lost when one of its elements is removed.
    void SavePosition(const wchar_t* name);
    bool RestorePosition(const wchar_t* name);

    // Moves to the next node of one of the types on the level of the main element, which becomes the last element in front of
    // it; an element found becomes the main element itself. The types are those of ZVXMLNodeType above zero, joined. Gives the
    // type found, or EndOfText for none.
    ZVXMLNodeType FindNode(int32_t types);

    // --- Read -----------------------------------------------------------------------------------------------------------------

    ZVString GetElementName() const { return GetName(m_position.Main); }
    ZVString GetChildElementName() const { return GetName(m_position.Child); }
    // The names from the root to the main element, or else to the parent, each behind a "/" and with "[n]" where siblings have
    // the name too.
    ZVString GetElementPath() const;
    // The text in an element with entities decoded and CDATA sections joined in as they are; empty for an element that has
    // child elements. After FindNode has found another node than an element, GetText gives that one's content without its
    // markers.
    ZVString GetText() const;
    // False for the main element when the text was cut off inside it, so that its own text may be only the beginning.
    bool IsElementComplete() const { return !m_index[m_position.Main].Has(ZVXMLElement::CutOff); }
    ZVString GetChildText() const { return GetElementText(m_position.Child); }
    // The decoded value of an attribute, empty when it is missing.
    ZVString GetAttribute(const wchar_t* name) const { return GetAttributeOf(m_position.Main, name); }
    ZVString GetChildAttribute(const wchar_t* name) const { return GetAttributeOf(m_position.Child, name); }

    // --- Write ----------------------------------------------------------------------------------------------------------------

    // Replaces the value of an attribute or adds the attribute at the end of the tag. False for a name that no tag can hold.
    bool SetAttribute(const wchar_t* name, const ZVString& value) { return SetAttributeOf(m_position.Main, name, value); }
    bool SetChildAttribute(const wchar_t* name, const ZVString& value) { return SetAttributeOf(m_position.Child, name, value); }
    // Replaces the content of an element, child elements too.
    bool SetText(const ZVString& text, bool useCDATA = false) { return SetTextOf(m_position.Main, text, useCDATA); }
    bool SetChildText(const ZVString& text, bool useCDATA = false) { return SetTextOf(m_position.Child, text, useCDATA); }
    // Adds an element behind the main element, or in front of it with InFrontOfCurrent, and makes it the main element. Without
    // a main element it becomes the last one below the parent, or the first. An element with an empty value is written as one
    // tag; a line break follows unless NoLineBreak is set. False for a name that no tag can hold.
    bool AddElement(const wchar_t* name, const ZVString& value, uint32_t flags = 0);
    // The same below the main element, at the child position.
    bool AddChildElement(const wchar_t* name, const ZVString& value, uint32_t flags = 0);
    // Removes an element and a line break directly behind it. The element in front of it takes its place in the position.
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

    struct PathStep;

    bool FoldsNames() const { return (m_flags & FoldNames) != 0; }
    ZVString Part(int32_t start, int32_t end) const { return m_document.Mid(start, end - start); }
    // An element stands at the node position again.
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
    // The offsets between the tags; for the root those of the whole text.
    int32_t GetContentStart(uint32_t element) const;
    int32_t GetContentEnd(uint32_t element) const;
    // Behind the last character of a start tag that belongs to its attributes.
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
    uint32_t InsertElement(uint32_t parent, uint32_t current, const wchar_t* name, const ZVString& value, uint32_t flags);
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
