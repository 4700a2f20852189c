#include "mp4/tags/C4DashesAtom.h"

#include "mp4/model/GetText.h"
#include "mp4/tags/CFreeFormTextAtom.h"
#include "mp4/tags/CTagDataAtom.h"

namespace
{
// Hands over a text unless it is empty.
bool Take(const ZVString& found, ZVString& text)
{
    if (found.IsEmpty())
        return false;
    text = found;
    return true;
}
}

bool C4DashesAtom::GetMean(ZVString& text) const
{
    const auto* const mean = static_cast<const CFreeFormTextAtom*>(GetFirstChild(FourCC("mean")));
    if (mean == nullptr)
        return false;
    text = mean->GetText();
    return true;
}

bool C4DashesAtom::GetName(ZVString& text) const
{
    const auto* const name = static_cast<const CFreeFormTextAtom*>(GetFirstChild(FourCC("name")));
    return name != nullptr && Take(name->GetText(), text);
}

bool C4DashesAtom::GetData(ZVString& text) const
{
    const auto* const data = static_cast<const CTagDataAtom*>(GetFirstChild(FourCC("data")));
    return data != nullptr && Take(GetText(data->GetValue().Text()), text);
}
