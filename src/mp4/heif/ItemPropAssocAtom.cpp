#include "mp4/heif/ItemPropAssocAtom.h"

namespace
{
// The top bit of an association says whether the property is essential, the others are its index.
void AssociationField(CFieldVisitor& visitor, IPMAPropAssoc& association, int32_t width)
{
    const auto essential = static_cast<uint16_t>(1 << (8 * width - 1));
    auto field = static_cast<uint16_t>(association.PropertyIndex | (association.IsEssential ? essential : 0));
    visitor.Field("association", field, width);
    association.IsEssential = (field & essential) != 0;
    association.PropertyIndex = static_cast<uint16_t>(field & (essential - 1));
}
}

void ItemPropAssocAtom::Fields(CFieldVisitor& visitor)
{
    CFullAtom::Fields(visitor);
    visitor.Field("entry count", m_count);
    visitor.Entries(m_entries, m_count, 1, [this, &visitor](IPMAEntry& entry) { EntryFields(visitor, entry); });
}

void ItemPropAssocAtom::RemoveItems(const std::unordered_set<uint32_t>& itemIDs)
{
    const size_t removed = std::erase_if(m_entries, [&](const IPMAEntry& entry) { return itemIDs.contains(entry.ItemID); });
    m_count -= static_cast<uint32_t>(removed);
}

void ItemPropAssocAtom::EntryFields(CFieldVisitor& visitor, IPMAEntry& entry)
{
    visitor.Field("item id", entry.ItemID, GetVersion() == 0 ? 2 : 4);
    auto count = static_cast<uint8_t>(entry.Associations.size());
    visitor.Field("association count", count);
    entry.Associations.resize(count);
    for (IPMAPropAssoc& association : entry.Associations)
        AssociationField(visitor, association, (GetFlags() & 1) != 0 ? 2 : 1);
}
