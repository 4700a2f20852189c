#include "mp4/heif/CMetadataItemEditor.h"

#include "mp4/heif/IDatAtom.h"
#include "mp4/heif/IInfAtom.h"
#include "mp4/heif/ILocAtom.h"
#include "mp4/heif/IRefAtom.h"
#include "mp4/heif/IRefEntryAtom.h"
#include "mp4/heif/InfeAtom.h"
#include "mp4/heif/ItemPropAssocAtom.h"
#include "mp4/heif/PrimaryItemAtom.h"
#include "mp4/model/EncodeText.h"
#include "mp4/model/Exception.h"
#include "mp4/save/ForEachAtom.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace
{
using namespace std::string_view_literals;

constexpr uint32_t META = FourCC("meta");
constexpr uint32_t PICT = FourCC("pict");
constexpr uint32_t PITM = FourCC("pitm");
constexpr uint32_t IINF = FourCC("iinf");
constexpr uint32_t ILOC = FourCC("iloc");
constexpr uint32_t IREF = FourCC("iref");
constexpr uint32_t IDAT = FourCC("idat");

// More than any picture has, and few enough for all that is done with each.
constexpr int32_t MaximumReferences = 20'000;

// What a TIFF block begins with, in either order of bytes.
constexpr std::string_view TIFFStarts[] = {"II*\0"sv, "MM\0*"sv};

// The bytes of an item. Those of Exif begin with how many bytes to pass over before the TIFF block (ISO/IEC 23008-12, A.2.1).
std::vector<uint8_t> MakeItem(MetadataItemKind kind, std::span<const uint8_t> bytes)
{
    if (bytes.size() > ILocAtom::MaximumItemData)
        ThrowException(L"The metadata are too large for an item");
    std::vector<uint8_t> item;
    if (kind == MetadataItemKind::Exif)
    {
        const auto isStart = [&](std::string_view start)
        { return bytes.size() >= start.size() && std::ranges::equal(bytes.first(start.size()), AsBytes(start)); };
        if (std::ranges::none_of(TIFFStarts, isStart))
            ThrowException(L"Exif data must begin as a TIFF file does");
        item.resize(sizeof(uint32_t));
    }
    item.insert(item.end(), bytes.begin(), bytes.end());
    return item;
}
}

CContainerAtom& CMetadataItemEditor::FindMeta(const ZVOwnedPtrArray<CAtom>& roots)
{
    CContainerAtom* found = nullptr;
    for (CAtom* const root : roots)
    {
        auto* const meta = root->GetType() == META ? dynamic_cast<CContainerAtom*>(root) : nullptr;
        if (meta == nullptr || meta->GetHandlerType() != PICT)
            continue;
        if (found != nullptr)
            ThrowException(L"The file has more than one list of pictures");
        found = meta;
    }
    if (found == nullptr)
        ThrowException(L"The file has no list of pictures");
    return *found;
}

CMetadataItemEditor::CMetadataItemEditor(CAtomReader& reader, const CContainerAtom& meta)
    : m_reader(reader),
      m_meta(static_cast<CContainerAtom*>(meta.Clone(nullptr))),
      m_items(static_cast<IInfAtom&>(m_meta->GetRequiredChild(IINF))),
      m_places(static_cast<ILocAtom&>(m_meta->GetRequiredChild(ILOC)))
{
}

void CMetadataItemEditor::Set(MetadataItemKind kind, std::span<const uint8_t> bytes)
{
    CheckItems();
    if (bytes.empty())
    {
        Remove(FindIDs(kind));
        return;
    }
    const std::vector<uint8_t> item = MakeItem(kind, bytes);
    IDatAtom& idat = ReadItems();
    m_places.SetNewItemData(m_items.GetMetadataItemID(kind), item, idat);
}

std::unique_ptr<CAtom> CMetadataItemEditor::TakeMeta()
{
    return std::move(m_meta);
}

void CMetadataItemEditor::CheckItems() const
{
    constexpr uint8_t MaximumVersion = 2;
    if (!m_places.IsUnderstood() || m_places.GetVersion() > MaximumVersion)
        ThrowException(L"The places of the file's items are not understood");
    if (!m_items.IsUnderstood())
        ThrowException(L"The list of the file's items is not understood");
    if (m_items.GetEntryCount() > ILocAtom::MaximumItems)
        ThrowException(L"There are more than %d items", ILocAtom::MaximumItems);
    const auto* const references = static_cast<const IRefAtom*>(m_meta->GetFirstChild(IREF));
    if (references != nullptr && references->GetChildren().GetCount() > MaximumReferences)
        ThrowException(L"The items of the file have more than %d references", MaximumReferences);
}

std::unordered_set<uint32_t> CMetadataItemEditor::FindIDs(MetadataItemKind kind) const
{
    std::unordered_set<uint32_t> itemIDs;
    for (const InfeAtom* const item : m_items.FindMetadataItems(kind))
        itemIDs.insert(item->GetItemID());
    return itemIDs;
}

void CMetadataItemEditor::Remove(const std::unordered_set<uint32_t>& itemIDs)
{
    if (itemIDs.empty())
        return;
    CheckRemovable(itemIDs);
    IDatAtom& idat = ReadItems();
    m_items.RemoveItems(itemIDs);
    m_places.RemoveItems(itemIDs, idat);
    for (IRefAtom* const references : FindAtoms<IRefAtom>(m_meta->GetChildren()))
        references->RemoveReferencesFrom(itemIDs);
    for (ItemPropAssocAtom* const associations : FindAtoms<ItemPropAssocAtom>(m_meta->GetChildren()))
        associations->RemoveItems(itemIDs);
    DropEmpty();
}

// Nothing else may need an item that goes.
void CMetadataItemEditor::CheckRemovable(const std::unordered_set<uint32_t>& itemIDs) const
{
    const auto refuse = [](uint32_t itemID) { ThrowException(L"Item %d is needed by another", itemID); };
    for (const InfeAtom* const item : FindAtoms<InfeAtom>(m_items.GetChildren()))
        if (itemIDs.contains(item->GetItemID()) && !item->IsExif() && !item->IsXMP())
            refuse(item->GetItemID());
    for (const PrimaryItemAtom* const primary : FindAtoms<PrimaryItemAtom>(m_meta->GetChildren()))
        if (itemIDs.contains(primary->GetItemID()))
            refuse(primary->GetItemID());
    for (const IRefEntryAtom* const entry : FindAtoms<IRefEntryAtom>(m_meta->GetChildren()))
        for (uint32_t index = 0; !itemIDs.contains(entry->GetFromItemID()) && index < entry->GetToItemCount(); ++index)
            if (itemIDs.contains(entry->GetToItemID(index)))
                refuse(entry->GetToItemID(index));
}

IDatAtom& CMetadataItemEditor::ReadItems()
{
    if (m_meta->GetFirstChild(IDAT) == nullptr)
        m_meta->AddChild(std::make_unique<IDatAtom>(IDatAtom::Class, IDAT));
    auto& idat = static_cast<IDatAtom&>(m_meta->GetRequiredChild(IDAT));
    m_places.ReadAndCacheExistingData(m_reader, idat);
    return idat;
}

// Neither is needed without anything in it.
void CMetadataItemEditor::DropEmpty()
{
    if (static_cast<const IDatAtom&>(m_meta->GetRequiredChild(IDAT)).GetDataSize() == 0)
        m_meta->RemoveChildren(IDAT);
    const auto* const references = static_cast<const IRefAtom*>(m_meta->GetFirstChild(IREF));
    if (references != nullptr && references->GetChildren().GetCount() == 0)
        m_meta->RemoveChildren(IREF);
}
