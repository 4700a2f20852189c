#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFieldVisitor.h"

#include <span>

// uuid: what its identifier says (ISO/IEC 14496-12, 4.2).
class CUUIDAtom : public CAtom
{
public:
    static const CAtomClass Class;
    static constexpr int64_t IdentifierSize = 16;

    using CAtom::CAtom;

    // One without data. The identifier has IdentifierSize bytes.
    static std::unique_ptr<CUUIDAtom> MakeNew(std::span<const uint8_t> identifier);

    void Fields(CFieldVisitor& visitor);

    std::span<const uint8_t> GetIdentifier() const { return m_identifier.View(); }
    const CAtomBytes& GetData() const { return m_data; }
    void SetData(std::span<const uint8_t> data) { m_data = CAtomBytes(data); }

private:
    bool m_hasIdentifier = true;
    CAtomBytes m_identifier;
    CAtomBytes m_data;
};

inline constexpr CAtomClass CUUIDAtom::Class = MakeAtomClass<CUUIDAtom>("CUUIDAtom");
