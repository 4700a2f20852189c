#pragma once

#include "mp4/heif/MetadataItemKind.h"
#include "mp4/model/CFullAtom.h"

#include <unordered_set>
#include <vector>

class InfeAtom;

// iinf: what the items are, an infe child for each (ISO/IEC 14496-12, 8.11.6).
class IInfAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Field("entry count", m_count, GetVersion() == 0 ? 2 : 4);
        visitor.Children(*this);
    }

    // What the file says; there may be more children, or fewer.
    uint32_t GetEntryCount() const { return m_count; }
    // Whether each child is an item, and there are as many as it says.
    bool IsUnderstood() const;

    // The items of metadata of a kind that are about the primary picture. One that says of no picture that it is about it counts
    // too, after those that do.
    std::vector<InfeAtom*> FindMetadataItems(MetadataItemKind kind) const;
    // The first of these, made ready for new bytes. If there is none one is added, with a number that nothing in the meta atom has.
    // It gets a reference to the primary picture if it has none. Throws if a new one cannot be added with it, or if new bytes
    // cannot be given to this item alone; the atoms of the meta atom may be changed then.
    MetadataItemID GetMetadataItemID(MetadataItemKind kind);
    void RemoveItems(const std::unordered_set<uint32_t>& itemIDs);

private:
    CContainerAtom& GetMeta() const;
    uint32_t FindUnusedID() const;
    bool AddReferenceToPrimary(uint32_t itemID) const;
    void PrepareForNewData(InfeAtom& item) const;

    uint32_t m_count = 0;
};

inline constexpr CAtomClass IInfAtom::Class = MakeAtomClass<IInfAtom>("IInfAtom");
