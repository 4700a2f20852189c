#pragma once

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFullAtom.h"

#include <cstdint>
#include <memory>
#include <unordered_map>
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

    // Adds chunks of the same width, counted from the start of their mdat like the own ones. All own ones must be matched.
    void Append(CAtom& other) override;
    // Puts the chunks into another mdat, behind as many bytes of it as the map has for the mdat that they are in. They must be
    // counted from the start of their mdat, and fit into the table then.
    void MoveInto(CMDATAtom& target, const std::unordered_map<const CMDATAtom*, uint64_t>& bytesBefore);

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
    // Takes the chunks of another table, whatever its width.
    void TakeChunks(const CChunkOffsetAtomBase& other);

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
    void SetOffset(uint32_t chunk, uint64_t offset);
    // Behind the last chunk of a run.
    uint32_t GetEnd(size_t run) const { return run + 1 < m_runs.size() ? m_runs[run + 1].FirstChunk : m_matchedCount; }

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

    // A table of the same chunks with room for any offset.
    static std::unique_ptr<CCO64Atom> MakeFrom(const CChunkOffsetAtomBase& chunks);

    void Fields(CFieldVisitor& visitor) { OffsetFields(visitor, LongOffset); }
};

inline constexpr CAtomClass CSTCOAtom::Class = MakeAtomClass<CSTCOAtom>("CSTCOAtom");
inline constexpr CAtomClass CCO64Atom::Class = MakeAtomClass<CCO64Atom>("CCO64Atom");
