#include "system/library/ZVNativeBytes.h"

#include "core/string/ZVUTF8.h"

#include <cstdint>
#include <cstring>

namespace
{
constexpr wchar_t CarriedByteBase = 0xdc00;

// The sequences of valid UTF-8 up to U+FFFF by their first byte, with what the second may be (Unicode 15, table 3-7).
struct SequenceRange
{
    uint8_t FirstLead;
    uint8_t LastLead;
    uint8_t FirstSecond;
    uint8_t LastSecond;
    int32_t Length;
};

constexpr SequenceRange SequenceRanges[] = {
    {0xc2, 0xdf, 0x80, 0xbf, 2},
    {0xe0, 0xe0, 0xa0, 0xbf, 3},
    {0xe1, 0xec, 0x80, 0xbf, 3},
    {0xed, 0xed, 0x80, 0x9f, 3},
    {0xee, 0xef, 0x80, 0xbf, 3},
};

// Bytes of the valid sequence at the start of a NUL-terminated text, or 0.
int32_t ValidSequenceLength(const uint8_t* bytes)
{
    if (bytes[0] < 0x80)
        return 1;
    for (const SequenceRange& range : SequenceRanges)
    {
        if (bytes[0] < range.FirstLead || bytes[0] > range.LastLead)
            continue;
        if (bytes[1] < range.FirstSecond || bytes[1] > range.LastSecond)
            return 0;
        return range.Length == 2 || (bytes[2] & 0xc0) == 0x80 ? range.Length : 0;
    }
    return 0;
}

void AppendEncoded(std::string& bytes, const wchar_t* text, size_t length)
{
    const size_t start = bytes.size();
    bytes.resize(start + ZVUTF8::EncodedSize(text, length));
    ZVUTF8::Encode(text, length, bytes.data() + start);
}
}

ZVNativeBytes::ZVNativeBytes(const ZVString& path)
{
    const wchar_t* position = path.GetText();
    const wchar_t* const end = position + path.GetLength();
    while (position < end)
    {
        const wchar_t* run = position;
        while (position < end && GetCarriedByte(*position) == 0)
            ++position;
        AppendEncoded(m_bytes, run, static_cast<size_t>(position - run));
        for (; position < end && GetCarriedByte(*position) != 0; ++position)
            m_bytes.push_back(static_cast<char>(GetCarriedByte(*position)));
    }
}

unsigned char ZVNativeBytes::GetCarriedByte(wchar_t character)
{
    // Without a sign, since a character can have any value of 32 bits.
    const uint32_t byte = static_cast<uint32_t>(character) - CarriedByteBase;
    return (byte >= 0x80 && byte <= 0xff) || byte == '\\' ? static_cast<unsigned char>(byte) : 0;
}

ZVString ZVNativeBytes::ToText(const char* path, bool keepBackslashes)
{
    ZVString text;
    if (path == nullptr)
        return text;
    // Every sequence becomes at most as many characters as it has bytes.
    wchar_t* const start = text.GetBuffer(static_cast<int32_t>(strlen(path)));
    wchar_t* target = start;
    for (const uint8_t* bytes = reinterpret_cast<const uint8_t*>(path); *bytes != 0;)
    {
        const int32_t length = *bytes == '\\' && !keepBackslashes ? 0 : ValidSequenceLength(bytes);
        *target++ = length == 0 ? CarriedByteBase + *bytes : ZVUTF8::DecodeSequence(bytes, length);
        bytes += length == 0 ? 1 : length;
    }
    text.ReleaseBuffer(static_cast<int32_t>(target - start));
    return text;
}
