#pragma once

#include "mp4/model/CFullAtom.h"

#include <cstdint>
#include <unordered_set>

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

    // Adds a reference of a type. Numbers that need it get 32 bits in the whole list. False if there is no room for it or
    // if the list is not as it should be.
    bool AddReference(uint32_t type, uint32_t fromItemID, uint32_t toItemID);
    // Leaves out the references from items.
    void RemoveReferencesFrom(const std::unordered_set<uint32_t>& itemIDs);

private:
    bool WidenIDs();
};

inline constexpr CAtomClass IRefAtom::Class = MakeAtomClass<IRefAtom>("IRefAtom");
