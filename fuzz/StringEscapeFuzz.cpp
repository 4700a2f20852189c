// Reads any text as one with entities, with length-prefixed parts, and as a number. The input is UTF-8.

#include "Require.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>

namespace
{
void EscapeAndDecode(const ZVString& text)
{
    constexpr uint32_t Flags = ZVString::EscapeApostrophes | ZVString::EscapeQuotationMarks | ZVString::HandleControlCharacters;
    ZVString decoded(text);
    decoded.EscapeXML(Flags);
    Require(decoded.GetLength() >= text.GetLength() && decoded.FindOneOf(L"<>'\"\x1\x2\x1f") == -1);
    decoded.DecodeXMLEntities();
    // Nothing decodes to a NUL, so the escape of one stays.
    Require(wmemchr(text, L'\0', static_cast<size_t>(text.GetLength())) != nullptr || IsSame(decoded, text));
    decoded = text;
    decoded.DecodeHTMLEntities();
    Require(decoded.GetLength() <= text.GetLength() && (text.Find(L'&') != -1 || IsSame(decoded, text)));
}

void ReadParts(const ZVString& text)
{
    ZVString value;
    for (int32_t start = 0; start < text.GetLength(); ++start)
    {
        int32_t position = start;
        const bool isRead = text.ReadLengthPrefixed(position, value);
        const ZVString read = text.Mid(position - 1 - value.GetLength(), value.GetLength() + 1);
        Require(isRead ? position > start && IsSame(read, value + L")") : position == start);
        start = std::max(start, position - 1);
    }
    ZVString written(L"(");
    written.AppendLengthPrefixed(text);
    int32_t position = 1;
    Require(written.ReadLengthPrefixed(position, value) && IsSame(value, text) && position == written.GetLength());
}

void ReadNumbers(const ZVString& text)
{
    const int64_t number = text.ToInt64();
    Require(text.ToInt() == std::clamp<int64_t>(number, -INT_MAX, INT_MAX) && ZVString::FromInt(number).ToInt64() == number);
    Require(number < 0 || text.ToUInt() == std::min<uint64_t>(text.ToUInt64(), UINT32_MAX));
    text.ToUInt64FromHex();
    text.ToBool();
    for (int flags = 0; flags < 8; ++flags)
    {
        const int32_t maxLength = (flags & 4) != 0 ? INT_MAX : text.GetLength() / 2;
        int32_t consumed = -1;
        const double value = text.ToDouble(&consumed, (flags & 1) != 0, maxLength, (flags & 2) != 0);
        Require(consumed >= 0 && consumed <= std::min(maxLength, text.GetLength()) && !std::isnan(value));
        const double again = ZVString::FromDouble(value, 6, true).ToDouble();
        constexpr double LargestExact = 1e15;
        Require(std::fabs(value) >= LargestExact || std::fabs(again - value) <= 0.51e-6 + std::fabs(value) * 1e-14);
    }
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ZVString text;
    text.SetFromUTF8(reinterpret_cast<const char*>(data), static_cast<int32_t>(size));
    EscapeAndDecode(text);
    ReadParts(text);
    ReadNumbers(text);
    return 0;
}
