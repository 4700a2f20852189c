// What of an iloc is about reading the items and laying out idat anew.

#include "mp4/heif/ExtentOffsetDataForSorting.h"
#include "mp4/heif/IDatAtom.h"
#include "mp4/heif/ILocAtom.h"
#include "mp4/model/Exception.h"
#include "system/thread/ZVQSort.h"

#include <algorithm>

namespace
{
// Where an extent begins in what its item counts from. Throws if that is beyond 64 bits.
uint64_t GetPlace(const ILocEntry& entry, const ILocExtent& extent)
{
    uint64_t place = 0;
    if (__builtin_add_overflow(entry.BaseOffset, extent.Offset, &place))
        ThrowException(L"Item %d lies beyond any file", entry.ItemID);
    return place;
}

// The only extent of an item may leave its length open; then it goes on to the end of idat. What several would mean is not known.
uint64_t GetItemDataLength(const IDatAtom& idat, const ILocEntry& entry, const ILocExtent& extent)
{
    if (extent.Length != 0)
        return extent.Length;
    if (entry.Extents.size() != 1)
        ThrowException(L"Item %d has several extents, and one without a length", entry.ItemID);
    const uint64_t place = GetPlace(entry, extent);
    return place <= idat.GetDataSize() ? idat.GetDataSize() - place : 0;
}

void CacheFromFile(CAtomReader& reader, const ILocEntry& entry, ILocExtent& extent)
{
    if (entry.DataReferenceIndex != 0)
        ThrowException(L"Item %d lies in another file", entry.ItemID);
    const auto fileLength = static_cast<uint64_t>(reader.GetLength());
    const uint64_t place = GetPlace(entry, extent);
    if (place > fileLength || extent.Length > fileLength - place)
        ThrowException(L"Item %d lies outside the file", entry.ItemID);
    const auto data = std::make_shared<CAtomBytes>();
    reader.Seek(static_cast<int64_t>(place));
    data->ReadRange(reader, static_cast<int64_t>(extent.Length), CRangeEnd::MustBeThere);
    extent.Data = data;
}

void CacheFromItemData(CAtomReader& reader, const IDatAtom& idat, const ILocEntry& entry, ILocExtent& extent)
{
    std::vector<uint8_t> bytes;
    if (!idat.ReadData(reader, GetPlace(entry, extent), GetItemDataLength(idat, entry, extent), bytes))
        ThrowException(L"Item %d lies outside the bytes of idat", entry.ItemID);
    extent.Data = std::make_shared<CAtomBytes>(bytes);
}

[[noreturn]] void ThrowTooLarge()
{
    ThrowException(L"The items in idat hold more than %d MiB", static_cast<int32_t>(ILocAtom::MaximumItemData >> 20));
}

// Before any is read. Extents may lie over each other, so together they can hold more than idat.
void CheckItemDataSize(const IDatAtom& idat, const std::vector<ILocEntry>& entries)
{
    uint64_t rest = ILocAtom::MaximumItemData;
    for (const ILocEntry& entry : entries)
        for (const ILocExtent& extent : entry.Extents)
        {
            if (entry.GetConstructionMethod() != ILocEntry::InItemData)
                continue;
            const uint64_t length = GetItemDataLength(idat, entry, extent);
            if (length > rest)
                ThrowTooLarge();
            rest -= length;
        }
}

// Puts extents behind each other. Those that lie over each other stay so, in one block.
class ItemDataWriter
{
public:
    // In the order of their offsets.
    void Add(const ExtentOffsetDataForSorting& place)
    {
        const std::span<const uint8_t> data = place.Extent->Data->View();
        if (place.Offset >= m_oldEnd)
        {
            m_oldStart = m_oldEnd = place.Offset;
            m_newStart = m_bytes.size();
        }
        const uint64_t present = std::min<uint64_t>(m_oldEnd - place.Offset, data.size());
        m_bytes.insert(m_bytes.end(), data.begin() + static_cast<ptrdiff_t>(present), data.end());
        m_oldEnd = std::max(m_oldEnd, place.Offset + data.size());
        place.Extent->Offset = m_newStart + place.Offset - m_oldStart;
        place.Extent->Length = data.size();
    }

    std::span<const uint8_t> GetBytes() const { return m_bytes; }

private:
    std::vector<uint8_t> m_bytes;
    // Of the block.
    uint64_t m_oldStart = 0;
    uint64_t m_oldEnd = 0;
    uint64_t m_newStart = 0;
};
}

void ILocAtom::ReadAndCacheExistingData(CAtomReader& reader, const IDatAtom& idat)
{
    CheckItemDataSize(idat, m_entries);
    for (ILocEntry& entry : m_entries)
        for (ILocExtent& extent : entry.Extents)
        {
            if (entry.GetConstructionMethod() == ILocEntry::InFile)
                CacheFromFile(reader, entry, extent);
            else if (entry.GetConstructionMethod() == ILocEntry::InItemData)
                CacheFromItemData(reader, idat, entry, extent);
            else
                ThrowException(L"Item %d lies in a way that cannot be followed", entry.ItemID);
        }
}

void ILocAtom::SetNewItemData(const MetadataItemID& item, std::span<const uint8_t> bytes, IDatAtom& idat)
{
    ILocEntry& entry = FindOrAddEntry(item);
    entry.MethodField = ILocEntry::InItemData;
    entry.DataReferenceIndex = 0;
    entry.BaseOffset = 0;
    // Behind all that is there.
    entry.Extents = {
        ILocExtent {.Offset = idat.GetDataSize(), .Data = std::make_shared<CAtomBytes>(bytes)}
    };
    RaiseVersion(item.ID);
    LayOutItemData(idat);
}

void ILocAtom::RemoveItems(const std::unordered_set<uint32_t>& itemIDs, IDatAtom& idat)
{
    const size_t removed = std::erase_if(m_entries, [&](const ILocEntry& entry) { return itemIDs.contains(entry.ItemID); });
    m_itemCount -= static_cast<uint32_t>(removed);
    LayOutItemData(idat);
}

ILocEntry& ILocAtom::FindOrAddEntry(const MetadataItemID& item)
{
    const auto count = std::ranges::count(m_entries, item.ID, &ILocEntry::ItemID);
    if (item.IsAdded && count > 0)
        ThrowException(L"Inconsistent results for item %d.  iinf added new entry (%d), iloc found existing entry (%d)", item.ID,
                       int32_t {item.IsAdded}, 1);
    if (count > 1)
        ThrowException(L"Item %d lies in more than one place", item.ID);
    if (count == 1)
        return *std::ranges::find(m_entries, item.ID, &ILocEntry::ItemID);
    if (m_entries.size() >= MaximumItems)
        ThrowException(L"There are more than %d items", MaximumItems);
    ++m_itemCount;
    ILocEntry& entry = m_entries.emplace_back();
    entry.ItemID = item.ID;
    return entry;
}

void ILocAtom::RaiseVersion(uint32_t itemID)
{
    // Before there was a method the size of the index had no meaning.
    constexpr uint16_t AllButIndex = 0xfff0;
    if (GetVersion() == 0)
    {
        SetVersion(1);
        m_sizes &= AllButIndex;
    }
    if (itemID > UINT16_MAX && GetVersion() == 1)
        SetVersion(2);
}

void ILocAtom::WidenSizes()
{
    constexpr uint16_t OffsetOfFourBytes = 0x4000;
    constexpr uint16_t LengthOfFourBytes = 0x0400;
    if (GetOffsetSize() == 0)
        m_sizes |= OffsetOfFourBytes;
    if (GetLengthSize() == 0)
        m_sizes |= LengthOfFourBytes;
}

void ILocAtom::LayOutItemData(IDatAtom& idat)
{
    std::vector<ExtentOffsetDataForSorting> order;
    for (ILocEntry& entry : m_entries)
        if (entry.GetConstructionMethod() == ILocEntry::InItemData)
        {
            for (ILocExtent& extent : entry.Extents)
            {
                if (extent.Data == nullptr)
                    ThrowException(L"The bytes of item %d were not read", entry.ItemID);
                order.push_back({&extent, GetPlace(entry, extent)});
            }
            entry.BaseOffset = 0;
        }
    if (!order.empty())
        WidenSizes();
    ExtentOffsetCompare compare;
    ZVQSort<ExtentOffsetDataForSorting>(compare).Sort(order.data(), static_cast<int64_t>(order.size()));
    ItemDataWriter writer;
    for (const ExtentOffsetDataForSorting& place : order)
        writer.Add(place);
    if (writer.GetBytes().size() > MaximumItemData)
        ThrowTooLarge();
    idat.SetData(writer.GetBytes());
    for (ILocEntry& entry : m_entries)
        for (ILocExtent& extent : entry.Extents)
            extent.Data = nullptr;
}
