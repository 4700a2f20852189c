#pragma once

#include "mp4/model/CContainerAtom.h"

// Calls a function with each atom of a list and of all trees below, in the order of the file.
template <class Function>
void ForEachAtom(const ZVOwnedPtrArray<CAtom>& atoms, const Function& function)
{
    for (CAtom* const atom : atoms)
    {
        function(*atom);
        if (const auto* const container = dynamic_cast<const CContainerAtom*>(atom))
            ForEachAtom(container->GetChildren(), function);
    }
}

// The atoms of one class.
template <class Atom>
std::vector<Atom*> FindAtoms(const ZVOwnedPtrArray<CAtom>& atoms)
{
    std::vector<Atom*> found;
    ForEachAtom(atoms,
                [&found](CAtom& atom)
                {
                    if (auto* const one = dynamic_cast<Atom*>(&atom))
                        found.push_back(one);
                });
    return found;
}
