#pragma once

#include "mp4/samples/CESDescriptorAtom.h"

// esds: an elementary stream descriptor (ISO/IEC 14496-1, 7.2.6.5). One that begins with another tag describes nothing, and its
// object type is 0, which counts.
class CESDSAtom : public CESDescriptorAtom
{
public:
    static const CAtomClass Class;

    using CESDescriptorAtom::CESDescriptorAtom;

protected:
    CStreamDescription Parse() const override;
};

inline constexpr CAtomClass CESDSAtom::Class = MakeAtomClass<CESDSAtom>("CESDSAtom");
