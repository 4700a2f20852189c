#include "mp4/save/CMp4SaveCheck.h"

#include "mp4/heif/ILocAtom.h"
#include "mp4/model/CFREEAtom.h"
#include "mp4/model/Exception.h"
#include "mp4/movie/CDREFAtom.h"
#include "mp4/movie/CMDATAtom.h"
#include "mp4/samples/CChunkOffsetAtomBase.h"
#include "mp4/samples/CMDATIndex.h"
#include "mp4/save/CMp4Layout.h"
#include "mp4/save/ForEachAtom.h"

#include <algorithm>

namespace
{
constexpr uint32_t MOOF = FourCC("moof");
constexpr uint32_t META = FourCC("meta");
constexpr uint32_t DREF = FourCC("dref");

// Atoms that are kept as they stand, with places in the file that nobody here knows.
struct UnknownPlaces
{
    uint32_t Type;
    const wchar_t* Error;
};

constexpr UnknownPlaces AtomsWithUnknownPlaces[] = {
    {FourCC("saio"), L"The places of the keys of encrypted samples (saio) cannot be moved"},
    {FourCC("gps "), L"The places of positions on the globe (gps) cannot be moved"        },
    {FourCC("cmov"), L"The places in a compressed movie (cmov) cannot be moved"           },
    {META,           L"A meta atom that is not understood may hold places in the file"    },
};

// The mdat whose data a range lies in, or null.
CMDATAtom* FindMDAT(const CMDATIndex& index, uint64_t start, uint64_t length)
{
    const CMDATRange* const range = index.Find(start);
    if (range == nullptr)
        return nullptr;
    const CMDATAtom& mdat = *range->Atom;
    return length <= mdat.GetDataSize() - (start - mdat.GetDataStart()) ? range->Atom : nullptr;
}

// The mdat of the items of one iloc, or null when none of them lies in the file.
CMDATAtom* FindMDAT(const CMDATIndex& index, const ILocAtom& places)
{
    CMDATAtom* found = nullptr;
    for (const ILocEntry& entry : places.GetEntries())
    {
        if (entry.GetConstructionMethod() != ILocEntry::InFile || entry.Extents.empty())
            continue;
        if (entry.DataReferenceIndex != 0)
            ThrowException(L"Item %d lies in another file", entry.ItemID);
        if (places.GetOffsetSize() == 0)
            ThrowException(L"The items of the file have no offsets of their own that could be moved");
        for (const ILocExtent& extent : entry.Extents)
        {
            CMDATAtom* const mdat = FindMDAT(index, entry.BaseOffset + extent.Offset, extent.Length);
            // A length of 0 stands for the whole file.
            if (mdat == nullptr || extent.Length == 0)
                ThrowException(L"Item %d does not lie in an mdat atom", entry.ItemID);
            if (found != nullptr && found != mdat)
                ThrowException(L"The items of the file lie in several mdat atoms");
            found = mdat;
        }
    }
    return found;
}

// Whether an entry of a dref names another file.
bool IsElsewhere(const CAtom& entry)
{
    constexpr uint32_t SelfContained = 1;
    constexpr size_t FlagsEnd = 4;
    if (const auto* const known = dynamic_cast<const CDataEntryAtom*>(&entry))
        return (known->GetFlags() & SelfContained) == 0 && known->HasLocation();
    const auto* const unknown = dynamic_cast<const CFREEAtom*>(&entry);
    return unknown != nullptr && unknown->GetBody().GetCount() > static_cast<int64_t>(FlagsEnd) &&
           (unknown->GetBody().GetPart(0, FlagsEnd)[FlagsEnd - 1] & SelfContained) == 0;
}

const UnknownPlaces* FindUnknownPlaces(const CAtom& atom)
{
    const auto* const found = std::ranges::find(AtomsWithUnknownPlaces, atom.GetType(), &UnknownPlaces::Type);
    return found != std::end(AtomsWithUnknownPlaces) && atom.IsOpaque() ? found : nullptr;
}

void CheckAtom(const CAtom& atom)
{
    if (const UnknownPlaces* const row = FindUnknownPlaces(atom))
        ThrowException(row->Error);
    if (atom.GetParent() != nullptr && atom.GetParent()->GetType() == DREF && IsElsewhere(atom))
        ThrowException(L"The media of a track are in another file");
}

bool HasUnknownPlaces(const ZVOwnedPtrArray<CAtom>& roots)
{
    bool hasSome = false;
    ForEachAtom(roots, [&](const CAtom& atom) { hasSome = hasSome || FindUnknownPlaces(atom) != nullptr; });
    return hasSome;
}

void CheckWidth(const CChunkOffsetAtomBase& chunks, const CMp4Layout& layout)
{
    for (uint32_t chunk = 0; chunk < chunks.GetMatchedCount(); ++chunk)
    {
        const CMDATAtom& mdat = *chunks.GetMdat(chunk);
        if (chunks.GetOffset(chunk) - mdat.GetDataStart() + layout.GetDataStart(mdat) > chunks.GetMaximumOffset())
            ThrowException(L"A chunk would lie where no offset of 32 bits reaches");
    }
}

void CheckWidth(const ILocAtom& places, const CMp4Layout& layout)
{
    const uint64_t maximum = places.GetOffsetSize() == 4 ? UINT32_MAX : UINT64_MAX;
    for (const ILocEntry& entry : places.GetEntries())
        for (const ILocExtent& extent : entry.Extents)
        {
            if (entry.GetConstructionMethod() != ILocEntry::InFile)
                continue;
            const CMDATAtom& mdat = *places.GetMDAT();
            const uint64_t place = entry.BaseOffset + extent.Offset - mdat.GetDataStart() + layout.GetDataStart(mdat);
            if (place < entry.BaseOffset || place - entry.BaseOffset > maximum)
                ThrowException(L"Item %d would lie where its offset does not reach", entry.ItemID);
        }
}
}

void CMp4SaveCheck::TieItems(const ZVOwnedPtrArray<CAtom>& roots)
{
    CMDATList mdats;
    for (CAtom* const root : roots)
        if (auto* const mdat = dynamic_cast<CMDATAtom*>(root))
            mdats.Add(mdat);
    const CMDATIndex index(mdats);
    for (ILocAtom* const places : FindAtoms<ILocAtom>(roots))
    {
        if (!places->IsUnderstood())
            ThrowException(L"The places of the file's items are not understood");
        CMDATAtom* const mdat = FindMDAT(index, *places);
        if (mdats.IsEmpty())
            ThrowException(L"There is no mdat atom that the items of the file could lie in");
        places->SetMDAT(mdat != nullptr ? mdat : mdats[0]);
    }
}

void CMp4SaveCheck::CheckPlaces(const ZVOwnedPtrArray<CAtom>& roots)
{
    for (const CAtom* const root : roots)
        if (root->GetType() == MOOF)
            ThrowException(L"A film in fragments cannot be saved");
    for (const CChunkOffsetAtomBase* const chunks : FindAtoms<CChunkOffsetAtomBase>(roots))
        if (chunks->GetMatchedCount() != chunks->GetChunkCount())
            ThrowException(L"Chunk %d of a track does not lie in an mdat atom", chunks->GetMatchedCount() + 1);
}

void CMp4SaveCheck::KeepLongHeaders(const ZVOwnedPtrArray<CAtom>& roots)
{
    if (!HasUnknownPlaces(roots))
        return;
    for (CAtom* const root : roots)
        if (const auto* const mdat = dynamic_cast<CMDATAtom*>(root))
            root->SetForceLarge(mdat->GetDataStart() - root->GetPosition() == CAtom::LargeHeaderSize);
}

void CMp4SaveCheck::CheckMove(const ZVOwnedPtrArray<CAtom>& roots, const CMp4Layout& layout)
{
    if (!layout.MovesData())
        return;
    ForEachAtom(roots, CheckAtom);
    for (const CChunkOffsetAtomBase* const chunks : FindAtoms<CChunkOffsetAtomBase>(roots))
        CheckWidth(*chunks, layout);
    for (const ILocAtom* const places : FindAtoms<ILocAtom>(roots))
        CheckWidth(*places, layout);
}
