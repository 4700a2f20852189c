#include "mp4/movie/CMVHDAtom.h"

void CMVHDAtom::Fields(CFieldVisitor& visitor)
{
    CFullAtom::Fields(visitor);
    visitor.Field("creation time", m_creationTime, GetLongWidth());
    visitor.Field("modification time", m_modificationTime, GetLongWidth());
    visitor.Field("timescale", m_timescale);
    visitor.Field("duration", m_duration, GetLongWidth());
    visitor.Field("rate", m_rate);
    visitor.Field("volume", m_volume);
    visitor.Zero(ReservedSize);
    visitor.Bytes("matrix", MatrixSize, m_matrix);
    visitor.Bytes("preview, poster, selection, next track", EditorSize, m_editor);
}

void CMVHDAtom::Append(CAtom& other)
{
    const auto& second = static_cast<const CMVHDAtom&>(other);
    AddDuration(m_duration, second, second.m_duration, {m_timescale, second.m_timescale});
}
