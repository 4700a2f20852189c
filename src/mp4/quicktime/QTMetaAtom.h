#pragma once

#include "mp4/model/CContainerAtom.h"

class ZVFilename;
class ZVPropertyMap;

// meta without a version, as QuickTime has it.
class QTMetaAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    // What CKeyedMetadata finds in it.
    bool GetTags(ZVPropertyMap& map) const;
    bool GetImageFile(ZVFilename& filename) const;
};

inline constexpr CAtomClass QTMetaAtom::Class = MakeAtomClass<QTMetaAtom>("QTMetaAtom");
