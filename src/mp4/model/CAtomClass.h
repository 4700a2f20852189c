#pragma once

#include <cstdint>

class CAtom;
class CFieldVisitor;

// What is known of a class of atoms: how one is made, what fields its body has. Each atom keeps the row of its class, so that the
// operations that all of them have are written once, in CAtom.
struct CAtomClass
{
    const char* Name;
    // Makes an atom that has no fields yet. The parent is the one that it will have, or null.
    CAtom* (*Make)(const CAtomClass& atomClass, uint32_t type, const CAtom* parent);
    CAtom* (*Copy)(const CAtom& atom);
    void (*Fields)(CAtom& atom, CFieldVisitor& visitor);
};

// The row of a class that is made from its row, its type and the atom that will be its parent.
template <class Atom>
constexpr CAtomClass MakeAtomClass(const char* name)
{
    return {name,
            [](const CAtomClass& atomClass, uint32_t type, const CAtom* parent) -> CAtom*
            { return new Atom(atomClass, type, parent); },
            [](const CAtom& atom) -> CAtom* { return new Atom(static_cast<const Atom&>(atom)); },
            [](CAtom& atom, CFieldVisitor& visitor) { static_cast<Atom&>(atom).Fields(visitor); }};
}
