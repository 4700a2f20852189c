#pragma once

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFullAtom.h"

// elst: which parts of the media a track shows (ISO/IEC 14496-12, 8.6.6).
class CELSTAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        // Segment duration, media time, and the whole and the fraction of the media rate.
        m_entries.SetRowWidth(2 * GetLongWidth() + 4);
        uint32_t count = m_entries.GetCount();
        visitor.Field("entry count", count);
        visitor.Table("entries", count, m_entries);
    }

    const CAtomTable& GetEntries() const { return m_entries; }

private:
    CAtomTable m_entries;
};

inline constexpr CAtomClass CELSTAtom::Class = MakeAtomClass<CELSTAtom>("CELSTAtom");
