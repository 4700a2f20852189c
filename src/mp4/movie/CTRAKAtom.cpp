#include "mp4/movie/CTRAKAtom.h"

#include "mp4/model/Exception.h"
#include "mp4/samples/CSTBLAtom.h"

void CTRAKAtom::Verify(const CMDATList& mdatList, bool checkOverlap)
{
    m_header = static_cast<CTKHDAtom*>(&GetRequiredChild(FourCC("tkhd")));
    m_header->Verify(mdatList, checkOverlap);
    m_media = static_cast<CMDIAAtom*>(&GetRequiredChild(FourCC("mdia")));
    m_media->Verify(mdatList, checkOverlap);
    Cursor = 0;
}

void CTRAKAtom::Append(CAtom& other)
{
    const auto& second = static_cast<const CTRAKAtom&>(other);
    // It would end the track where it ended before.
    if (GetFirstChild(FourCC("edts")) != nullptr && second.GetFirstChild(FourCC("edts")) == nullptr)
        ThrowException(L"Cannot merge a track without an ELST box with one that has it");
    CContainerAtom::Append(other);
}

char CTRAKAtom::GetMediaType() const
{
    const uint32_t handler = m_media == nullptr ? 0 : m_media->GetHandlerType();
    if (handler == FourCC("vide"))
        return 'v';
    if (handler == FourCC("soun"))
        return 'a';
    const CSTBLAtom* const tables = GetSampleTables();
    return tables == nullptr ? 'o' : tables->GetMediaType();
}

double CTRAKAtom::GetDurationInSeconds() const
{
    const CMDHDAtom* const header = m_media == nullptr ? nullptr : m_media->GetHeader();
    if (header == nullptr || header->GetTimescale() == 0)
        return 0;
    return static_cast<double>(header->GetDuration()) / header->GetTimescale();
}

uint32_t CTRAKAtom::GetSampleCount() const
{
    const CSTBLAtom* const tables = GetSampleTables();
    return tables == nullptr ? 0 : tables->GetSampleCount();
}
