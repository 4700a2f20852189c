#include "system/loader/ZVRequestHeaders.h"

#include <algorithm>
#include <string_view>

namespace
{
struct BodyHeader
{
    ZVRequestBodyKind Kind;
    bool HasDetail;
    const wchar_t* Format;
};

// clang-format off
constexpr BodyHeader BodyHeaders[] = {
    {ZVRequestBodyKind::General,   true,  L"Content-Type: %s; charset=UTF-8\r\nAccept-Encoding: gzip\r\nContent-length: %d"},
    {ZVRequestBodyKind::XML,       false, L"Content-Type: text/xml; charset=UTF-8\r\nAccept-Encoding: gzip\r\nContent-length: %d"},
    {ZVRequestBodyKind::JSON,      false, L"Content-Type: application/json; charset=UTF-8\r\nAccept-Encoding: gzip\r\nContent-length: %d"},
    {ZVRequestBodyKind::Form,      false, L"Content-Type: application/x-www-form-urlencoded\r\nAccept-Encoding: gzip\r\nContent-length: %d"},
    {ZVRequestBodyKind::Multipart, true,  L"Content-Type: multipart/form-data; boundary=%s\r\nAccept-Encoding: gzip\r\nContent-length: %d"},
};
// clang-format on

wchar_t GetLower(wchar_t character)
{
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

// True when a line begins with a name and a colon.
bool IsLineOf(std::wstring_view line, std::wstring_view name)
{
    return line.size() > name.size() && line[name.size()] == L':' &&
           std::equal(name.begin(), name.end(), line.begin(),
                      [](wchar_t left, wchar_t right) { return GetLower(left) == GetLower(right); });
}

int32_t FindEntry(const ZVStringArray& headers, const wchar_t* name)
{
    for (int32_t index = 0; index < headers.GetCount(); ++index)
        if (IsLineOf(headers[index].View(), name))
            return index;
    return -1;
}
}

bool ZVRequestHeaders::FindValue(const ZVString& lines, const wchar_t* name, ZVString& value)
{
    for (std::wstring_view rest = lines.View(); !rest.empty();)
    {
        const std::wstring_view line = rest.substr(0, rest.find(L'\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (!IsLineOf(line, name))
            continue;
        const std::wstring_view text = line.substr(wcslen(name) + 1);
        value = ZVString(text.data(), static_cast<int32_t>(text.size()));
        value.TrimWhitespace();
        return true;
    }
    return false;
}

bool ZVRequestHeaders::FindHeader(const ZVStringArray& headers, const wchar_t* name, ZVString& value)
{
    for (const ZVString& entry : headers)
        if (FindValue(entry, name, value))
            return true;
    return false;
}

bool ZVRequestHeaders::SetEntry(ZVStringArray& headers, const wchar_t* name, const ZVString& value)
{
    if (value.FindOneOf(L"\r\n|") >= 0)
        return false;
    const ZVString entry = ZVString(name) + L": " + value;
    const int32_t index = FindEntry(headers, name);
    if (index < 0)
        headers.Add(entry);
    else
        headers[index] = entry;
    return true;
}

const wchar_t* ZVRequestHeaders::GetMethodName(ZVRequestMethod method)
{
    return method == ZVRequestMethod::Put ? L"PUT" : L"POST";
}

ZVString ZVRequestHeaders::GetBodyHeaders(const ZVRequestBody& body)
{
    for (const BodyHeader& header : BodyHeaders)
        if (header.Kind == body.Kind)
            return header.HasDetail ? ZVFormat(header.Format, body.Detail, body.Size) : ZVFormat(header.Format, body.Size);
    return ZVString();
}
