#pragma once

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFullAtom.h"

#include <cstdint>
#include <vector>

// Where the chunks of a track lie (ISO/IEC 14496-12, 8.7.5), and in which of the file's mdat atoms. Chunks count from 0.
class CChunkOffsetAtomBase : public CFullAtom
{
public:
    using CFullAtom::CFullAtom;

    // Finds the mdat atom of each chunk, unless there are none, up to the first chunk that lies in none. That fails nothing. The
    // mdat atoms must outlive what was found of them.
    void Verify(const CMDATList& mdatList, bool checkOverlap) override;
    // The chunks whose mdat is known are counted from the start of its data, and the reverse. An offset that does not fit into
    // the table keeps its low bits. Nothing happens when they are counted so already.
    void ConvertToRelative() override;
    void ConvertToAbsolute() override;

    uint32_t GetChunkCount() const { return m_offsets.GetCount(); }
    // Where a chunk begins that is in the table.
    uint64_t GetOffset(uint32_t chunk) const
    {
        return m_offsets.GetRowWidth() == ShortOffset ? m_offsets.Get<uint32_t>(chunk) : m_offsets.Get<uint64_t>(chunk);
    }

    // The largest offset that the table can hold.
    uint64_t GetMaximumOffset() const { return m_offsets.GetRowWidth() == ShortOffset ? UINT32_MAX : UINT64_MAX; }

    // What Verify found: how many chunks, from the first one on, lie in an mdat, and the mdat of one of them; null for others.
    uint32_t GetMatchedCount() const { return m_matchedCount; }
    CMDATAtom* GetMdat(uint32_t chunk) const;

protected:
    static constexpr int32_t ShortOffset = 4;
    static constexpr int32_t LongOffset = 8;

    // A copy of the tree belongs to another file, or to none.
    CChunkOffsetAtomBase(const CChunkOffsetAtomBase& other) : CFullAtom(other), m_offsets(other.m_offsets) {}

    void OffsetFields(CFieldVisitor& visitor, int32_t width);

private:
    // Chunks in the same mdat, up to the next run.
    struct Run
    {
        uint32_t FirstChunk;
        CMDATAtom* Atom;
    };

    enum class Direction
    {
        ToRelative,
        ToAbsolute,
    };

    template <class Offset>
    void Match(const class CMDATIndex& index);
    void Convert(Direction direction);

    CAtomTable m_offsets;
    std::vector<Run> m_runs;
    uint32_t m_matchedCount = 0;
    bool m_isRelative = false;
};

// stco: offsets of 32 bits.
class CSTCOAtom : public CChunkOffsetAtomBase
{
public:
    static const CAtomClass Class;

    using CChunkOffsetAtomBase::CChunkOffsetAtomBase;

    void Fields(CFieldVisitor& visitor) { OffsetFields(visitor, ShortOffset); }
};

// co64: offsets of 64 bits.
class CCO64Atom : public CChunkOffsetAtomBase
{
public:
    static const CAtomClass Class;

    using CChunkOffsetAtomBase::CChunkOffsetAtomBase;

    void Fields(CFieldVisitor& visitor) { OffsetFields(visitor, LongOffset); }
};

inline constexpr CAtomClass CSTCOAtom::Class = MakeAtomClass<CSTCOAtom>("CSTCOAtom");
inline constexpr CAtomClass CCO64Atom::Class = MakeAtomClass<CCO64Atom>("CCO64Atom");
