#include "mp4/tags/C4DashesAtom.h"

#include "mp4/model/EncodeText.h"
#include "mp4/model/GetText.h"
#include "mp4/tags/CFreeFormTextAtom.h"
#include "mp4/tags/CTagDataAtom.h"

namespace
{
// Bytes of UTF-8.
constexpr size_t MaximumMean = 255;
}

std::unique_ptr<C4DashesAtom> C4DashesAtom::MakeNew(const ZVString& mean, const ZVString& name, const ZVString& value)
{
    auto item = std::make_unique<C4DashesAtom>(Class, FourCC("----"));
    item->AddChild(CFreeFormTextAtom::MakeNew(CFreeFormTextAtom::MeanClass, EncodeText(mean.View(), MaximumMean)));
    item->AddChild(CFreeFormTextAtom::MakeNew(CFreeFormTextAtom::NameClass, EncodeText(name.View())));
    const std::string bytes = EncodeText(value.View());
    item->AddChild(CTagDataAtom::MakeNew(CTagDataAtom::UTF8, AsBytes(bytes)));
    return item;
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
    if (name == nullptr || name->GetText().IsEmpty())
        return false;
    text = name->GetText();
    return true;
}

bool C4DashesAtom::GetData(ZVString& text) const
{
    const auto* const data = static_cast<const CTagDataAtom*>(GetFirstChild(FourCC("data")));
    if (data == nullptr)
        return false;
    text = GetText(data->GetValue().Text());
    return true;
}
