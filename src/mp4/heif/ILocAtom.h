#pragma once

#include "mp4/heif/MetadataItemKind.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFoundAtom.h"
#include "mp4/model/CFullAtom.h"

#include <cstdint>
#include <memory>
#include <span>
#include <unordered_set>
#include <vector>

class IDatAtom;

// A piece of an item.
struct ILocExtent
{
    uint64_t Index = 0;
    // Counts from the base offset of the item.
    uint64_t Offset = 0;
    uint64_t Length = 0;
    // What it holds, while items are laid out anew; otherwise null.
    std::shared_ptr<const CAtomBytes> Data = {};
};

// Where one item lies.
struct ILocEntry
{
    // What the offsets count from: the start of the file, the body of idat, or that of another item.
    static constexpr uint16_t InFile = 0;
    static constexpr uint16_t InItemData = 1;
    static constexpr uint16_t InItem = 2;

    uint16_t GetConstructionMethod() const { return MethodField & 0xf; }

    uint32_t ItemID = 0;
    // The method is in its low four bits.
    uint16_t MethodField = InFile;
    uint16_t DataReferenceIndex = 0;
    uint64_t BaseOffset = 0;
    std::vector<ILocExtent> Extents;
};

// iloc: where the items lie (ISO/IEC 14496-12, 8.11.3). Of version 1 the index of an extent is not read.
class ILocAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    // Pictures of many tiles have some hundred items, each in one piece.
    static constexpr uint32_t MaximumItems = 20'000;
    static constexpr uint16_t MaximumExtents = 32;
    // Of all items in idat, which is meant for small ones.
    static constexpr uint64_t MaximumItemData = uint64_t {64} << 20;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor);

    // The offsets of the items in the file are counted from the start of the data of the mdat that was set, without their base
    // offsets, and the reverse. Throws without such an mdat, and when an item lies before it; nothing is changed then. Nothing
    // happens when they are counted so already.
    void ConvertToRelative() override;
    void ConvertToAbsolute() override;
    // Looks up what all items hold, as far as it may be laid out anew: copies of the bytes in idat, and the places of those in the
    // file, which the reader reads. Throws, with a message about the item, if one lies anywhere else, or if those in idat have more
    // bytes than belong there.
    void ReadAndCacheExistingData(CAtomReader& reader, const IDatAtom& idat);
    // Gives an item new bytes in idat, as its only extent, and lays out idat anew: the others first, in their order and without
    // the bytes that belong to none. What the items hold must be cached, and is not any more afterwards. Takes wider fields and a
    // higher version if that is needed.
    void SetNewItemData(const MetadataItemID& item, std::span<const uint8_t> bytes, IDatAtom& idat);
    // Leaves out items, under the same conditions.
    void RemoveItems(const std::unordered_set<uint32_t>& itemIDs, IDatAtom& idat);

    // The mdat that all items in the file lie in, which must outlive the atom; null for none.
    void SetMDAT(CMDATAtom* mdat) { m_mdat = mdat; }
    const CMDATAtom* GetMDAT() const { return m_mdat; }

    // What the file says; the list is shorter when the atom ends before.
    uint32_t GetItemCount() const { return m_itemCount; }
    const std::vector<ILocEntry>& GetEntries() const { return m_entries; }
    // Whether all of the file's items are in the list, with offsets of the sizes that the format has.
    bool IsUnderstood() const;
    // The width of the offset of an extent in bytes; with 0 there is none.
    int32_t GetOffsetSize() const { return m_sizes >> 12; }

private:
    int32_t GetLengthSize() const { return m_sizes >> 8 & 0xf; }
    int32_t GetBaseOffsetSize() const { return m_sizes >> 4 & 0xf; }
    int32_t GetIndexSize() const { return HasIndex() ? m_sizes & 0xf : 0; }

    bool HasIndex() const { return GetVersion() >= 2; }
    int32_t GetItemNumberWidth() const { return GetVersion() < 2 ? 2 : 4; }
    int64_t GetMinimumEntrySize() const;

    void EntryFields(CFieldVisitor& visitor, ILocEntry& entry);
    void ExtentFields(CFieldVisitor& visitor, ILocExtent& extent);

    ILocEntry& FindOrAddEntry(const MetadataItemID& item);
    void RaiseVersion(uint32_t itemID);
    void WidenSizes();
    void LayOutItemData(IDatAtom& idat);

    template <class Change>
    void ForEachExtentInFile(Change change);

    bool m_isRelative = false;
    CFoundAtom<CMDATAtom> m_mdat;
    bool m_hasItems = true;
    uint16_t m_sizes = 0x4440;  // of offset, length, base offset and index, four bits each
    uint32_t m_itemCount = 0;
    std::vector<ILocEntry> m_entries;
    CAtomBytes m_rest;
};

inline constexpr CAtomClass ILocAtom::Class = MakeAtomClass<ILocAtom>("ILocAtom");
