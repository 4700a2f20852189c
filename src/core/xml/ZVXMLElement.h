#pragma once

#include <cstdint>
#include <type_traits>

// One element in the index of an XML document: its place in the text, in characters, and its place in the tree. The name, the
// attributes and the content of the element are read from the text when they are needed. Links are record indexes; 0 means no
// element.
struct ZVXMLElement
{
    // The tag lengths share one word, with 22 bits for the start tag and 10 for the end tag. For a longer tag all bits are set,
    // and its length must be found in the text.
    static constexpr int32_t LongStartTag = 0x3fffff;
    static constexpr int32_t LongEndTag = 0x3ff;
    static constexpr uint32_t EndTagShift = 22;

    // The depth of a top element is 1. Elements that are too deep for the mask all have its value; nothing depends on it.
    static constexpr uint32_t LevelMask = 0xffff;
    // The element is a single tag.
    static constexpr uint32_t EmptyElement = 0x100000;
    static constexpr uint32_t FirstSibling = 0x200000;
    static constexpr uint32_t LastSibling = 0x800000;
    // The element was still open where reading ended: at the end of the text, or at a tag that cannot be read.
    static constexpr uint32_t CutOff = 0x40000000;
    // The record is in the free list.
    static constexpr uint32_t Freed = 0x80000000;

    int32_t Start;   // of the "<"
    int32_t Length;  // of the whole element with both tags
    uint32_t TagLengths;
    uint32_t FlagsAndLevel;
    uint32_t Parent;
    uint32_t FirstChild;
    uint32_t NextSibling;
    uint32_t PreviousSibling;  // for the first sibling the last one, so that appending needs no walk

    int32_t End() const { return Start + Length; }
    bool Has(uint32_t flag) const { return (FlagsAndLevel & flag) != 0; }
    uint32_t Level() const { return FlagsAndLevel & LevelMask; }
    int32_t PackedStartTag() const { return static_cast<int32_t>(TagLengths) & LongStartTag; }
    int32_t PackedEndTag() const { return static_cast<int32_t>(TagLengths >> EndTagShift); }

    void SetTagLengths(int32_t startTag, int32_t endTag)
    {
        const int32_t packedStart = startTag < LongStartTag ? startTag : LongStartTag;
        const int32_t packedEnd = endTag < LongEndTag ? endTag : LongEndTag;
        TagLengths = static_cast<uint32_t>(packedStart) | static_cast<uint32_t>(packedEnd) << EndTagShift;
    }
};

static_assert(sizeof(ZVXMLElement) == 32 && std::is_trivial_v<ZVXMLElement>);
