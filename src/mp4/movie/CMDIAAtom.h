#pragma once

#include "mp4/model/CFoundAtom.h"
#include "mp4/model/CFullAtom.h"

// mdhd: what holds for the media of a track (ISO/IEC 14496-12, 8.4.2).
class CMDHDAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Field("creation time", m_creationTime, GetLongWidth());
        visitor.Field("modification time", m_modificationTime, GetLongWidth());
        visitor.Field("timescale", m_timescale);
        visitor.Field("duration", m_duration, GetLongWidth());
        visitor.Field("language", m_language);
        visitor.Zero(2);
    }

    void Append(CAtom& other) override;

    // Units a second.
    uint32_t GetTimescale() const { return m_timescale; }
    uint64_t GetDuration() const { return m_duration; }

private:
    uint64_t m_creationTime = 0;
    uint64_t m_modificationTime = 0;
    uint32_t m_timescale = 0;
    uint64_t m_duration = 0;
    uint16_t m_language = 0;  // three letters of five bits
};

class CSTBLAtom;

// minf: the tables and headers of a track's media.
class CMINFAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    void Verify(const CMDATList& mdatList, bool checkOverlap) override;

    // The sample tables, once they are verified, or null.
    CSTBLAtom* GetSampleTables() const { return m_sampleTables; }

private:
    CFoundAtom<CSTBLAtom> m_sampleTables;
};

// mdia: the media of a track.
class CMDIAAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    void Verify(const CMDATList& mdatList, bool checkOverlap) override;

    // What Verify found.
    const CMDHDAtom* GetHeader() const { return m_header; }
    CSTBLAtom* GetSampleTables() const { return m_information == nullptr ? nullptr : m_information->GetSampleTables(); }

private:
    CFoundAtom<CMDHDAtom> m_header;
    CFoundAtom<CMINFAtom> m_information;
};

inline constexpr CAtomClass CMDHDAtom::Class = MakeAtomClass<CMDHDAtom>("CMDHDAtom");
inline constexpr CAtomClass CMINFAtom::Class = MakeAtomClass<CMINFAtom>("CMINFAtom");
inline constexpr CAtomClass CMDIAAtom::Class = MakeAtomClass<CMDIAAtom>("CMDIAAtom");
