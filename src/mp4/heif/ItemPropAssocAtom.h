#pragma once

#include "mp4/model/CFullAtom.h"

#include <cstdint>
#include <unordered_set>
#include <vector>

// A property that an item has.
struct IPMAPropAssoc
{
    // Who does not know the property must not show the item.
    bool IsEssential = false;
    // Counted from 1 in ipco.
    uint16_t PropertyIndex = 0;
};

// The properties of one item.
struct IPMAEntry
{
    uint32_t ItemID = 0;
    std::vector<IPMAPropAssoc> Associations;
};

// ipma: which item has which properties (ISO/IEC 14496-12, 8.11.14).
class ItemPropAssocAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor);

    // What the file says; the list is shorter when the atom ends before.
    uint32_t GetEntryCount() const { return m_count; }
    const std::vector<IPMAEntry>& GetEntries() const { return m_entries; }
    // Leaves out the entries of items.
    void RemoveItems(const std::unordered_set<uint32_t>& itemIDs);

private:
    void EntryFields(CFieldVisitor& visitor, IPMAEntry& entry);

    uint32_t m_count = 0;
    std::vector<IPMAEntry> m_entries;
};

inline constexpr CAtomClass ItemPropAssocAtom::Class = MakeAtomClass<ItemPropAssocAtom>("ItemPropAssocAtom");
