#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFieldVisitor.h"
#include "system/log/ZVLog.h"

// hint, mpod, sync: the tracks that a track refers to (ISO/IEC 14496-12, 8.3.3), by their numbers.
class CTrackReferenceTypeAtom : public CAtom
{
public:
    static const CAtomClass Class;

    using CAtom::CAtom;

    void Fields(CFieldVisitor& visitor) { visitor.Table("track ids", visitor.CountRows(m_trackIDs), m_trackIDs); }

    // Stays as it is, with a warning in the log.
    void Append(CAtom& other) override
    {
        constexpr ZVLogSource Source {ZVLogCategory::General, L"CTrackReferenceTypeAtom::Append"};
        Source.Log("Warning skipping append of %s TrackReferenceTypeAtom\n", other.GetTypeName());
    }

    const CAtomTable& GetTrackIDs() const { return m_trackIDs; }

private:
    CAtomTable m_trackIDs;
};

inline constexpr CAtomClass CTrackReferenceTypeAtom::Class = MakeAtomClass<CTrackReferenceTypeAtom>("CTrackReferenceTypeAtom");
