#pragma once

#include "mp4/model/CContainerAtom.h"

// iprp: the properties of the items, and which item has which (ISO/IEC 14496-12, 8.11.14).
class ItemPropertiesAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;
};

// ipco: the properties themselves, such as size and colors. They are counted from 1.
class ItemPropContainerAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;
};

inline constexpr CAtomClass ItemPropertiesAtom::Class = MakeAtomClass<ItemPropertiesAtom>("ItemPropertiesAtom");
inline constexpr CAtomClass ItemPropContainerAtom::Class = MakeAtomClass<ItemPropContainerAtom>("ItemPropContainerAtom");
