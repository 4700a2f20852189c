// Reads any text as a text with entities and as a number. The input is UTF-8.

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
    Require(decoded.GetLength() >= text.GetLength());
    Require(decoded.FindOneOf(L"<>'\"\x1\x2\x1f") == -1);
    decoded.DecodeXMLEntities();
    // No entity decodes to a NUL, so an escaped NUL stays.
    Require(wmemchr(text, L'\0', static_cast<size_t>(text.GetLength())) != nullptr || IsSame(decoded, text));
    decoded = text;
    decoded.DecodeHTMLEntities();
    Require(decoded.GetLength() <= text.GetLength());
    Require(text.Find(L'&') != -1 || IsSame(decoded, text));
}

void ReadNumbers(const ZVString& text)
{
    const int64_t number = text.ToInt64();
    Require(text.ToInt() == std::clamp<int64_t>(number, -INT_MAX, INT_MAX));
    Require(ZVString::FromInt(number).ToInt64() == number);
    Require(number < 0 || text.ToUInt() == std::min<uint64_t>(text.ToUInt64(), UINT32_MAX));
    text.ToUInt64FromHex();
    for (int flags = 0; flags < 8; ++flags)
    {
        const int32_t maxLength = (flags & 4) != 0 ? INT_MAX : text.GetLength() / 2;
        int32_t consumed = -1;
        const double value = text.ToDouble(&consumed, (flags & 1) != 0, maxLength, (flags & 2) != 0);
        Require(consumed >= 0 && consumed <= std::min(maxLength, text.GetLength()));
        Require(!std::isnan(value));
        ZVString::FromDouble(value, 6, true).ToDouble();
    }
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ZVString text;
    text.SetFromUTF8(reinterpret_cast<const char*>(data), static_cast<int32_t>(size));
    EscapeAndDecode(text);
    ReadNumbers(text);
    return 0;
}
