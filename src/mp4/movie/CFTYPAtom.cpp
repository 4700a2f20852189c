#include "mp4/movie/CFTYPAtom.h"

#include "system/log/ZVLog.h"

namespace
{
// Real files have a handful.
constexpr uint32_t MaximumBrands = 100;

constexpr ZVLogSource AppendSource {ZVLogCategory::General, L"CFTYPAtom::Append"};
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

void CFTYPAtom::Append(CAtom& other)
{
    const auto& second = static_cast<const CFTYPAtom&>(other);
    if (m_majorBrand != second.m_majorBrand)
        AppendSource.Log("Warning: FTYP Major brands incompatible: %s and %s\n", GetTypeText(m_majorBrand),
                         GetTypeText(second.m_majorBrand));
    if (m_minorVersion != second.m_minorVersion)
        AppendSource.Log("Warning: FTYP minor versions incompatible: %u and %u\n", m_minorVersion, second.m_minorVersion);
}
