#pragma once

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFullAtom.h"

#include <cstdint>
#include <vector>

// The chunk that holds a sample. Both chunks and samples count from 0.
struct CSampleChunk
{
    bool IsFound = false;
    uint64_t Chunk = 0;
    // The first sample of the chunk.
    uint64_t FirstSample = 0;
};

// stsc: how many samples each chunk has (ISO/IEC 14496-12, 8.7.4). An entry holds from its first chunk on, up to the next entry's;
// the last one has no end.
//
// Tables that are out of order are taken by the same words, and a later entry wins: an entry holds up to the lowest first chunk of
// all entries after it, so one whose successor begins no later holds for nothing. Chunks in front of all entries have no samples.
// A first chunk of 0 is the first one, since chunks count from 1 in the table.
class CSTSCAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        uint32_t count = m_entries.GetCount();
        visitor.Field("entry count", count);
        visitor.Table("first chunks, samples in each, descriptions", count, m_entries);
    }

    // Works out which entries hold where. Throws unless it is among the tables of a track.
    void Verify(const CMDATList& mdatList, bool checkOverlap) override;

    // Its chunks must be counted from the first chunk of this table's track.
    void Append(CAtom& other) override { m_entries.AddRows(static_cast<const CSTSCAtom&>(other).m_entries); }
    // Drops what is said of chunks that a track of so many does not have.
    void EndAt(uint32_t chunkCount);
    // Counts from a track that has that many chunks in front.
    void MoveBehind(uint32_t chunkCount);
    // Whether the entries begin at the first chunk, if there is one, and go up.
    bool IsInOrder(uint32_t chunkCount) const;

    uint32_t GetEntryCount() const { return m_entries.GetCount(); }

    // For the two below the table must be verified.
    //
    // The samples of that many chunks. Takes a time in proportion to the entries, not to what they describe.
    uint64_t CountSamples(uint32_t chunkCount) const;
    // The chunk of a sample, which may be one that the file does not have; not found when no chunk can hold it. Asking for samples
    // in ascending order costs one pass over the entries. Here the only entry of a table holds for all chunks, whatever its first
    // chunk is.
    CSampleChunk FindChunk(uint32_t sample) const;

private:
    static constexpr int32_t RowWidth = 12;

    // Chunks that have equally many samples, up to the next run or without end.
    struct Run
    {
        uint32_t FirstChunk;  // counts from 0
        uint32_t SamplesPerChunk;
    };

    void FindRuns();

    CAtomTable m_entries {RowWidth};
    std::vector<Run> m_runs;  // ascending
    // The run of the last sample that was asked for, and how many samples are in front of it.
    mutable size_t m_lastRun = 0;
    mutable uint64_t m_samplesBeforeLastRun = 0;
};

inline constexpr CAtomClass CSTSCAtom::Class = MakeAtomClass<CSTSCAtom>("CSTSCAtom");
