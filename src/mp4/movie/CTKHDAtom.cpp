#include "mp4/movie/CTKHDAtom.h"

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
