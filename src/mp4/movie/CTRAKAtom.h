#pragma once

#include "mp4/model/CFoundAtom.h"
#include "mp4/movie/CMDIAAtom.h"
#include "mp4/movie/CTKHDAtom.h"

#include <cstdint>

// trak: one track of a movie (ISO/IEC 14496-12, 8.3.1).
class CTRAKAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    // Finds what belongs to the track; throws when what it must have is not there.
    void Verify(const CMDATList& mdatList, bool checkOverlap) override;

    // Throws when only one of the tracks shows a part of its media.
    void Append(CAtom& other) override;

    // What Verify found.
    const CTKHDAtom* GetHeader() const { return m_header; }
    const CMDIAAtom* GetMedia() const { return m_media; }
    CSTBLAtom* GetSampleTables() const { return m_media == nullptr ? nullptr : m_media->GetSampleTables(); }

    // 'v' for video, 'a' for audio, 'o' for anything else: what the handler says or, if that says nothing of the kind, the
    // sample descriptions.
    char GetMediaType() const;
    // The duration of the media in seconds, by their own timescale; 0 without one.
    double GetDurationInSeconds() const;
    // The number of samples that the tables agree on.
    uint32_t GetSampleCount() const;

    // A place in the track's list of samples, for walks through several tracks at once.
    uint32_t Cursor = 0;

private:
    CFoundAtom<CTKHDAtom> m_header;
    CFoundAtom<CMDIAAtom> m_media;
};

inline constexpr CAtomClass CTRAKAtom::Class = MakeAtomClass<CTRAKAtom>("CTRAKAtom");
