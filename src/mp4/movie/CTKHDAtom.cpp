#include "mp4/movie/CTKHDAtom.h"

#include "mp4/model/Exception.h"
#include "mp4/movie/CMOOVAtom.h"

#include <algorithm>
#include <ctime>
#include <vector>

namespace
{
// Enabled, in the movie, in the preview.
constexpr uint32_t AllFlags = 7;
constexpr uint16_t FullVolume = 0x100;

// The time of a file begins in 1904, that of the system in 1970.
constexpr uint64_t SecondsFrom1904To1970 = 2'082'844'800;

// 16.16, but for the last column, which has 2.30.
constexpr uint32_t IdentityMatrix[] = {0x10000, 0, 0, 0, 0x10000, 0, 0, 0, 0x40000000};
}

std::unique_ptr<CTKHDAtom> CTKHDAtom::MakeNew()
{
    auto header = std::make_unique<CTKHDAtom>(Class, FourCC("tkhd"));
    header->SetFlags(AllFlags);
    header->m_creationTime = static_cast<uint64_t>(time(nullptr)) + SecondsFrom1904To1970;
    header->m_modificationTime = header->m_creationTime;
    header->m_trackID = 1;
    header->m_volume = FullVolume;
    std::vector<uint8_t> matrix;
    for (const uint32_t value : IdentityMatrix)
        for (int shift = 24; shift >= 0; shift -= 8)
            matrix.push_back(static_cast<uint8_t>(value >> shift));
    header->m_matrix = CAtomBytes(matrix);
    return header;
}

void CTKHDAtom::Fields(CFieldVisitor& visitor)
{
    CFullAtom::Fields(visitor);
    visitor.Field("creation time", m_creationTime, GetLongWidth());
    visitor.Field("modification time", m_modificationTime, GetLongWidth());
    visitor.Field("track id", m_trackID);
    visitor.Zero(4);
    visitor.Field("duration", m_duration, GetLongWidth());
    visitor.Zero(8);
    visitor.Field("layer", m_layer);
    visitor.Field("alternate group", m_alternateGroup);
    visitor.Field("volume", m_volume);
    visitor.Zero(2);
    visitor.Bytes("matrix", MatrixSize, m_matrix);
    visitor.Field("width", m_width);
    visitor.Field("height", m_height);
}

void CTKHDAtom::Verify(const CMDATList&, bool)
{
    GetParent(FourCC("trak"));
}

void CTKHDAtom::Append(CAtom& other)
{
    const auto& second = static_cast<const CTKHDAtom&>(other);
    if (m_width != second.m_width || m_height != second.m_height || !std::ranges::equal(m_matrix.View(), second.m_matrix.View()))
        ThrowException(L"TKHD: The tracks have different sizes or rotations");
    AddDuration(m_duration, second, second.m_duration, CMOOVAtom::FindTimescales(*this, second));
}
