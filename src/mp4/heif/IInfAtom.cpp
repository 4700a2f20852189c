#include "mp4/heif/IInfAtom.h"

#include "mp4/heif/ILocAtom.h"
#include "mp4/heif/IRefAtom.h"
#include "mp4/heif/IRefEntryAtom.h"
#include "mp4/heif/InfeAtom.h"
#include "mp4/heif/ItemPropAssocAtom.h"
#include "mp4/heif/PrimaryItemAtom.h"
#include "mp4/model/CFREEAtom.h"
#include "mp4/model/Exception.h"
#include "mp4/save/ForEachAtom.h"
#include "system/log/ZVLog.h"

#include <algorithm>

namespace
{
constexpr ZVLogSource GetItemSource {ZVLogCategory::General, L"IInfAtom::GetMetadataItemID"};

constexpr uint32_t META = FourCC("meta");
constexpr uint32_t PITM = FourCC("pitm");
constexpr uint32_t IREF = FourCC("iref");
constexpr uint32_t GRPL = FourCC("grpl");
// From a description to what it describes.
constexpr uint32_t CDSC = FourCC("cdsc");

// The items that describe others, by whether the primary picture is among these.
struct Descriptions
{
    explicit Descriptions(const CContainerAtom& meta)
    {
        const auto* const primary = static_cast<const PrimaryItemAtom*>(meta.GetFirstChild(PITM));
        for (const IRefEntryAtom* const entry : FindAtoms<IRefEntryAtom>(meta.GetChildren()))
            for (uint32_t index = 0; entry->GetType() == CDSC && index < entry->GetToItemCount(); ++index)
            {
                const bool isPrimary = primary != nullptr && entry->GetToItemID(index) == primary->GetItemID();
                (isPrimary ? OfPrimary : OfOthers).insert(entry->GetFromItemID());
            }
    }

    std::unordered_set<uint32_t> OfPrimary;
    std::unordered_set<uint32_t> OfOthers;
};

// The largest number of an item that an atom of the meta atom knows, or 0.
uint32_t FindLargestID(const ZVOwnedPtrArray<CAtom>& atoms)
{
    uint32_t largest = 0;
    const auto see = [&largest](uint32_t itemID) { largest = std::max(largest, itemID); };
    for (const InfeAtom* const item : FindAtoms<InfeAtom>(atoms))
        see(item->GetItemID());
    for (const PrimaryItemAtom* const primary : FindAtoms<PrimaryItemAtom>(atoms))
        see(primary->GetItemID());
    for (const ILocAtom* const places : FindAtoms<ILocAtom>(atoms))
        for (const ILocEntry& entry : places->GetEntries())
            see(entry.ItemID);
    for (const ItemPropAssocAtom* const associations : FindAtoms<ItemPropAssocAtom>(atoms))
        for (const IPMAEntry& entry : associations->GetEntries())
            see(entry.ItemID);
    for (const IRefEntryAtom* const entry : FindAtoms<IRefEntryAtom>(atoms))
    {
        see(entry->GetFromItemID());
        for (uint32_t index = 0; index < entry->GetToItemCount(); ++index)
            see(entry->GetToItemID(index));
    }
    return largest;
}

// The first number from one on whose bytes stand nowhere in an atom; 0 if 32 bits end before.
uint32_t FindUnmentioned(uint32_t first, std::span<const uint8_t> bytes)
{
    std::vector<bool> isMentioned(bytes.size() + 1);
    uint32_t number = 0;
    for (const uint8_t byte : bytes)
    {
        number = number << 8 | byte;
        if (number >= first && number - first < isMentioned.size())
            isMentioned[number - first] = true;
    }
    const auto distance = static_cast<uint64_t>(std::ranges::find(isMentioned, false) - isMentioned.begin());
    return first + distance > UINT32_MAX ? 0 : static_cast<uint32_t>(first + distance);
}
}

bool IInfAtom::IsUnderstood() const
{
    return GetChildren().GetCount() == static_cast<int64_t>(m_count) && GetPassedOver().GetCount() == 0 &&
           std::ranges::all_of(GetChildren(), [](const CAtom* child) { return dynamic_cast<const InfeAtom*>(child) != nullptr; });
}

CContainerAtom& IInfAtom::GetMeta() const
{
    return static_cast<CContainerAtom&>(GetParent(META));
}

std::vector<InfeAtom*> IInfAtom::FindMetadataItems(MetadataItemKind kind) const
{
    const Descriptions descriptions(GetMeta());
    std::vector<InfeAtom*> items;
    std::vector<InfeAtom*> ofNothing;
    for (InfeAtom* const item : FindAtoms<InfeAtom>(GetChildren()))
    {
        if (!item->IsOfKind(kind))
            continue;
        if (descriptions.OfPrimary.contains(item->GetItemID()))
            items.push_back(item);
        else if (!descriptions.OfOthers.contains(item->GetItemID()))
            ofNothing.push_back(item);
    }
    items.insert(items.end(), ofNothing.begin(), ofNothing.end());
    return items;
}

MetadataItemID IInfAtom::GetMetadataItemID(MetadataItemKind kind)
{
    const std::vector<InfeAtom*> found = FindMetadataItems(kind);
    const bool isAdded = found.empty();
    if (isAdded && GetChildren().GetCount() >= static_cast<int64_t>(ILocAtom::MaximumItems))
        ThrowException(L"There are more than %d items", ILocAtom::MaximumItems);
    const uint32_t itemID = isAdded ? FindUnusedID() : found.front()->GetItemID();
    const bool isReferring = AddReferenceToPrimary(itemID);
    GetItemSource.Log("AddReference was%s successful", isReferring ? "" : " not");
    if (!isAdded)
        PrepareForNewData(*found.front());
    else if (!isReferring)
        ThrowException(L"The metadata cannot be related to the primary picture");
    else
    {
        AddChild(InfeAtom::MakeNew(itemID, kind));
        ++m_count;
    }
    return {itemID, isAdded};
}

void IInfAtom::PrepareForNewData(InfeAtom& item) const
{
    const auto hasSameID = [&](const InfeAtom* other) { return other->GetItemID() == item.GetItemID(); };
    if (std::ranges::count_if(FindAtoms<InfeAtom>(GetChildren()), hasSameID) != 1)
        ThrowException(L"Item %d stands in the list of items more than once", item.GetItemID());
    if (item.GetProtectionIndex() != 0)
        ThrowException(L"Item %d is encrypted", item.GetItemID());
    item.DropContentEncoding();
}

void IInfAtom::RemoveItems(const std::unordered_set<uint32_t>& itemIDs)
{
    const int32_t before = GetChildren().GetCount();
    RemoveChildrenIf([&](const CAtom& child) { return itemIDs.contains(static_cast<const InfeAtom&>(child).GetItemID()); });
    m_count -= static_cast<uint32_t>(before - GetChildren().GetCount());
}

// The groups of items have numbers of the same count. They are not understood, so a number is avoided that might stand in one.
uint32_t IInfAtom::FindUnusedID() const
{
    const uint32_t largest = FindLargestID(GetMeta().GetChildren());
    uint32_t itemID = largest + 1;
    if (const auto* const groups = dynamic_cast<const CFREEAtom*>(GetMeta().GetFirstChild(GRPL));
        groups != nullptr && itemID != 0)
        itemID = FindUnmentioned(itemID, groups->GetBody().View());
    if (itemID == 0)
        ThrowException(L"There is no number left for a new item");
    return itemID;
}

bool IInfAtom::AddReferenceToPrimary(uint32_t itemID) const
{
    CContainerAtom& meta = GetMeta();
    const auto* const primary = static_cast<const PrimaryItemAtom*>(meta.GetFirstChild(PITM));
    if (primary == nullptr || primary->GetItemID() == itemID)
        return false;
    if (meta.GetFirstChild(IREF) == nullptr)
        meta.AddChild(std::make_unique<IRefAtom>(IRefAtom::Class, IREF));
    return static_cast<IRefAtom&>(meta.GetRequiredChild(IREF)).AddReference(CDSC, itemID, primary->GetItemID());
}
