#pragma once

#include "mp4/model/CFullAtom.h"

// hdlr: what the atoms beside it are about (ISO/IEC 14496-12, 8.4.3).
class CHDLRAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    // The handler of a new list of tags.
    static std::unique_ptr<CHDLRAtom> MakeNew();

    void Fields(CFieldVisitor& visitor);
    // Throws unless the other one is about the same.
    void Append(CAtom& other) override;

    uint32_t GetComponentType() const { return m_componentType; }
    // Such as vide, soun, mdir or mdta; 0 in one that is too short for it.
    uint32_t GetHandlerType() const { return m_handlerType; }
    // As it stands: with a length in front of it, with a NUL behind it, or with neither.
    const CAtomBytes& GetName() const { return m_name; }

private:
    // Of the fields in front of the name.
    static constexpr int64_t FixedSize = 20;
    static constexpr int64_t ManufacturerSize = 12;

    bool m_hasFixedFields = true;
    uint32_t m_componentType = 0;
    uint32_t m_handlerType = 0;
    CAtomBytes m_manufacturer;  // with flags and mask
    CAtomBytes m_name;
    CAtomBytes m_short;
};

inline constexpr CAtomClass CHDLRAtom::Class = MakeAtomClass<CHDLRAtom>("CHDLRAtom");
