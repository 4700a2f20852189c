#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFieldVisitor.h"

// An atom that is not understood, or that holds nothing that is: its body is kept as it stands.
class CFREEAtom : public CAtom
{
public:
    static const CAtomClass Class;

    CFREEAtom(const CAtomClass& atomClass, uint32_t type, const CAtom* parent = nullptr) : CAtom(atomClass, type, parent)
    {
        SetOpaque();
    }

    void Fields(CFieldVisitor& visitor) { visitor.Rest("body", m_body); }

    const CAtomBytes& GetBody() const { return m_body; }

private:
    CAtomBytes m_body;
};

inline constexpr CAtomClass CFREEAtom::Class = MakeAtomClass<CFREEAtom>("CFREEAtom");
