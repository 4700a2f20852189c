#include "mp4/CMp4Merger.h"

#include "mp4/model/Exception.h"
#include "mp4/movie/CMDATAtom.h"
#include "mp4/movie/CMOOVAtom.h"
#include "mp4/samples/CSTBLAtom.h"

#include <algorithm>
#include <unordered_map>

namespace
{
// The atoms of the second file that can be at its top.
constexpr uint32_t RootTypes[] = {FourCC("ftyp"), FourCC("free"), FourCC("moov"), FourCC("mdat")};

// What 32 bits count, less room for what may come to stand in front of the media.
constexpr uint64_t MaximumShortEnd = 0xf000'0000;

// A copy, which can be changed without harm.
std::unique_ptr<CMOOVAtom> CopyMovie(const CMp4Merger::Side& side)
{
    std::unique_ptr<CMOOVAtom> copy(static_cast<CMOOVAtom*>(side.Movie.Clone(nullptr)));
    copy->Verify(side.MdatList, false);
    return copy;
}

template <class Function>
void ForEachTable(const CMOOVAtom& movie, Function function)
{
    for (const CTRAKAtom* const track : movie.GetTracks())
        if (CSTBLAtom* const tables = track->GetSampleTables())
            function(*tables);
}

CAtom* FindRoot(const CMp4Merger::Side& side, uint32_t type)
{
    const auto found = std::ranges::find(side.RootAtoms, type, &CAtom::GetType);
    return found == side.RootAtoms.end() ? nullptr : *found;
}

bool AreMediaWhole(const CMp4Merger::Side& side)
{
    return std::ranges::none_of(side.MdatList, &CMDATAtom::IsCut);
}

bool AreChunksInMedia(const CMOOVAtom& movie)
{
    bool areInside = true;
    ForEachTable(movie,
                 [&](const CSTBLAtom& tables)
                 {
                     const CChunkOffsetAtomBase& chunks = *tables.GetChunkOffsets();
                     areInside = areInside && chunks.GetMatchedCount() == chunks.GetChunkCount();
                 });
    return areInside;
}

bool HasLongOffsets(const CMOOVAtom& movie)
{
    bool hasLong = false;
    ForEachTable(movie,
                 [&](const CSTBLAtom& tables) { hasLong = hasLong || tables.GetChunkOffsets()->GetType() == FourCC("co64"); });
    return hasLong;
}
}

// The places behind the data that lie last in the file are free.
CMp4Merger::CMp4Merger(const Side& first, const Side& second) : m_first(first), m_second(second)
{
    const auto last = std::ranges::max_element(first.MdatList, {}, &CMDATAtom::GetDataStart);
    m_target = last == first.MdatList.end() ? nullptr : *last;
}

std::unique_ptr<CMOOVAtom> CMp4Merger::MergeMovies() const
{
    CheckRootAtoms();
    std::unique_ptr<CMOOVAtom> first = CopyMovie(m_first);
    const std::unique_ptr<CMOOVAtom> second = CopyMovie(m_second);
    const ZVString fault = FindFault(*first, *second);
    const bool needsLong = NeedsLongOffsets(*first, *second);
    for (CMOOVAtom* const movie : {first.get(), second.get()})
    {
        if (needsLong)
            ForEachTable(*movie, [](CSTBLAtom& tables) { tables.WidenChunkOffsets(); });
        movie->ConvertToRelative();
    }
    MoveIntoTarget(*second);
    first->Append(*second);
    if (!fault.IsEmpty())
        ThrowException(L"%s", fault);
    first->ConvertToAbsolute();
    return first;
}

void CMp4Merger::CheckRootAtoms() const
{
    for (const CAtom* const atom : m_second.RootAtoms)
        if (std::ranges::find(RootTypes, atom->GetType()) == std::end(RootTypes))
            ThrowException(L"Error: cannot merge %s atom", atom->GetTypeName());
    CAtom* const first = FindRoot(m_first, FourCC("ftyp"));
    CAtom* const second = FindRoot(m_second, FourCC("ftyp"));
    if (first != nullptr && second != nullptr)
        first->Append(*second);
}

// What keeps the media from being where the merged movie says that they are.
ZVString CMp4Merger::FindFault(const CMOOVAtom& first, const CMOOVAtom& second) const
{
    if (m_target == nullptr && m_second.MdatList.GetCount() > 0)
        return L"The first file has no mdat atom that could take the media of the second";
    if (FindRoot(m_first, FourCC("moof")) != nullptr)
        return L"The first file is a film in fragments";
    if (!AreMediaWhole(m_first))
        return L"The media of the first file are cut";
    if (!AreMediaWhole(m_second))
        return L"The media of the second file are cut";
    if (!AreChunksInMedia(first))
        return L"A chunk of the first file lies in no mdat atom";
    if (!AreChunksInMedia(second))
        return L"A chunk of the second file lies in no mdat atom";
    return {};
}

// When one track needs them all get them, so that tracks of both sides have the same.
bool CMp4Merger::NeedsLongOffsets(const CMOOVAtom& first, const CMOOVAtom& second) const
{
    if (m_target == nullptr)
        return HasLongOffsets(first) || HasLongOffsets(second);
    uint64_t end = m_target->GetDataStart() + m_target->GetDataSize();
    for (const CMDATAtom* const mdat : m_second.MdatList)
        end += mdat->GetDataSize();
    return end > MaximumShortEnd || HasLongOffsets(first) || HasLongOffsets(second);
}

// The data of the second file's mdat atoms come one after the other behind those that are there.
void CMp4Merger::MoveIntoTarget(const CMOOVAtom& second) const
{
    if (m_target == nullptr)
        return;
    std::unordered_map<const CMDATAtom*, uint64_t> bytesBefore;
    uint64_t end = m_target->GetDataSize();
    for (const CMDATAtom* const mdat : m_second.MdatList)
    {
        bytesBefore.emplace(mdat, end);
        end += mdat->GetDataSize();
    }
    ForEachTable(second, [&](const CSTBLAtom& tables) { tables.GetChunkOffsets()->MoveInto(*m_target, bytesBefore); });
}
