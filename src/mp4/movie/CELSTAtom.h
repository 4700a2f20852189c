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

    // Both must have one entry, which shows the whole media at their speed.
    void Append(CAtom& other) override;

    const CAtomTable& GetEntries() const { return m_entries; }

private:
    // One part of the media. The duration is in units of the movie's timescale, the time in those of the media's.
    struct Entry
    {
        uint64_t Duration;
        int64_t MediaTime;
        uint16_t RateWhole;
        uint16_t RateFraction;

        bool IsWhole() const { return MediaTime == 0 && RateWhole == 1 && RateFraction == 0; }
    };

    Entry GetOnlyEntry() const;
    void SetOnlyEntry(const Entry& entry);

    CAtomTable m_entries;
};

inline constexpr CAtomClass CELSTAtom::Class = MakeAtomClass<CELSTAtom>("CELSTAtom");
