#pragma once

#include "core/containers/ZVOwnedPtrArray.h"
#include "core/xml/ZVXMLElement.h"

// The element records of a document, which form a tree. Record 0 stands for the document itself: it has no text, and its children
// are the top elements. Records lie in segments that never move, so a reference to a record is valid until the record is freed.
// Freed records are reused first. A record index is not checked.
class ZVXMLElementIndex
{
public:
    ZVXMLElementIndex();
    ZVXMLElementIndex(const ZVXMLElementIndex&) = delete;
    ZVXMLElementIndex& operator=(const ZVXMLElementIndex&) = delete;

    ZVXMLElement& operator[](uint32_t index) { return SegmentOf(index)->Records[index & SlotMask]; }
    const ZVXMLElement& operator[](uint32_t index) const { return SegmentOf(index)->Records[index & SlotMask]; }

    // Forgets all elements. The segments are kept for the next document.
    void Clear();
    // Makes a record after the sibling previous or, if that is 0, as the first child of the parent. Only its links, its level and
    // its sibling flags are set.
    uint32_t Insert(uint32_t parent, uint32_t previous);
    // Removes an element from the tree and frees its record and all records below it.
    void Remove(uint32_t index);
    void RemoveChildren(uint32_t parent);

    // Return 0 if there is no such element.
    uint32_t LastChild(uint32_t parent) const;
    uint32_t PreviousSibling(uint32_t index) const;

    // To be called when the text has grown, or for a negative difference shrunk, after the start of an element. Moves the
    // elements that follow it in document order, except those inside it, and changes the length of all elements around it. Takes
    // time in proportion to the number of elements that follow.
    void MoveFollowing(uint32_t index, int32_t difference);
    // Moves all elements inside an element.
    void MoveChildren(uint32_t parent, int32_t difference);

private:
    static constexpr uint32_t SegmentShift = 16;
    static constexpr uint32_t SegmentSize = 1u << SegmentShift;
    static constexpr uint32_t SlotMask = SegmentSize - 1;

    struct Segment
    {
        ZVXMLElement Records[SegmentSize];
    };

    Segment* SegmentOf(uint32_t index) const { return m_segments[static_cast<int32_t>(index >> SegmentShift)]; }
    uint32_t Allocate();
    void AddSegment();
    void Unlink(uint32_t index);
    void FreeSubtree(uint32_t top);
    uint32_t NextInSubtree(uint32_t index, uint32_t top) const;

    uint32_t m_top = 0;        // the first record that was never used
    uint32_t m_firstFree = 0;  // free records are chained by PreviousSibling
    ZVOwnedPtrArray<Segment> m_segments;
    uint32_t m_allocated = 0;  // the number of records in all segments
};
