#pragma once

#include "mp4/model/CFullAtom.h"

// iinf: what the items are, an infe child for each (ISO/IEC 14496-12, 8.11.6).
class IInfAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Field("entry count", m_count, GetVersion() == 0 ? 2 : 4);
        visitor.Children(*this);
    }

    // What the file says; there may be more children, or fewer.
    uint32_t GetEntryCount() const { return m_count; }

private:
    uint32_t m_count = 0;
};

inline constexpr CAtomClass IInfAtom::Class = MakeAtomClass<IInfAtom>("IInfAtom");
