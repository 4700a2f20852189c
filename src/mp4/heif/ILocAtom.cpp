#include "mp4/heif/ILocAtom.h"

#include "mp4/model/Exception.h"

namespace
{
// Pictures of many tiles have some hundred items, each in one piece.
constexpr uint32_t MaximumItems = 20'000;
constexpr uint16_t MaximumExtents = 32;

// An offset or an index, which has 32 or 64 bits. Any other width means that there is none.
void OptionalNumber(CFieldVisitor& visitor, const char* name, uint64_t& value, int32_t width)
{
    if (width == 4 || width == 8)
        visitor.Number(name, width, value);
}

// A number of any width that a number can have.
void SizedNumber(CFieldVisitor& visitor, const char* name, uint64_t& value, int32_t width)
{
    if (width >= 1 && width <= 8)
        visitor.Number(name, width, value);
}
}

void ILocAtom::Fields(CFieldVisitor& visitor)
{
    CFullAtom::Fields(visitor);
    const int32_t countWidth = GetItemNumberWidth();
    if (visitor.If(m_hasItems, 2 + countWidth))
    {
        visitor.Field("sizes of offset, length, base offset, index", m_sizes);
        visitor.Field("item count", m_itemCount, countWidth);
        if (m_itemCount > MaximumItems)
            ThrowException(L"ILocAtom::ILocAtom too many iloc item entries");
        visitor.Entries(m_entries, m_itemCount, GetMinimumEntrySize(),
                        [this, &visitor](ILocEntry& entry) { EntryFields(visitor, entry); });
    }
    visitor.Rest("no items", m_rest);
}

int64_t ILocAtom::GetMinimumEntrySize() const
{
    constexpr int64_t SizesByVersion[] = {6, 8, 10};
    return GetBaseOffsetSize() + SizesByVersion[GetVersion() < 2 ? GetVersion() : 2];
}

void ILocAtom::EntryFields(CFieldVisitor& visitor, ILocEntry& entry)
{
    visitor.Field("item id", entry.ItemID, GetItemNumberWidth());
    if (GetVersion() > 0)
        visitor.Field("construction method", entry.MethodField);
    visitor.Field("data reference index", entry.DataReferenceIndex);
    OptionalNumber(visitor, "base offset", entry.BaseOffset, GetBaseOffsetSize());
    auto count = static_cast<uint16_t>(entry.Extents.size());
    visitor.Field("extent count", count);
    if (count > MaximumExtents)
        ThrowException(L"ILocAtom::ILocAtom too many extents per entry");
    const int64_t extentSize = GetOffsetSize() + GetLengthSize() + GetIndexSize();
    visitor.Entries(entry.Extents, count, extentSize, [this, &visitor](ILocExtent& extent) { ExtentFields(visitor, extent); });
    if (entry.Extents.size() < count)
        ThrowException(L"ILocAtom::ILocAtom not enough bytes left for an extent");
}

void ILocAtom::ExtentFields(CFieldVisitor& visitor, ILocExtent& extent)
{
    OptionalNumber(visitor, "extent index", extent.Index, GetIndexSize());
    SizedNumber(visitor, "extent offset", extent.Offset, GetOffsetSize());
    SizedNumber(visitor, "extent length", extent.Length, GetLengthSize());
}
