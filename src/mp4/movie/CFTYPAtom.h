#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFieldVisitor.h"
#include "mp4/model/Exception.h"

// ftyp: which specifications a file keeps to (ISO/IEC 14496-12, 4.3).
class CFTYPAtom : public CAtom
{
public:
    static const CAtomClass Class;

    using CAtom::CAtom;

    void Fields(CFieldVisitor& visitor);
    // Stays as it is; what differs is logged as a warning.
    void Append(CAtom& other) override;

    uint32_t GetMajorBrand() const { return m_majorBrand; }
    uint32_t GetMinorVersion() const { return m_minorVersion; }
    const CAtomTable& GetCompatibleBrands() const { return m_compatibleBrands; }

private:
    uint32_t m_majorBrand = 0;
    uint32_t m_minorVersion = 0;
    CAtomTable m_compatibleBrands;
};

inline constexpr CAtomClass CFTYPAtom::Class = MakeAtomClass<CFTYPAtom>("CFTYPAtom");
