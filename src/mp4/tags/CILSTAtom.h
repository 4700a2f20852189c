#pragma once

#include "mp4/model/CContainerAtom.h"

class ZVPropertyMap;

// ilst: the tags of a file.
class CILSTAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    // Sets what the tags say, under the names that the library knows them by; dates as their number of days. A later tag replaces
    // an earlier one of the same name. True if anything was set.
    bool GetTags(ZVPropertyMap& map) const;
};

inline constexpr CAtomClass CILSTAtom::Class = MakeAtomClass<CILSTAtom>("CILSTAtom");
