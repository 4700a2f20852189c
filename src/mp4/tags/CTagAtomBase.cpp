#include "mp4/tags/CTagAtomBase.h"

#include "mp4/tags/CTagDataAtom.h"

bool CTagAtomBase::GetValue(ZVString&) const
{
    return false;
}

const CTagDataAtom* CTagAtomBase::FindData() const
{
    for (const CAtom* const child : GetChildren())
    {
        if (child->GetType() != FourCC("data"))
            continue;
        const auto* const data = static_cast<const CTagDataAtom*>(child);
        if (data->GetValue().GetCount() > 0)
            return data;
    }
    return nullptr;
}

std::string_view CTagAtomBase::GetBytes() const
{
    const CTagDataAtom* const data = FindData();
    return data == nullptr ? std::string_view() : data->GetValue().Text();
}
