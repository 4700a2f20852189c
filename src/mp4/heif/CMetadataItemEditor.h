#pragma once

#include "core/containers/ZVOwnedPtrArray.h"
#include "mp4/heif/MetadataItemKind.h"
#include "mp4/model/CContainerAtom.h"

#include <cstdint>
#include <memory>
#include <span>
#include <unordered_set>

class IDatAtom;
class IInfAtom;
class ILocAtom;

// Changes the metadata of the primary picture among the items of a file. It works on a copy of the meta atom, so that nothing is
// changed by what fails; that throws a message.
class CMetadataItemEditor
{
public:
    // The only meta atom of pictures at the top of a file; throws if there is no such one.
    static CContainerAtom& FindMeta(const ZVOwnedPtrArray<CAtom>& roots);

    // The reader reads the file that the atom was read from.
    CMetadataItemEditor(CAtomReader& reader, const CContainerAtom& meta);

    // Puts a TIFF block or an XMP document in the place of the one there is, or adds it. Without bytes it removes all that there is
    // of the kind.
    void Set(MetadataItemKind kind, std::span<const uint8_t> bytes);
    // The copy, with what was set.
    std::unique_ptr<CAtom> TakeMeta();

private:
    void CheckItems() const;
    void Remove(const std::unordered_set<uint32_t>& itemIDs);
    std::unordered_set<uint32_t> FindIDs(MetadataItemKind kind) const;
    void CheckRemovable(const std::unordered_set<uint32_t>& itemIDs) const;
    // Reads what the items hold. Returns the idat, which is made if there is none.
    IDatAtom& ReadItems();
    void DropEmpty();

    CAtomReader& m_reader;
    std::unique_ptr<CContainerAtom> m_meta;
    IInfAtom& m_items;
    ILocAtom& m_places;
};
