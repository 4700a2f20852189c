// Formats any text with any arguments. The input is the format in UTF-8 up to a NUL, then for each argument one byte that tells what
// it is and eight bytes of value, of which the last ones may be missing.

#include "core/string/ZVString.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace
{
constexpr int32_t MaximumArguments = 20;

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

// The arguments that follow the format, with the format as the text of all that are texts.
class Arguments
{
public:
    Arguments(const uint8_t* data, size_t size, const ZVString& text, const char* bytes)
    {
        for (size_t position = 0; position < size && m_count < MaximumArguments; position += 1 + sizeof(int64_t))
        {
            int64_t value = 0;
            memcpy(&value, data + position + 1, std::min(sizeof value, size - position - 1));
            m_addresses[m_count] =
                Set(m_records[m_count], data[position] & 15, value, text, bytes) ? &m_records[m_count] : nullptr;
            ++m_count;
        }
    }

    // Puts one string object in the place of every other.
    void Redirect(const ZVString& text)
    {
        for (ZVFormatRecord& record : m_records)
            if (record.Code == ZVFormatCode::String)
                record = ZVFormatArgument(text);
    }

    const ZVFormatRecord* const* Records() const { return m_addresses; }
    int32_t Count() const { return m_count; }

private:
    static bool Set(ZVFormatRecord& record, int kind, int64_t value, const ZVString& text, const char* bytes)
    {
        switch (kind)
        {
        case 0:
            return false;
        case 1:
            record = ZVFormatArgument(bytes);
            return true;
        case 2:
            record = ZVFormatArgument(text.GetText());
            return true;
        case 3:
            record = ZVFormatArgument(text);
            return true;
        case 5:
            record = {ZVFormatCode::Double, value};
            return true;
        case 6:
            record = {ZVFormatCode::UTF8Text, 0};
            return true;
        case 7:
            record = {ZVFormatCode::WideText, 0};
            return true;
        case 8:
            return true;
        default:
            record = {ZVFormatCode::Integer, value};
            return true;
        }
    }

    ZVFormatRecord m_records[MaximumArguments];
    const ZVFormatRecord* m_addresses[MaximumArguments] = {};
    int32_t m_count = 0;
};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const char* bytes = reinterpret_cast<const char*>(data);
    const size_t formatSize = strnlen(bytes, size);
    ZVString format;
    format.SetFromUTF8(bytes, static_cast<int32_t>(formatSize));
    const ZVString copy(format);
    char* const terminated = copy.GetUTF8();
    const size_t skipped = std::min(formatSize + 1, size);
    Arguments arguments(data + skipped, size - skipped, copy, terminated);

    ZVString text(L"old");
    text.FormatList(format, arguments.Records(), arguments.Count());
    // No conversion writes more than a decimal number can have, or than its text.
    constexpr int64_t LongestNumber = 191;
    const int64_t conversions = format.CountOf(L"%");
    Require(text.GetLength() <= format.GetLength() + conversions * std::max<int64_t>(LongestNumber, format.GetLength() + 6));
    Require(conversions > 0 || IsSame(text, format.GetText()));

    ZVString appended(L"old");
    appended.AppendFormatList(format, arguments.Records(), arguments.Count());
    Require(IsSame(appended, L"old" + text));

    // The string that is formatted is the format and may be every argument.
    arguments.Redirect(format);
    format.AppendFormatList(format, arguments.Records(), arguments.Count());
    appended = copy;
    appended.Append(text.GetText(), text.GetLength());
    Require(IsSame(format, appended));
    delete[] terminated;
    return 0;
}
