#pragma once

#include "mp4/model/CAtom.h"

#include <cstdint>
#include <vector>

// Places in a file that lie in the same mdat atom.
struct CMDATRange
{
    uint64_t Start = 0;
    // Behind the last byte.
    uint64_t End = 0;
    CMDATAtom* Atom = nullptr;

    bool Contains(uint64_t offset) const { return offset >= Start && offset < End; }
};

// Tells which mdat atom holds a place in the file: the first one in the order of a list whose data begin no later and end after it.
// Data may lie over each other, and they count at the size that their header says, also in a file that is cut. Neither the list
// nor its atoms may change while the index is used.
//
// All tracks of a movie share one, since a file can have as many tracks as mdat atoms.
class CMDATIndex
{
public:
    CMDATIndex() = default;
    // Takes n log n steps for n atoms.
    explicit CMDATIndex(const CMDATList& list);

    // Whether it was made of that very list.
    bool IsOf(const CMDATList& list) const { return m_list == &list; }
    // The range around a place, or null if it is in none. Takes log n steps. A file in which more places than real ones have are
    // asked for was made to be costly, and gets no more answers.
    const CMDATRange* Find(uint64_t offset) const;

private:
    // An atom of the list.
    struct Candidate
    {
        CMDATRange Range;
        int32_t Place;  // in the list
    };

    static std::vector<Candidate> FindCandidates(const CMDATList& list);
    void Add(const CMDATRange& range);

    // A real film has one range, or some for each minute, and asks once for each stretch of chunks in the same range.
    static constexpr int32_t MaximumFinds = 2'000'000;

    const CMDATList* m_list = nullptr;
    mutable int32_t m_finds = 0;
    std::vector<CMDATRange> m_ranges;  // ascending, not over each other
};
