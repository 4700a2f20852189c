#pragma once

#include "mp4/model/CFullAtom.h"

// iref: which items refer to which (ISO/IEC 14496-12, 8.11.12), an IRefEntryAtom for each. Its version tells how wide the numbers
// of items are in them.
class IRefAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Children(*this);
    }
};

inline constexpr CAtomClass IRefAtom::Class = MakeAtomClass<IRefAtom>("IRefAtom");
