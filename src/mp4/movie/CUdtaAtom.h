#pragma once

#include "mp4/model/CContainerAtom.h"

// udta: what a program keeps about a movie or a track (ISO/IEC 14496-12, 8.10.1). QuickTime ends it with four zeros, which are kept.
class CUdtaAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    void Fields(CFieldVisitor& visitor)
    {
        visitor.Children(*this);
        visitor.Rest("end", m_end);
    }

private:
    CAtomBytes m_end;  // fewer bytes than an atom has
};

inline constexpr CAtomClass CUdtaAtom::Class = MakeAtomClass<CUdtaAtom>("CUdtaAtom");
