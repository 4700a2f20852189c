#pragma once

#include "mp4/model/CFullAtom.h"

// mvhd: what holds for the whole movie (ISO/IEC 14496-12, 8.2.2). Times are seconds since 1904.
class CMVHDAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor);
    void Append(CAtom& other) override;

    // Units a second.
    uint32_t GetTimescale() const { return m_timescale; }
    uint64_t GetDuration() const { return m_duration; }

private:
    static constexpr int32_t ReservedSize = 10;
    static constexpr int64_t MatrixSize = 9 * 4;
    // Preview time and duration, poster time, selection time and duration, current time, next track id.
    static constexpr int64_t EditorSize = 7 * 4;

    uint64_t m_creationTime = 0;
    uint64_t m_modificationTime = 0;
    uint32_t m_timescale = 0;
    uint64_t m_duration = 0;
    uint32_t m_rate = 0;    // 16.16
    uint16_t m_volume = 0;  // 8.8
    CAtomBytes m_matrix;
    CAtomBytes m_editor;
};

inline constexpr CAtomClass CMVHDAtom::Class = MakeAtomClass<CMVHDAtom>("CMVHDAtom");
