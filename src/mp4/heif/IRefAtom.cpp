#include "mp4/heif/IRefAtom.h"

#include "mp4/heif/IRefEntryAtom.h"

#include <algorithm>

bool IRefAtom::AddReference(uint32_t type, uint32_t fromItemID, uint32_t toItemID)
{
    if (std::max(fromItemID, toItemID) > UINT16_MAX && !WidenIDs())
        return false;
    for (CAtom* const child : GetChildren())
    {
        auto* const entry = dynamic_cast<IRefEntryAtom*>(child);
        if (entry != nullptr && entry->GetType() == type && entry->GetFromItemID() == fromItemID)
            return entry->AddToItem(toItemID);
    }
    std::unique_ptr<IRefEntryAtom> entry = IRefEntryAtom::MakeNew(type, *this, fromItemID);
    entry->AddToItem(toItemID);
    AddChild(std::move(entry));
    return true;
}

void IRefAtom::RemoveReferencesFrom(const std::unordered_set<uint32_t>& itemIDs)
{
    RemoveChildrenIf(
        [&](const CAtom& child)
        {
            const auto* const entry = dynamic_cast<const IRefEntryAtom*>(&child);
            return entry != nullptr && itemIDs.contains(entry->GetFromItemID());
        });
}

bool IRefAtom::WidenIDs()
{
    if (GetVersion() != 0)
        return true;
    std::vector<IRefEntryAtom*> entries;
    for (CAtom* const child : GetChildren())
    {
        auto* const entry = dynamic_cast<IRefEntryAtom*>(child);
        if (entry == nullptr || !entry->IsWhole())
            return false;
        entries.push_back(entry);
    }
    SetVersion(1);
    std::ranges::for_each(entries, &IRefEntryAtom::WidenIDs);
    return true;
}
