#include "mp4/quicktime/MetadataItemAtom.h"

#include "core/bytes/ZVByteCursor.h"
#include "mp4/model/EncodeText.h"
#include "mp4/model/Exception.h"
#include "mp4/model/GetText.h"
#include "mp4/tags/CTagDataAtom.h"
#include "mp4/tags/WriteCoverFile.h"
#include "system/filename/ZVFilename.h"
#include "system/log/ZVLog.h"

#include <algorithm>
#include <bit>

namespace
{
constexpr ZVLogSource GetValueSource {ZVLogCategory::General, L"MetadataItemAtom::GetValue"};

// UTF-8, UTF-16 and Shift JIS, which are all taken as UTF-8.
constexpr uint32_t TextTypes[] = {1, 4, 5};

struct PictureType
{
    uint32_t DataType;
    const wchar_t* Extension;
};

constexpr PictureType PictureTypes[] = {
    {13, L"jpg"},
    {14, L"png"},
    {27, L"bmp"},
};

enum class NumberKind
{
    Signed,
    Unsigned,
    Float,
};

// A big-endian number: how many bytes of a value it takes, and how many there must be at least.
struct NumberType
{
    uint32_t DataType;
    NumberKind Kind;
    int32_t Width;
    int32_t MinimumWidth;
};

constexpr NumberType NumberTypes[] = {
    {21, NumberKind::Signed,   4, 1},
    {22, NumberKind::Unsigned, 4, 1},
    {23, NumberKind::Float,    4, 4},
    {24, NumberKind::Float,    8, 8},
    {65, NumberKind::Signed,   1, 1},
    {66, NumberKind::Signed,   2, 2},
    {67, NumberKind::Signed,   4, 4},
    {74, NumberKind::Signed,   8, 8},
    {75, NumberKind::Unsigned, 1, 1},
    {76, NumberKind::Unsigned, 2, 2},
    {77, NumberKind::Unsigned, 4, 4},
    {78, NumberKind::Unsigned, 8, 8},
};

// The row of a type of data, or null.
template <class Row, size_t Count>
const Row* FindRow(const Row (&rows)[Count], uint32_t dataType)
{
    for (const Row& row : rows)
        if (row.DataType == dataType)
            return &row;
    return nullptr;
}

ZVString GetNumberText(NumberKind kind, uint64_t bits, int32_t width)
{
    switch (kind)
    {
    case NumberKind::Signed:
    {
        const int32_t unused = 64 - 8 * width;
        return ZVString::FromInt(static_cast<int64_t>(bits << unused) >> unused);
    }
    case NumberKind::Unsigned:
        return ZVString::FromUInt(bits);
    case NumberKind::Float:
        break;
    }
    return ZVString::FromDouble(width == 4 ? static_cast<double>(std::bit_cast<float>(static_cast<uint32_t>(bits)))
                                           : std::bit_cast<double>(bits));
}

// Empty for bytes that are no number of their type.
ZVString GetNumber(std::string_view bytes, const NumberType& type)
{
    const auto size = static_cast<int64_t>(bytes.size());
    if (size < type.MinimumWidth)
        return {};
    const auto width = static_cast<int32_t>(std::min<int64_t>(size, type.Width));
    ZVByteCursor<std::endian::big, ZVZeroPastEnd> cursor({bytes.data(), size});
    return GetNumberText(type.Kind, cursor.ReadUnsigned(width), width);
}

// The bits of a number whose text this is. Throws for any other text, and for a number that does not fit.
uint64_t GetNumberBits(const ZVString& text, const NumberType& type)
{
    ZVString number = text;
    number.TrimWhitespace();
    if (type.Kind == NumberKind::Float)
    {
        int32_t used = 0;
        const double value = number.ToDouble(&used, true);
        if (number.IsEmpty() || used != number.GetLength())
            ThrowException(L"\"%s\" is no number", text);
        return type.Width == 4 ? std::bit_cast<uint32_t>(static_cast<float>(value)) : std::bit_cast<uint64_t>(value);
    }
    const bool isSigned = type.Kind == NumberKind::Signed;
    const uint64_t bits = isSigned ? static_cast<uint64_t>(number.ToInt64()) : number.ToUInt64();
    const uint64_t kept = bits & UINT64_MAX >> (64 - 8 * type.Width);
    if (GetNumberText(type.Kind, kept, type.Width) != number)
        ThrowException(L"\"%s\" is no whole number of %d bytes", text, type.Width);
    return kept;
}

// Empty for a type that is neither text nor number.
ZVString GetTextOrNumber(const CTagDataAtom& data)
{
    const std::string_view bytes = data.GetValue().Text();
    if (std::ranges::find(TextTypes, data.GetDataType()) != std::end(TextTypes))
        return GetText(bytes);
    const NumberType* const number = FindRow(NumberTypes, data.GetDataType());
    return number == nullptr ? ZVString() : GetNumber(bytes, *number);
}
}

const CTagDataAtom* MetadataItemAtom::FindFirstData() const
{
    return static_cast<const CTagDataAtom*>(GetFirstChild(FourCC("data")));
}

bool MetadataItemAtom::IsPicture() const
{
    const CTagDataAtom* const data = FindFirstData();
    return data != nullptr && FindRow(PictureTypes, data->GetDataType()) != nullptr;
}

bool MetadataItemAtom::GetValue(ZVString& value) const
{
    const CTagDataAtom* const data = FindFirstData();
    if (data == nullptr)
    {
        GetValueSource.Log("There is no data in the item of the type %u", GetType());
        return false;
    }
    if (IsPicture())
    {
        ZVFilename filename = ZVFilename::FromPath(value);
        if (!GetValue(filename))
            return false;
        value = filename.GetFilename();
        return true;
    }
    const ZVString text = GetTextOrNumber(*data);
    if (text.IsEmpty())
        return false;
    value = text;
    return true;
}

bool MetadataItemAtom::GetValue(ZVFilename& filename) const
{
    if (!IsPicture())
        return false;
    const CTagDataAtom& data = *FindFirstData();
    return data.GetValue().GetCount() > 0 &&
           WriteCoverFile(data.GetValue(), FindRow(PictureTypes, data.GetDataType())->Extension, filename);
}

uint32_t MetadataItemAtom::GetDataType() const
{
    const CTagDataAtom* const data = FindFirstData();
    return data == nullptr ? uint32_t {CTagDataAtom::UTF8} : data->GetDataType();
}

void MetadataItemAtom::SetValue(const ZVString& value)
{
    SetValue(value, GetDataType());
}

void MetadataItemAtom::SetValue(const ZVString& value, uint32_t dataType)
{
    const NumberType* const number = FindRow(NumberTypes, dataType);
    if (number != nullptr)
        SetNumber(number->DataType, GetNumberBits(value, *number), number->Width);
    else
        SetText(value, UnlimitedText);
}
