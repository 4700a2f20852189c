#include "mp4/movie/CUUIDAtom.h"

#include "mp4/model/Exception.h"

void CUUIDAtom::Fields(CFieldVisitor& visitor)
{
    if (!visitor.If(m_hasIdentifier, IdentifierSize))
        ThrowException(L"uuid atom must have larger size");
    visitor.Bytes("identifier", IdentifierSize, m_identifier);
    visitor.Rest("data", m_data);
}
