#pragma once

#include "mp4/model/CContainerAtom.h"

class ZVFilename;
class ZVPropertyMap;
class ZVString;

// meta without a version, as QuickTime has it.
class QTMetaAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    // What CKeyedMetadata finds in it.
    bool GetTags(ZVPropertyMap& map) const;
    bool GetImageFile(ZVFilename& filename) const;
    // Gives the items that tell a tag a new value, or removes them if it is empty; CKeyedTagEditor tells how. Where none tells it one
    // is added. False if there is nothing to remove, or if the tag has no key. Throws, with nothing changed, for a value that the tag
    // cannot have.
    bool SetProperty(const ZVString& tag, const ZVString& value);
};

inline constexpr CAtomClass QTMetaAtom::Class = MakeAtomClass<QTMetaAtom>("QTMetaAtom");
