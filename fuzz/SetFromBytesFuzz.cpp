// Reads any bytes as a text in every encoding, and writes what came of it as UTF-8 and as bytes and reads it again.

#include "core/containers/ZVBuffer.h"
#include "core/string/ZVString.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace
{
void Require(bool condition)
{
    if (!condition)
        abort();
}

std::wstring TextOf(const ZVString& text)
{
    Require(text.GetText()[text.GetLength()] == L'\0' && text.GetCapacity() > text.GetLength());
    return std::wstring(text.GetText(), static_cast<size_t>(text.GetLength()));
}

std::wstring Read(const uint8_t* data, size_t size, ZVEncoding encoding, bool dropNulBytes)
{
    ZVBuffer buffer;
    buffer.Append(data, static_cast<int64_t>(size));
    ZVString text(L"old");
    text.SetFromBytes(buffer, encoding, dropNulBytes);
    Require(buffer.GetUsed() == static_cast<int64_t>(size));
    return TextOf(text);
}

// What a text is after its way through UTF-8, if that can be told for each character by itself.
bool MakeUTF8Image(std::wstring& text)
{
    constexpr wchar_t LargestWritten = 0x7ffff;  // above, the lead byte begins no sequence
    for (wchar_t& character : text)
    {
        if (character <= 0 || character > LargestWritten)
            return false;
        if (character > 0xffff)
            character = L'?';
    }
    return true;
}

void WriteAndReadBack(const std::wstring& text)
{
    const ZVString original(text.c_str());
    int32_t size = 0;
    const std::unique_ptr<char[]> bytes(original.GetUTF8(&size));
    ZVString terminated(L"old");
    terminated.SetFromUTF8(bytes.get());
    ZVString counted;
    counted.SetFromUTF8(bytes.get(), size);
    Require(TextOf(terminated) == TextOf(counted));
    std::wstring expected = text;
    Require(!MakeUTF8Image(expected) || TextOf(terminated) == expected);

    const std::unique_ptr<char[]> narrow(original.GetNarrow(&size));
    ZVString widened;
    widened.SetFromNarrow(narrow.get(), size);
    for (int32_t position = 0; position < widened.GetLength(); ++position)
        Require(widened[position] == original[position] || widened[position] == L'?');
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr ZVEncoding Encodings[] = {ZVEncoding::Narrow, ZVEncoding::UTF8,         ZVEncoding::UTF16,
                                        ZVEncoding::UTF32,  ZVEncoding::UTF8WithMark, static_cast<ZVEncoding>(4)};
    const ZVEncoding detected = ZVString::DetectEncoding(data, static_cast<int32_t>(size));
    for (const bool dropNulBytes : {false, true})
    {
        for (const ZVEncoding encoding : Encodings)
        {
            const std::wstring text = Read(data, size, encoding, dropNulBytes);
            // An overlong form of the NUL is the one way for a character 0 to come into a text.
            const bool isUTF8 = encoding == ZVEncoding::UTF8 || encoding == ZVEncoding::UTF8WithMark;
            Require(isUTF8 || text.find(L'\0') == std::wstring::npos);
            Require(encoding != detected || text == Read(data, size, ZVEncoding::Detect, dropNulBytes));
            WriteAndReadBack(text);
        }
    }

    // The three ways to read UTF-8 up to a NUL agree.
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    ZVString reinterpreted;
    reinterpreted.SetFromNarrow(bytes.data(), static_cast<int32_t>(size));
    for (int32_t position = 0; position < reinterpreted.GetLength(); ++position)
        Require(reinterpreted[position] == data[position]);
    reinterpreted.ReinterpretAsUTF8();
    Require(TextOf(reinterpreted) == TextOf(ZVString::FromUTF8(bytes.c_str())));
    Require(TextOf(reinterpreted) == Read(data, size, ZVEncoding::UTF8, false));
    return 0;
}
