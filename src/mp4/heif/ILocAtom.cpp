#include "mp4/heif/ILocAtom.h"

#include "mp4/model/Exception.h"
#include "mp4/movie/CMDATAtom.h"
#include "system/log/ZVLog.h"

#include <algorithm>

namespace
{
constexpr ZVLogSource RelativeSource {ZVLogCategory::General, L"ILocAtom::ConvertToRelative"};
constexpr ZVLogSource AbsoluteSource {ZVLogCategory::General, L"ILocAtom::ConvertToAbsolute"};
constexpr char LogHead[] = "Item index, ext index, offset, size, next offset";
constexpr char LogRow[] = "%d, %d, %I64d, %I64d, %I64d";

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

bool ILocAtom::IsUnderstood() const
{
    constexpr int32_t Widths[] = {0, 4, 8};
    const auto isWidth = [&Widths](int32_t width) { return std::ranges::find(Widths, width) != std::end(Widths); };
    // An index that version 1 has is not read, and then everything after it is shifted.
    const bool hasUnreadIndex = GetVersion() == 1 && (m_sizes & 0xf) != 0;
    return m_hasItems && m_entries.size() == m_itemCount && isWidth(GetOffsetSize()) && isWidth(GetLengthSize()) &&
           isWidth(GetBaseOffsetSize()) && isWidth(GetIndexSize()) && !hasUnreadIndex;
}

template <class Change>
void ILocAtom::ForEachExtentInFile(Change change)
{
    for (size_t item = 0; item < m_entries.size(); ++item)
        if (m_entries[item].GetConstructionMethod() == ILocEntry::InFile)
            for (size_t index = 0; index < m_entries[item].Extents.size(); ++index)
                change(m_entries[item], m_entries[item].Extents[index], static_cast<int32_t>(item), static_cast<int32_t>(index));
}

void ILocAtom::ConvertToRelative()
{
    if (m_mdat == nullptr)
        ThrowException(L"ILocAtom::ConvertToRelative: An MDAT atom has not been associated");
    if (m_isRelative)
        return;
    const uint64_t start = m_mdat->GetDataStart();
    ForEachExtentInFile(
        [start](const ILocEntry& entry, const ILocExtent& extent, int32_t, int32_t)
        {
            if (entry.BaseOffset + extent.Offset < start)
                ThrowException(L"offset for an entry is invalid");
        });
    m_isRelative = true;
    RelativeSource.Log(LogHead);
    ForEachExtentInFile(
        [start](const ILocEntry& entry, ILocExtent& extent, int32_t item, int32_t index)
        {
            extent.Offset += entry.BaseOffset - start;
            RelativeSource.Log(LogRow, item, index, extent.Offset, extent.Length, extent.Offset + extent.Length);
        });
}

void ILocAtom::ConvertToAbsolute()
{
    if (m_mdat == nullptr)
        ThrowException(L"ILocAtom::ConvertToAbsolute: An MDAT atom has not been associated");
    if (!m_isRelative)
        return;
    m_isRelative = false;
    const uint64_t start = m_mdat->GetDataStart();
    AbsoluteSource.Log(LogHead);
    ForEachExtentInFile(
        [start](const ILocEntry& entry, ILocExtent& extent, int32_t item, int32_t index)
        {
            extent.Offset += start - entry.BaseOffset;
            AbsoluteSource.Log(LogRow, item, index, extent.Offset, extent.Length, extent.Offset + extent.Length);
        });
}
