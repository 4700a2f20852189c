#include "mp4/movie/CUUIDAtom.h"

#include "mp4/model/Exception.h"

std::unique_ptr<CUUIDAtom> CUUIDAtom::MakeNew(std::span<const uint8_t> identifier)
{
    auto atom = std::make_unique<CUUIDAtom>(Class, FourCC("uuid"));
    atom->m_identifier = CAtomBytes(identifier);
    return atom;
}

void CUUIDAtom::Fields(CFieldVisitor& visitor)
{
    if (!visitor.If(m_hasIdentifier, IdentifierSize))
        ThrowException(L"uuid atom must have larger size");
    visitor.Bytes("identifier", IdentifierSize, m_identifier);
    visitor.Rest("data", m_data);
}
