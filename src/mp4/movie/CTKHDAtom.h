#pragma once

#include "mp4/model/CFullAtom.h"

// tkhd: what holds for a whole track (ISO/IEC 14496-12, 8.3.2).
class CTKHDAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    // A header for a track that is made now: enabled and shown, at full volume, not turned, with the number 1.
    static std::unique_ptr<CTKHDAtom> MakeNew();

    void Fields(CFieldVisitor& visitor);
    // Throws unless it is in a track.
    void Verify(const CMDATList& mdatList, bool checkOverlap) override;
    // Throws for a track that is shown in another size or turned in another way.
    void Append(CAtom& other) override;

    uint32_t GetTrackID() const { return m_trackID; }
    // In units of the movie's timescale.
    uint64_t GetDuration() const { return m_duration; }

private:
    static constexpr int64_t MatrixSize = 9 * 4;

    uint64_t m_creationTime = 0;
    uint64_t m_modificationTime = 0;
    uint32_t m_trackID = 0;
    uint64_t m_duration = 0;
    uint16_t m_layer = 0;
    uint16_t m_alternateGroup = 0;
    uint16_t m_volume = 0;  // 8.8
    CAtomBytes m_matrix;
    uint32_t m_width = 0;  // 16.16, like the height
    uint32_t m_height = 0;
};

inline constexpr CAtomClass CTKHDAtom::Class = MakeAtomClass<CTKHDAtom>("CTKHDAtom");
