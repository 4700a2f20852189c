#include "mp4/samples/CVIDEAtom.h"

void CVIDEAtom::Fields(CFieldVisitor& visitor)
{
    EntryFields(visitor);
    visitor.Bytes("version, revision, vendor, quality", VendorSize, m_vendor);
    visitor.Field("width", m_width);
    visitor.Field("height", m_height);
    visitor.Field("horizontal resolution", m_horizontalResolution);
    visitor.Field("vertical resolution", m_verticalResolution);
    visitor.Zero(4);
    visitor.Field("frame count", m_frameCount);
    visitor.Bytes("compressor name", CompressorNameSize, m_compressorName);
    visitor.Field("depth", m_depth);
    visitor.Field("color table", m_colorTable);
    visitor.Children(*this);
    visitor.Rest("end", m_end);
}
