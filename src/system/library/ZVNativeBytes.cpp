#include "system/library/ZVNativeBytes.h"

#include "core/string/ZVUTF8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace
{
constexpr wchar_t CarriedByteBase = 0xdc00;

// The valid UTF-8 sequences up to U+FFFF by their first byte, with the range of the second (Unicode 15, table 3-7).
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

// The length in bytes of the valid sequence at the start of a NUL-terminated text, or 0.
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

void AppendEncoded(std::string& bytes, std::wstring_view text)
{
    const size_t start = bytes.size();
    bytes.resize(start + ZVUTF8::EncodedSize(text.data(), text.size()));
    ZVUTF8::Encode(text.data(), text.size(), bytes.data() + start);
}

// Decodes a path, and carries the bytes that no text can hold; a backslash too if it is one of them.
ZVString Decode(const char* path, bool carriesBackslashes)
{
    ZVString text;
    if (path == nullptr)
        return text;
    // Every sequence becomes at most as many characters as it has bytes.
    wchar_t* const start = text.GetBuffer(static_cast<int32_t>(strlen(path)));
    wchar_t* target = start;
    for (const uint8_t* bytes = reinterpret_cast<const uint8_t*>(path); *bytes != 0;)
    {
        const int32_t length = *bytes == '\\' && carriesBackslashes ? 0 : ValidSequenceLength(bytes);
        *target++ = length == 0 ? CarriedByteBase + *bytes : ZVUTF8::DecodeSequence(bytes, length);
        bytes += length == 0 ? 1 : length;
    }
    text.ReleaseBuffer(static_cast<int32_t>(target - start));
    return text;
}
}

ZVNativeBytes::ZVNativeBytes(const ZVString& path)
{
    const auto isCarried = [](wchar_t character) { return GetCarriedByte(character) != 0; };
    std::wstring_view rest = path.View();
    while (!rest.empty())
    {
        const auto plain = static_cast<size_t>(std::find_if(rest.begin(), rest.end(), isCarried) - rest.begin());
        AppendEncoded(m_bytes, rest.substr(0, plain));
        rest.remove_prefix(plain);
        for (; !rest.empty() && isCarried(rest.front()); rest.remove_prefix(1))
            m_bytes.push_back(static_cast<char>(GetCarriedByte(rest.front())));
    }
}

unsigned char ZVNativeBytes::GetCarriedByte(wchar_t character)
{
    // Unsigned, since a character can have any 32-bit value.
    const uint32_t byte = static_cast<uint32_t>(character) - CarriedByteBase;
    return (byte >= 0x80 && byte <= 0xff) || byte == '\\' ? static_cast<unsigned char>(byte) : 0;
}

ZVString ZVNativeBytes::ToText(const char* path)
{
    return Decode(path, true);
}

ZVString ZVNativeBytes::UserPathToText(const char* path)
{
    return Decode(path, false);
}
