#include "mp4/tags/NumberAtoms.h"

#include "core/bytes/ZVByteCursor.h"
#include "mp4/model/Exception.h"
#include "mp4/tags/CTagDataAtom.h"
#include "mp4/tags/ReadWholeNumber.h"

namespace
{
// A total outside of this is not shown.
constexpr uint32_t MaximumTotal = 254;

// Number and total are each after two bytes that mean nothing.
constexpr int64_t NumberOffset = 2;
constexpr int64_t TotalOffset = 4;

// The whole value of a track has two more bytes that mean nothing.
constexpr uint32_t TrackType = FourCC("trkn");
constexpr int32_t TrackWidth = 8;
constexpr int32_t DiscWidth = 6;

// Numbers that the value is too short for.
constexpr uint32_t NumberIfMissing = 1;

using Cursor = ZVByteCursor<std::endian::big, ZVZeroPastEnd>;

uint32_t ReadShort(std::string_view bytes, int64_t offset)
{
    const bool isThere = static_cast<int64_t>(bytes.size()) >= offset + 2;
    return isThere ? Cursor({bytes.data(), static_cast<int64_t>(bytes.size())}, offset).Read<uint16_t>() : NumberIfMissing;
}

struct FlagWord
{
    const wchar_t* Text;
    uint32_t Value;
};

constexpr FlagWord FlagWords[] = {
    {L"0",     0},
    {L"1",     1},
    {L"false", 0},
    {L"true",  1},
    {L"no",    0},
    {L"yes",   1},
};
}

bool CNumberOfTotalAtom::GetValue(ZVString& value) const
{
    const std::string_view bytes = GetBytes();
    const uint32_t number = ReadShort(bytes, NumberOffset);
    const uint32_t total = ReadShort(bytes, TotalOffset);
    if (bytes.empty() || number == 0)
        return false;
    value = ZVString::FromUInt(number);
    if (total >= 1 && total <= MaximumTotal)
        value.AppendFormat(L"/%u", total);
    return true;
}

void CNumberOfTotalAtom::SetValue(const ZVString& value)
{
    const int32_t slash = value.Find(L'/');
    const uint64_t number = ReadWholeNumber(slash < 0 ? value : value.Left(slash), UINT16_MAX);
    const uint64_t total = slash < 0 ? 0 : ReadWholeNumber(value.Mid(slash + 1), UINT16_MAX);
    const int32_t width = GetType() == TrackType ? TrackWidth : DiscWidth;
    SetNumber(CTagDataAtom::Implicit, number << 8 * (width - NumberOffset - 2) | total << 8 * (width - TotalOffset - 2), width);
}

bool CShortNumberAtom::GetValue(ZVString& value) const
{
    const std::string_view bytes = GetBytes();
    const uint32_t number = bytes.size() < 2 ? 0 : ReadShort(bytes, 0);
    if (number == 0)
        return false;
    value = ZVString::FromUInt(number);
    return true;
}

void CShortNumberAtom::SetValue(const ZVString& value)
{
    SetNumber(CTagDataAtom::SignedNumber, ReadWholeNumber(value, UINT16_MAX), 2);
}

bool CByteNumberAtom::GetValue(ZVString& value) const
{
    const std::string_view bytes = GetBytes();
    if (bytes.empty())
        return false;
    value = ZVString::FromUInt(static_cast<uint8_t>(bytes[0]));
    return true;
}

void CByteNumberAtom::SetValue(const ZVString& value)
{
    SetNumber(CTagDataAtom::SignedNumber, ReadWholeNumber(value, UINT8_MAX), 1);
}

bool CFlagAtom::GetValue(ZVString& value) const
{
    const std::string_view bytes = GetBytes();
    if (bytes.empty() || static_cast<uint8_t>(bytes[0]) > 1)
        return false;
    value = bytes[0] == 0 ? L"0" : L"1";
    return true;
}

void CFlagAtom::SetValue(const ZVString& value)
{
    for (const FlagWord& word : FlagWords)
        if (value.IsEqual(word.Text, false))
        {
            SetNumber(CTagDataAtom::SignedNumber, word.Value, 1);
            return;
        }
    ThrowException(L"\"%s\" is neither 0 nor 1", value);
}

void CHiddenNumberAtom::SetValue(const ZVString& value)
{
    SetNumber(CTagDataAtom::SignedNumber, ReadWholeNumber(value, INT32_MAX), 4);
}
