#include "mp4/heif/IRefEntryAtom.h"

#include "mp4/heif/IRefAtom.h"

#include <algorithm>
#include <utility>

IRefEntryAtom::IRefEntryAtom(const CAtomClass& atomClass, uint32_t type, const CAtom* parent) : CAtom(atomClass, type, parent)
{
    const auto* const references = dynamic_cast<const IRefAtom*>(parent);
    m_toItemIDs.SetRowWidth(references == nullptr || references->GetVersion() == 0 ? 2 : 4);
}

void IRefEntryAtom::Fields(CFieldVisitor& visitor)
{
    if (!visitor.If(m_hasFromItem, GetIDWidth()))
    {
        visitor.Rest("end", m_end);
        return;
    }
    visitor.Field("from item id", m_fromItemID, GetIDWidth());
    if (visitor.If(m_hasCount, sizeof m_count))
        visitor.Field("reference count", m_count);
    visitor.Table("to item ids", std::min<uint32_t>(m_count, visitor.CountRows(m_toItemIDs)), m_toItemIDs);
    // More than a piece of a number is too much for the atom.
    if (!visitor.If(m_isLonger, GetIDWidth()))
        visitor.Rest("end", m_end);
}

uint32_t IRefEntryAtom::GetToItemID(uint32_t index) const
{
    return GetIDWidth() == 2 ? m_toItemIDs.Get<uint16_t>(index) : m_toItemIDs.Get<uint32_t>(index);
}

std::unique_ptr<IRefEntryAtom> IRefEntryAtom::MakeNew(uint32_t type, const CAtom& parent, uint32_t fromItemID)
{
    auto entry = std::make_unique<IRefEntryAtom>(Class, type, &parent);
    entry->m_fromItemID = fromItemID;
    return entry;
}

bool IRefEntryAtom::IsWhole() const
{
    return m_hasFromItem && m_hasCount && m_count == GetToItemCount() && m_end.GetCount() == 0;
}

bool IRefEntryAtom::AddToItem(uint32_t itemID)
{
    for (uint32_t index = 0; index < GetToItemCount(); ++index)
        if (GetToItemID(index) == itemID)
            return true;
    const bool isTooLarge = GetIDWidth() == 2 && itemID > UINT16_MAX;
    if (!IsWhole() || m_count == UINT16_MAX || isTooLarge)
        return false;
    m_toItemIDs.AddRows(1);
    SetToItemID(m_count++, itemID);
    return true;
}

void IRefEntryAtom::SetToItemID(uint32_t index, uint32_t itemID)
{
    if (GetIDWidth() == 2)
        m_toItemIDs.Set(index, static_cast<uint16_t>(itemID));
    else
        m_toItemIDs.Set(index, itemID);
}

void IRefEntryAtom::WidenIDs()
{
    CAtomTable wide(4);
    wide.AddRows(GetToItemCount());
    for (uint32_t index = 0; index < GetToItemCount(); ++index)
        wide.Set(index, GetToItemID(index));
    m_toItemIDs = std::move(wide);
}
