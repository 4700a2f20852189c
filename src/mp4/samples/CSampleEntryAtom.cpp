#include "mp4/samples/CSampleEntryAtom.h"

#include "mp4/samples/CCodecNumber.h"

void CSampleEntryAtom::EntryFields(CFieldVisitor& visitor)
{
    visitor.Zero(6);
    visitor.Field("data reference index", m_dataReferenceIndex);
}

const CESDescriptorAtom* CSampleEntryAtom::GetDescriptor() const
{
    return static_cast<const CESDescriptorAtom*>(GetFirstChild(FourCC("esds")));
}

int32_t CSampleEntryAtom::GetObjectType() const
{
    const CESDescriptorAtom* const descriptor = GetDescriptor();
    return descriptor != nullptr ? descriptor->GetDescription().ObjectType : CCodecNumber::FromEntryType(GetType());
}
