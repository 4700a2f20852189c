#pragma once

#include "mp4/samples/CSampleEntryAtom.h"

#include <cstdint>

// rtp: a description of hints for streaming (ISO/IEC 14496-12, 9.1.2).
class CRTPAtom : public CSampleEntryAtom
{
public:
    static const CAtomClass Class;

    using CSampleEntryAtom::CSampleEntryAtom;

    void Fields(CFieldVisitor& visitor)
    {
        EntryFields(visitor);
        visitor.Field("version", m_version);
        visitor.Field("compatible revision", m_compatibleRevision);
        visitor.Field("maximum packet size", m_maximumPacketSize);
        visitor.Rest("additional data", m_additionalData);
    }

private:
    uint16_t m_version = 0;
    uint16_t m_compatibleRevision = 0;
    uint32_t m_maximumPacketSize = 0;
    CAtomBytes m_additionalData;
};

inline constexpr CAtomClass CRTPAtom::Class = MakeAtomClass<CRTPAtom>("CRTPAtom");
