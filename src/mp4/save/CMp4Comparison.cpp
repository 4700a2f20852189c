#include "mp4/save/CMp4Comparison.h"

#include "mp4/heif/ILocAtom.h"
#include "mp4/model/Exception.h"
#include "mp4/movie/CMDATAtom.h"
#include "mp4/samples/CChunkOffsetAtomBase.h"
#include "mp4/save/ForEachAtom.h"

#include <algorithm>
#include <unordered_map>

namespace
{
constexpr int64_t EndSize = 0x10000;

// What of one film is compared.
struct Film
{
    explicit Film(const ZVOwnedPtrArray<CAtom>& roots)
        : Mdats(FindAtoms<CMDATAtom>(roots)), Chunks(FindAtoms<CChunkOffsetAtomBase>(roots)), Items(FindAtoms<ILocAtom>(roots))
    {
        for (size_t number = 0; number < Mdats.size(); ++number)
            Numbers.emplace(Mdats[number], number);
    }

    std::vector<CMDATAtom*> Mdats;
    std::vector<CChunkOffsetAtomBase*> Chunks;
    std::vector<ILocAtom*> Items;
    std::unordered_map<const CMDATAtom*, size_t> Numbers;
};

[[noreturn]] void ThrowDifferent(const wchar_t* what)
{
    ThrowException(L"The file that was written differs from the film: %s", what);
}

void Expect(bool isSame, const wchar_t* what)
{
    if (!isSame)
        ThrowDifferent(what);
}

void CompareData(const CMDATAtom& film, const CMDATAtom& written)
{
    const int64_t size = film.GetPresentSize();
    Expect(written.GetPresentSize() == size && written.GetDataSize() == film.GetDataSize(), L"the size of an mdat");
    const int64_t count = std::min(size, EndSize);
    for (const int64_t start : {int64_t {0}, size - count})
        Expect(film.GetPart(start, count) == written.GetPart(start, count), L"the bytes of an mdat");
}

// A place that is not found has no number.
struct Place
{
    const CMDATAtom* Mdat;
    uint64_t Offset;
};

bool IsSamePlace(const Film& film, const Place& place, const Film& written, const Place& other)
{
    return place.Mdat != nullptr && other.Mdat != nullptr && film.Numbers.at(place.Mdat) == written.Numbers.at(other.Mdat) &&
           place.Offset - place.Mdat->GetDataStart() == other.Offset - other.Mdat->GetDataStart();
}

void CompareChunks(const Film& film, const CChunkOffsetAtomBase& chunks, const Film& written, const CChunkOffsetAtomBase& others)
{
    Expect(chunks.GetChunkCount() == others.GetChunkCount(), L"the count of a track's chunks");
    for (uint32_t chunk = 0; chunk < chunks.GetChunkCount(); ++chunk)
        Expect(IsSamePlace(film, {chunks.GetMdat(chunk), chunks.GetOffset(chunk)}, written,
                           {others.GetMdat(chunk), others.GetOffset(chunk)}),
               L"the place of a chunk");
}

void CompareEntries(const Film& film, const ILocAtom& places, const Film& written, const ILocAtom& others)
{
    const auto& entries = places.GetEntries();
    const auto& otherEntries = others.GetEntries();
    Expect(entries.size() == otherEntries.size(), L"the count of the items");
    for (size_t item = 0; item < entries.size(); ++item)
    {
        const ILocEntry& entry = entries[item];
        const ILocEntry& other = otherEntries[item];
        Expect(entry.Extents.size() == other.Extents.size(), L"the count of an item's pieces");
        for (size_t index = 0; index < entry.Extents.size(); ++index)
        {
            const uint64_t place = entry.BaseOffset + entry.Extents[index].Offset;
            const uint64_t otherPlace = other.BaseOffset + other.Extents[index].Offset;
            Expect(entry.GetConstructionMethod() == ILocEntry::InFile
                       ? IsSamePlace(film, {places.GetMDAT(), place}, written, {others.GetMDAT(), otherPlace})
                       : place == otherPlace,
                   L"the place of an item");
        }
    }
}
}

void CompareFilms(const ZVOwnedPtrArray<CAtom>& filmRoots, const ZVOwnedPtrArray<CAtom>& writtenRoots)
{
    const Film film(filmRoots);
    const Film written(writtenRoots);
    Expect(film.Mdats.size() == written.Mdats.size(), L"the count of mdat atoms");
    Expect(film.Chunks.size() == written.Chunks.size(), L"the count of tracks");
    Expect(film.Items.size() == written.Items.size(), L"the count of lists of items");
    for (size_t number = 0; number < film.Mdats.size(); ++number)
        CompareData(*film.Mdats[number], *written.Mdats[number]);
    for (size_t number = 0; number < film.Chunks.size(); ++number)
        CompareChunks(film, *film.Chunks[number], written, *written.Chunks[number]);
    for (size_t number = 0; number < film.Items.size(); ++number)
        CompareEntries(film, *film.Items[number], written, *written.Items[number]);
}
