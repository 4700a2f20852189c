#pragma once

#include "mp4/model/CContainerAtom.h"
#include "mp4/model/CFoundAtom.h"
#include "mp4/samples/CChunkOffsetAtomBase.h"
#include "mp4/samples/CSTSCAtom.h"
#include "mp4/samples/CSTSDAtom.h"
#include "mp4/samples/CSTSSAtom.h"
#include "mp4/samples/CSTSZAtom.h"
#include "mp4/samples/CSTTSAtom.h"

#include <cstdint>

// Where a sample lies in the file.
struct CSamplePlace
{
    bool IsFound = false;
    uint64_t Offset = 0;
    uint64_t Size = 0;
};

// stbl: the tables of a track's samples (ISO/IEC 14496-12, 8.5.1). What its accessors tell was found by Verify.
class CSTBLAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    // Finds the tables, which must be there, and in which of the file's mdat atoms each chunk lies.
    void Verify(const CMDATList& mdatList, bool checkOverlap) override;

    // Appends the samples of another track. Both must be verified, with their chunks in the same mdat; this one must be verified
    // again afterwards. The numbers in the other one's tables are changed. Throws when the tables of either are not about the same
    // samples, since what follows them would be out of step.
    void Append(CAtom& other) override;
    // Gives the chunks a table with room for any offset.
    void WidenChunkOffsets();

    // 'v', 'a' or 'o', as the descriptions say.
    char GetMediaType() const { return m_descriptions == nullptr ? 'o' : m_descriptions->GetMediaType(); }
    const CSTSDAtom* GetDescriptions() const { return m_descriptions; }
    const CSTTSAtom* GetTimes() const { return m_times; }
    CChunkOffsetAtomBase* GetChunkOffsets() const { return m_chunkOffsets; }
    // Of video; null in other tracks, and if all samples are such.
    const CSTSSAtom* GetSyncSamples() const { return m_syncSamples; }
    // As many as the table of sizes and the chunks agree on.
    uint32_t GetSampleCount() const { return m_sampleCount; }
    // Samples count from 0; not found from the count above on, or when its chunk is not there. Takes a time in proportion to the
    // samples in front of it in its chunk, but for the samples of a chunk in ascending order only that of one pass.
    CSamplePlace FindSample(uint32_t sample) const;

private:
    CChunkOffsetAtomBase& FindChunkOffsets() const;
    // Of any kind of media, or null.
    CSTSSAtom* FindSyncSamples() const { return static_cast<CSTSSAtom*>(GetFirstChild(FourCC("stss"))); }
    bool DoTablesAgree() const;
    void ListSyncSamples();

    // Where a sample begins, as it was found last.
    struct LastSample
    {
        int64_t Chunk = -1;
        uint32_t Sample = 0;
        uint64_t Offset = 0;
    };

    CFoundAtom<CSTSDAtom> m_descriptions;
    CFoundAtom<CSTTSAtom> m_times;
    CFoundAtom<CSTSCAtom> m_chunks;
    CFoundAtom<CSTSZAtom> m_sizes;
    CFoundAtom<CChunkOffsetAtomBase> m_chunkOffsets;
    CFoundAtom<CSTSSAtom> m_syncSamples;
    uint32_t m_sampleCount = 0;
    mutable LastSample m_lastSample;
};

inline constexpr CAtomClass CSTBLAtom::Class = MakeAtomClass<CSTBLAtom>("CSTBLAtom");
