#include "system/component/ZVComponentChecksum.h"

#include "system/library/RunProgram.h"

#include <algorithm>
#include <string_view>

namespace
{
constexpr size_t Length = 64;
constexpr std::wstring_view Digits = L"0123456789abcdefABCDEF";
constexpr std::wstring_view Blanks = L" \t\r\n";
}

ZVString ZVComponentChecksum::Read(const ZVString& text)
{
    std::wstring_view rest = text.View();
    rest.remove_prefix(std::min(rest.find_first_not_of(Blanks), rest.size()));
    if (std::min(rest.find_first_not_of(Digits), rest.size()) != Length)
        return ZVString();
    if (rest.size() > Length && Blanks.find(rest[Length]) == std::wstring_view::npos)
        return ZVString();
    return ZVString(rest.data(), static_cast<int32_t>(Length));
}

ZVString ZVComponentChecksum::OfFile(const ZVString& path)
{
    // Through its input: sha256sum puts a mark before the checksum of a file whose name has special characters.
    ZVStringArray parameters;
    parameters.Add(ZVString(L"<") + path.QuoteForShell());
    ZVString output;
    RunProgram(L"sha256sum", parameters, &output, ZVRunMode::Blocking, nullptr);
    return Read(output);
}
