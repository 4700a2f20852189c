#pragma once

#include "core/containers/ZVPointerArray.h"
#include "core/xml/ZVXMLElement.h"

// The element records of a document and the tree that they make. Record 0 stands for the document itself: it has no text, and
// its children are the top elements. Records lie in segments that never move, so a reference to one holds until the record is
// freed; freed records are used again first. A record index is not checked.
class ZVXMLElementIndex
{
public:
    ZVXMLElementIndex();
    ~ZVXMLElementIndex();
    ZVXMLElementIndex(const ZVXMLElementIndex&) = delete;
    ZVXMLElementIndex& operator=(const ZVXMLElementIndex&) = delete;

    ZVXMLElement& operator[](uint32_t index) { return Segment(index)[index & SlotMask]; }
    const ZVXMLElement& operator[](uint32_t index) const { return Segment(index)[index & SlotMask]; }

    // Forgets all elements. The segments are kept for the next document.
    void Clear();
    // Makes a record behind the sibling previous, or as first child of the parent when previous is 0. Only its links, level and
    // sibling flags are set.
    uint32_t Insert(uint32_t parent, uint32_t previous);
    // Takes an element out of the tree and frees its record and all records below it.
    void Remove(uint32_t index);
    void RemoveChildren(uint32_t parent);

    // Neighbours of an element, 0 where there is none.
    uint32_t LastChild(uint32_t parent) const;
    uint32_t PreviousSibling(uint32_t index) const;

    // The text has grown by difference, or shrunk for a negative one, behind the start of an element: every element that begins
    // behind it in document order moves, except those below it, and every element around it changes its length. The effort goes
    // with the elements behind.
    void MoveBehind(uint32_t index, int32_t difference);
    // Moves all elements below one.
    void MoveChildren(uint32_t parent, int32_t difference);

private:
    static constexpr uint32_t SegmentShift = 16;
    static constexpr uint32_t SegmentSize = 1u << SegmentShift;
    static constexpr uint32_t SlotMask = SegmentSize - 1;

    ZVXMLElement* Segment(uint32_t index) const { return m_segments[static_cast<int32_t>(index >> SegmentShift)]; }
    uint32_t Allocate();
    void AddSegment();
    void Unlink(uint32_t index);
    void FreeSubtree(uint32_t top);
    uint32_t NextInSubtree(uint32_t index, uint32_t top) const;

    uint32_t m_top = 0;        // the first record that was never used
    uint32_t m_firstFree = 0;  // the free records are chained by their previous sibling
    ZVPointerArray<ZVXMLElement> m_segments;
    uint32_t m_allocated = 0;  // records in all segments
};
