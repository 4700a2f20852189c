#pragma once

#include "mp4/model/CFullAtom.h"

// Containers that have nothing but their children, and whose name says all.
class CEDTSAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;
};

class CDINFAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;
};

class CTREFAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    // References are by the numbers of tracks, which are those of the own movie, so those of the other one are left out.
    void AppendMultiple(CAtom& child) override { child.Append(child); }
    void AppendMissing(CAtom& child) override { child.Append(child); }
};

// meta with a version and flags (ISO/IEC 14496-12, 8.11.1).
class CMetaAtom : public CFullAtom
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

// iods: object descriptors (ISO/IEC 14496-14, 5.1), as they stand.
class CIODSAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Rest("descriptor", m_descriptor);
    }

private:
    CAtomBytes m_descriptor;
};

inline constexpr CAtomClass CEDTSAtom::Class = MakeAtomClass<CEDTSAtom>("CEDTSAtom");
inline constexpr CAtomClass CDINFAtom::Class = MakeAtomClass<CDINFAtom>("CDINFAtom");
inline constexpr CAtomClass CTREFAtom::Class = MakeAtomClass<CTREFAtom>("CTREFAtom");
inline constexpr CAtomClass CMetaAtom::Class = MakeAtomClass<CMetaAtom>("CMetaAtom");
inline constexpr CAtomClass CIODSAtom::Class = MakeAtomClass<CIODSAtom>("CIODSAtom");
