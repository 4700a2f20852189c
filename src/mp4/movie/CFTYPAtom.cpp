#include "mp4/movie/CFTYPAtom.h"

namespace
{
// Real files have a handful.
constexpr uint32_t MaximumBrands = 100;
}

void CFTYPAtom::Fields(CFieldVisitor& visitor)
{
    visitor.Field("major brand", m_majorBrand);
    visitor.Field("minor version", m_minorVersion);
    const uint32_t count = visitor.CountRows(m_compatibleBrands);
    if (count > MaximumBrands)
        ThrowException(L"ftyp compatible brands out of range");
    visitor.Table("compatible brands", count, m_compatibleBrands);
    bool hasRest = false;
    if (visitor.If(hasRest, 1))
        ThrowException(L"In FTYP, non zero size");
}
