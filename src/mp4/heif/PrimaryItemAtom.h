#pragma once

#include "mp4/model/CFullAtom.h"

// pitm: which item is the picture itself (ISO/IEC 14496-12, 8.11.4).
class PrimaryItemAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Field("item id", m_itemID, GetVersion() == 0 ? 2 : 4);
    }

    uint32_t GetItemID() const { return m_itemID; }

private:
    uint32_t m_itemID = 0;
};

inline constexpr CAtomClass PrimaryItemAtom::Class = MakeAtomClass<PrimaryItemAtom>("PrimaryItemAtom");
