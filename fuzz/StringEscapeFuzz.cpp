// Reads any text as one with entities, with tokens, with length-prefixed parts, and as a number. The input is UTF-8.

#include "core/string/ZVString.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace
{
void Require(bool condition)
{
    if (!condition)
        abort();
}

bool IsSame(const ZVString& left, const ZVString& right)
{
    return left.GetLength() == right.GetLength() &&
           wmemcmp(left.GetText(), right.GetText(), static_cast<size_t>(left.GetLength())) == 0;
}

void EscapeAndDecode(const ZVString& text)
{
    constexpr uint32_t Flags = ZVString::EscapeApostrophes | ZVString::EscapeQuotationMarks | ZVString::HandleControlCharacters;
    ZVString escaped(text);
    escaped.EscapeXML(Flags);
    Require(escaped.GetLength() >= text.GetLength() && escaped.FindOneOf(L"<>'\"\x1\x2\x1f") == -1);
    ZVString decoded(escaped);
    decoded.DecodeXMLEntities();
    // Nothing decodes to a NUL, so the escape of one stays.
    Require(wmemchr(text, L'\0', static_cast<size_t>(text.GetLength())) != nullptr || IsSame(decoded, text));

    decoded = text;
    decoded.DecodeHTMLEntities();
    Require(decoded.GetLength() <= text.GetLength());
    Require(text.Find(L'&') != -1 || IsSame(decoded, text));
    ZVString attribute = text.GetEscapedXML(ZVString::ForAttribute);
    attribute.DecodeXMLEntities();
    Require(attribute.GetLength() == text.GetLength());
}

void ReadParts(const ZVString& text)
{
    ZVString value;
    for (int32_t position = 0; position < text.GetLength();)
    {
        const int32_t start = position;
        if (!text.ReadLengthPrefixed(position, value))
        {
            Require(position == start && text.ReadLengthPrefixedInt(position, -5) == -5);
            ++position;
            continue;
        }
        Require(position > start && position <= text.GetLength() && text[position - 1] == L')');
        Require(IsSame(value, text.Mid(position - 1 - value.GetLength(), value.GetLength())));
    }

    ZVString written(L"(");
    written.AppendLengthPrefixed(text);
    int32_t position = 1;
    Require(written.ReadLengthPrefixed(position, value) && IsSame(value, text) && position == written.GetLength());
}

// Gives each token as it is.
class SameToken final : public IZVStringTokenReplaceCallback
{
public:
    ZVString ReplaceToken(const ZVString& token) override { return token; }
};

void ReplaceBySame(const ZVString& text)
{
    SameToken same;
    ZVString replaced(text);
    replaced.ReplaceTokens(L"[", L"]", same, true);
    Require(IsSame(replaced, text));
    const wchar_t* const needles[] = {L"&", L"ab", L"a"};
    replaced.ReplaceMultiple(needles, needles, 3);
    Require(IsSame(replaced, text));
}

void ReadNumbers(const ZVString& text)
{
    const int64_t number = text.ToInt64();
    Require(text.ToInt() == std::clamp<int64_t>(number, -INT_MAX, INT_MAX));
    Require(number < 0 || text.ToUInt() == std::min<uint64_t>(text.ToUInt64(), UINT32_MAX));
    Require(ZVString::FromInt(number).ToInt64() == number);
    text.ToUInt64FromHex();
    text.ToBool();

    for (const int32_t maxLength : {INT_MAX, text.GetLength() / 2})
    {
        for (int flags = 0; flags < 4; ++flags)
        {
            int32_t consumed = -1;
            const double value = text.ToDouble(&consumed, (flags & 1) != 0, maxLength, (flags & 2) != 0);
            Require(consumed >= 0 && consumed <= std::min(maxLength, text.GetLength()));
            const ZVString written = ZVString::FromDouble(value, 6, true);
            Require(std::isfinite(value) || written == L"?");
            constexpr double LargestExact = 1e15;
            Require(!(std::fabs(value) < LargestExact) ||
                    std::fabs(written.ToDouble() - value) <= 0.51e-6 + std::fabs(value) * 1e-14);
        }
    }
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ZVString text;
    text.SetFromUTF8(reinterpret_cast<const char*>(data), static_cast<int32_t>(size));
    EscapeAndDecode(text);
    ReadParts(text);
    ReplaceBySame(text);
    ReadNumbers(text);
    return 0;
}
