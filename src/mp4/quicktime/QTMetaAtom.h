#pragma once

#include "mp4/model/CContainerAtom.h"

// meta without a version, as QuickTime has it.
class QTMetaAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;
};

inline constexpr CAtomClass QTMetaAtom::Class = MakeAtomClass<QTMetaAtom>("QTMetaAtom");
