#include "siblings/reader/CResourceName.h"

#include "core/string/ZVStringUTF8.h"
#include "system/filename/ZVFilename.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr wchar_t FileScheme[] = L"file://";
constexpr wchar_t LocalHost[] = L"localhost/";
constexpr wchar_t SchemeEnd[] = L"://";

struct KnownScheme
{
    const wchar_t* Start;
    CResourceName::Kind Kind;
};

constexpr KnownScheme KnownSchemes[] = {
    {FileScheme,  CResourceName::Kind::Local},
    {L"http://",  CResourceName::Kind::HTTP },
    {L"https://", CResourceName::Kind::HTTP },
};

ZVString MapAliases(const ZVString& name)
{
    ZVFilename filename = ZVFilename::FromPath(name);
    filename.MapProtocolAliases();
    return filename.GetFilename();
}

int GetHexDigit(char character)
{
    constexpr char digits[] = "0123456789abcdef0123456789ABCDEF";
    const char* const found = character == '\0' ? nullptr : strchr(digits, character);
    return found == nullptr ? -1 : static_cast<int>(found - digits) & 15;
}

// Where the host ends: at the first "/", "?" or "#" after the scheme.
size_t FindHostEnd(const std::string& address)
{
    return std::min(address.find_first_of("/?#", address.find("://") + 3), address.size());
}
}

CResourceName::Kind CResourceName::GetKind(const ZVString& name)
{
    if (name.IsEmpty())
        return Kind::None;
    const std::wstring_view text = name.View();
    const size_t schemeEnd = text.find(SchemeEnd);
    if (schemeEnd == text.npos || schemeEnd == 0 || text.find_first_of(L"/\\") < schemeEnd)
        return Kind::Local;
    const ZVString address = MapAliases(name);
    for (const KnownScheme& scheme : KnownSchemes)
        if (address.StartsWith(scheme.Start, false))
            return scheme.Kind;
    return Kind::None;
}

bool CResourceName::CutFileScheme(ZVString& name)
{
    if (!name.StartsWith(FileScheme, false))
        return false;
    name.Trim(static_cast<int32_t>(wcslen(FileScheme)), 0);
    if (name.StartsWith(LocalHost, false))
        name.Trim(static_cast<int32_t>(wcslen(LocalHost)) - 1, 0);
    return true;
}

std::string CResourceName::DecodePercent(const std::string& text)
{
    std::string decoded;
    for (size_t index = 0; index < text.size(); ++index)
    {
        const int high = text[index] == '%' && index + 2 < text.size() ? GetHexDigit(text[index + 1]) : -1;
        const int low = high < 0 ? -1 : GetHexDigit(text[index + 2]);
        const bool isEscape = low >= 0 && high + low > 0;
        decoded.push_back(isEscape ? static_cast<char>(high << 4 | low) : text[index]);
        index += isEscape ? 2 : 0;
    }
    return decoded;
}

std::string CResourceName::GetAddress(const ZVString& name)
{
    const std::string address = ZVStringUTF8(MapAliases(name)).Get();
    const size_t hostEnd = FindHostEnd(address);
    std::string escaped = address.substr(0, hostEnd);
    for (size_t index = hostEnd; index < address.size(); ++index)
    {
        constexpr char digits[] = "0123456789ABCDEF";
        const uint8_t byte = static_cast<uint8_t>(address[index]);
        if (byte == ' ' || byte >= 0x80)
            escaped.append({'%', digits[byte >> 4], digits[byte & 15]});
        else
            escaped.push_back(address[index]);
    }
    const auto isControl = [](char character) { return static_cast<uint8_t>(character) < ' ' || character == '\x7f'; };
    return std::any_of(escaped.begin(), escaped.end(), isControl) ? std::string() : escaped;
}

std::string CResourceName::GetLoggedAddress(const std::string& address)
{
    const size_t hostStart = address.find("://") + 3;
    const size_t hostEnd = FindHostEnd(address);
    const size_t userEnd = address.rfind('@', hostEnd);
    const size_t pathEnd = std::min(address.find_first_of("?#", hostEnd), address.size());
    const size_t shown = userEnd == std::string::npos || userEnd < hostStart ? hostStart : userEnd + 1;
    return address.substr(0, hostStart) + address.substr(shown, pathEnd - shown);
}
