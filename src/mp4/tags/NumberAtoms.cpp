#include "mp4/tags/NumberAtoms.h"

#include "core/bytes/ZVByteCursor.h"

namespace
{
// A total outside of this is not shown.
constexpr uint32_t MaximumTotal = 254;

// Number and total are each after two bytes that mean nothing.
constexpr int64_t NumberOffset = 2;
constexpr int64_t TotalOffset = 4;

// Numbers that the value is too short for.
constexpr uint32_t NumberIfMissing = 1;

using Cursor = ZVByteCursor<std::endian::big, ZVZeroPastEnd>;

uint32_t ReadShort(std::string_view bytes, int64_t offset)
{
    const bool isThere = static_cast<int64_t>(bytes.size()) >= offset + 2;
    return isThere ? Cursor({bytes.data(), static_cast<int64_t>(bytes.size())}, offset).Read<uint16_t>() : NumberIfMissing;
}
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

bool CShortNumberAtom::GetValue(ZVString& value) const
{
    const std::string_view bytes = GetBytes();
    const uint32_t number = bytes.size() < 2 ? 0 : ReadShort(bytes, 0);
    if (number == 0)
        return false;
    value = ZVString::FromUInt(number);
    return true;
}

bool CByteNumberAtom::GetValue(ZVString& value) const
{
    const std::string_view bytes = GetBytes();
    if (bytes.empty())
        return false;
    value = ZVString::FromUInt(static_cast<uint8_t>(bytes[0]));
    return true;
}

bool CFlagAtom::GetValue(ZVString& value) const
{
    const std::string_view bytes = GetBytes();
    if (bytes.empty() || static_cast<uint8_t>(bytes[0]) > 1)
        return false;
    value = bytes[0] == 0 ? L"0" : L"1";
    return true;
}
