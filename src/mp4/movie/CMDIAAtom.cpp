#include "mp4/movie/CMDIAAtom.h"

#include "mp4/model/Exception.h"
#include "mp4/samples/CSTBLAtom.h"

void CMDHDAtom::Append(CAtom& other)
{
    const auto& second = static_cast<const CMDHDAtom&>(other);
    if (m_timescale != second.m_timescale)
        ThrowException(L"MDHD: Timescales are different\n");
    AddDuration(m_duration, second, second.m_duration, {});
}

void CMINFAtom::Verify(const CMDATList& mdatList, bool checkOverlap)
{
    m_sampleTables = static_cast<CSTBLAtom*>(GetFirstChild(FourCC("stbl")));
    if (m_sampleTables != nullptr)
        m_sampleTables->Verify(mdatList, checkOverlap);
}

void CMDIAAtom::Verify(const CMDATList& mdatList, bool checkOverlap)
{
    m_header = static_cast<CMDHDAtom*>(&GetRequiredChild(FourCC("mdhd")));
    m_information = static_cast<CMINFAtom*>(GetFirstChild(FourCC("minf")));
    if (m_information != nullptr)
        m_information->Verify(mdatList, checkOverlap);
}
