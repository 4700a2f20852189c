#include "mp4/samples/CSampleEntryAtom.h"

#include "mp4/model/Exception.h"
#include "mp4/model/HaveSameBodies.h"
#include "mp4/samples/CCodecNumber.h"

#include <algorithm>
#include <vector>

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

void CSampleEntryAtom::Append(CAtom& other)
{
    if (!HaveSameBodies(*this, other))
        ThrowException(L"STSD: The %s descriptions are different", GetTypeName());
}

void CSampleEntryAtom::CompareChildren(const CSampleEntryAtom& other) const
{
    const auto getCompared = [](const CSampleEntryAtom& entry)
    {
        std::vector<CAtom*> compared;
        std::ranges::copy_if(entry.GetChildren(), std::back_inserter(compared),
                             [](const CAtom* child) { return !StaysOwn(child->GetType()); });
        return compared;
    };
    const std::vector<CAtom*> own = getCompared(*this);
    const std::vector<CAtom*> others = getCompared(other);
    if (own.size() != others.size() || m_dataReferenceIndex != other.m_dataReferenceIndex)
        ThrowException(L"STSD: The %s descriptions are different", GetTypeName());
    for (size_t index = 0; index < own.size(); ++index)
        if (!HaveSameBodies(*own[index], *others[index]))
            ThrowException(L"STSD: The %s atoms of the %s descriptions are different", own[index]->GetTypeName(), GetTypeName());
}
