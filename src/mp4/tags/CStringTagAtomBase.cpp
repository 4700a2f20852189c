#include "mp4/tags/CStringTagAtomBase.h"

#include "mp4/model/EncodeText.h"
#include "mp4/model/GetText.h"
#include "mp4/tags/TagTypes.h"

bool CStringTagAtomBase::GetValue(ZVString& value) const
{
    const ZVString text = GetText(GetBytes());
    if (text.IsEmpty())
        return false;
    value = text;
    return true;
}

void CStringTagAtomBase::SetValue(const ZVString& value)
{
    SetText(value, HasLengthLimit() ? MaximumTagText : UnlimitedText);
}

bool CStringTagAtomBase::HasLengthLimit() const
{
    const StringTagType* const tag = FindStringTag(GetType());
    return tag != nullptr && tag->Length == TagLength::Limited;
}
