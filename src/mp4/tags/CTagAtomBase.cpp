#include "mp4/tags/CTagAtomBase.h"

#include "mp4/model/EncodeText.h"
#include "mp4/tags/CTagDataAtom.h"
#include "mp4/tags/ReadPictureFile.h"

#include <string>
#include <vector>

bool CTagAtomBase::GetValue(ZVString&) const
{
    return false;
}

void CTagAtomBase::SetData(uint32_t dataType, std::span<const uint8_t> value)
{
    std::unique_ptr<CAtom> data = CTagDataAtom::MakeNew(dataType, value);
    RemoveAllChildren();
    AddChild(std::move(data));
}

void CTagAtomBase::SetText(const ZVString& text, size_t maximumBytes)
{
    const std::string bytes = EncodeText(text.View(), maximumBytes);
    SetData(CTagDataAtom::UTF8, AsBytes(bytes));
}

void CTagAtomBase::SetPicture(const ZVString& path)
{
    const CPictureFile picture = ReadPictureFile(path);
    SetData(picture.DataType, picture.Bytes);
}

void CTagAtomBase::SetNumber(uint32_t dataType, uint64_t number, int32_t width)
{
    std::vector<uint8_t> bytes;
    for (int32_t shift = 8 * (width - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<uint8_t>(number >> shift));
    SetData(dataType, bytes);
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
