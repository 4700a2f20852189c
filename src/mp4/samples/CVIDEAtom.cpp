#include "mp4/samples/CVIDEAtom.h"

#include "mp4/model/Exception.h"

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

void CVIDEAtom::Append(CAtom& other)
{
    if (GetType() != other.GetType())
        ThrowException(L"VIDEAtom: different types");
    const auto& second = static_cast<const CVIDEAtom&>(other);
    if (m_width != second.m_width || m_height != second.m_height || GetObjectType() != second.GetObjectType() ||
        m_depth != second.m_depth)
        ThrowException(L"VIDEAtom: Different encodings");
    CompareChildren(second);
}
