#include "mp4/heif/IRefEntryAtom.h"

#include "mp4/heif/IRefAtom.h"

#include <algorithm>

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
