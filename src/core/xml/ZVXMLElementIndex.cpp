#include "core/xml/ZVXMLElementIndex.h"

ZVXMLElementIndex::ZVXMLElementIndex()
{
    AddSegment();
    Clear();
}

void ZVXMLElementIndex::AddSegment()
{
    m_segments.Reserve(m_segments.GetCount() + 1);
    // The memory is not initialised, so a small document touches only the pages that it needs.
    m_segments.Add(new Segment);
    m_allocated += SegmentSize;
}

void ZVXMLElementIndex::Clear()
{
    m_firstFree = 0;
    m_top = 1;
    (*this)[0] = {};
}

uint32_t ZVXMLElementIndex::Allocate()
{
    if (m_firstFree != 0)
    {
        const uint32_t index = m_firstFree;
        m_firstFree = (*this)[index].PreviousSibling;
        return index;
    }
    if (m_top == m_allocated)
        AddSegment();
    return m_top++;
}

uint32_t ZVXMLElementIndex::Insert(uint32_t parent, uint32_t previous)
{
    const uint32_t index = Allocate();
    ZVXMLElement& element = (*this)[index];
    ZVXMLElement& around = (*this)[parent];
    const uint32_t level = around.Level() < ZVXMLElement::LevelMask ? around.Level() + 1 : ZVXMLElement::LevelMask;
    element.FlagsAndLevel = level;
    element.Parent = parent;
    element.FirstChild = 0;

    const uint32_t next = previous != 0 ? (*this)[previous].NextSibling : around.FirstChild;
    element.NextSibling = next;
    if (previous != 0)
    {
        (*this)[previous].NextSibling = index;
        (*this)[previous].FlagsAndLevel &= ~ZVXMLElement::LastSibling;
        element.PreviousSibling = previous;
    }
    else
    {
        element.FlagsAndLevel |= ZVXMLElement::FirstSibling;
        element.PreviousSibling = next != 0 ? (*this)[next].PreviousSibling : index;
        if (next != 0)
            (*this)[next].FlagsAndLevel &= ~ZVXMLElement::FirstSibling;
        around.FirstChild = index;
    }

    if (next != 0)
    {
        (*this)[next].PreviousSibling = index;
    }
    else
    {
        element.FlagsAndLevel |= ZVXMLElement::LastSibling;
        (*this)[around.FirstChild].PreviousSibling = index;
    }
    return index;
}

void ZVXMLElementIndex::Unlink(uint32_t index)
{
    const ZVXMLElement element = (*this)[index];
    ZVXMLElement& around = (*this)[element.Parent];
    if (element.Has(ZVXMLElement::FirstSibling))
        around.FirstChild = element.NextSibling;
    else
        (*this)[element.PreviousSibling].NextSibling = element.NextSibling;

    if (element.NextSibling != 0)
    {
        (*this)[element.NextSibling].PreviousSibling = element.PreviousSibling;
        (*this)[element.NextSibling].FlagsAndLevel |= element.FlagsAndLevel & ZVXMLElement::FirstSibling;
    }
    else if (!element.Has(ZVXMLElement::FirstSibling))
    {
        (*this)[element.PreviousSibling].FlagsAndLevel |= ZVXMLElement::LastSibling;
        (*this)[around.FirstChild].PreviousSibling = element.PreviousSibling;
    }
}

void ZVXMLElementIndex::Remove(uint32_t index)
{
    Unlink(index);
    FreeSubtree(index);
}

void ZVXMLElementIndex::RemoveChildren(uint32_t parent)
{
    uint32_t child = (*this)[parent].FirstChild;
    (*this)[parent].FirstChild = 0;
    while (child != 0)
    {
        const uint32_t next = (*this)[child].NextSibling;
        FreeSubtree(child);
        child = next;
    }
}

void ZVXMLElementIndex::FreeSubtree(uint32_t top)
{
    for (uint32_t index = top; index != 0; index = NextInSubtree(index, top))
    {
        // The walk still needs the other links of this record, so only this one can chain the free records.
        (*this)[index].PreviousSibling = m_firstFree;
        (*this)[index].FlagsAndLevel = ZVXMLElement::Freed;
        m_firstFree = index;
    }
}

uint32_t ZVXMLElementIndex::NextInSubtree(uint32_t index, uint32_t top) const
{
    if ((*this)[index].FirstChild != 0)
        return (*this)[index].FirstChild;
    while (index != top)
    {
        if ((*this)[index].NextSibling != 0)
            return (*this)[index].NextSibling;
        index = (*this)[index].Parent;
    }
    return 0;
}

uint32_t ZVXMLElementIndex::LastChild(uint32_t parent) const
{
    const uint32_t first = (*this)[parent].FirstChild;
    return first != 0 ? (*this)[first].PreviousSibling : 0;
}

uint32_t ZVXMLElementIndex::PreviousSibling(uint32_t index) const
{
    return (*this)[index].Has(ZVXMLElement::FirstSibling) ? 0 : (*this)[index].PreviousSibling;
}

void ZVXMLElementIndex::MoveFollowing(uint32_t index, int32_t difference)
{
    if (difference == 0)
        return;
    while (index != 0)
    {
        for (uint32_t sibling = (*this)[index].NextSibling; sibling != 0; sibling = (*this)[sibling].NextSibling)
        {
            (*this)[sibling].Start += difference;
            MoveChildren(sibling, difference);
        }
        index = (*this)[index].Parent;
        if (index != 0)
            (*this)[index].Length += difference;
    }
}

void ZVXMLElementIndex::MoveChildren(uint32_t parent, int32_t difference)
{
    if (difference == 0)
        return;
    for (uint32_t index = NextInSubtree(parent, parent); index != 0; index = NextInSubtree(index, parent))
        (*this)[index].Start += difference;
}
