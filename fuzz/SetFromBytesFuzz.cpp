// Reads any bytes as a text in every encoding, then writes the result as UTF-8 and reads that again.

#include "Require.h"
#include "core/containers/ZVBuffer.h"

#include <cstdint>
#include <memory>
#include <string>

namespace
{
std::wstring TextOf(const ZVString& text)
{
    Require(text.GetCapacity() > text.GetLength());
    Require(text.GetText()[text.GetLength()] == L'\0');
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

void WriteAndReadBack(const std::wstring& text)
{
    int32_t size = 0;
    const std::unique_ptr<char[]> bytes(ZVString(text.c_str()).GetUTF8(&size));
    ZVString read;
    read.SetFromUTF8(bytes.get(), size);
    Require(IsSame(ZVString::FromUTF8(bytes.get()), read));
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const ZVEncoding detected = ZVString::DetectEncoding(data, static_cast<int32_t>(size));
    for (const bool dropNulBytes : {false, true})
        for (int32_t number = 1; number <= static_cast<int32_t>(ZVEncoding::UTF32); ++number)
        {
            const ZVEncoding encoding = static_cast<ZVEncoding>(number);
            const std::wstring text = Read(data, size, encoding, dropNulBytes);
            // Only an overlong form of the NUL can bring a character 0 into a text.
            const bool isUTF8 = encoding == ZVEncoding::UTF8 || encoding == ZVEncoding::UTF8WithMark;
            Require(isUTF8 || text.find(L'\0') == std::wstring::npos);
            Require(encoding != detected || text == Read(data, size, ZVEncoding::Detect, dropNulBytes));
            WriteAndReadBack(text);
        }
    return 0;
}
