#pragma once

// An atom elsewhere in the same tree, once it was looked for; null until then. A copy of the tree looks for its own.
template <class Atom>
class CFoundAtom
{
public:
    CFoundAtom() = default;
    CFoundAtom(const CFoundAtom&) {}
    CFoundAtom& operator=(const CFoundAtom&) = delete;
    CFoundAtom& operator=(Atom* atom)
    {
        m_atom = atom;
        return *this;
    }

    operator Atom*() const { return m_atom; }
    Atom* operator->() const { return m_atom; }

private:
    Atom* m_atom = nullptr;
};
