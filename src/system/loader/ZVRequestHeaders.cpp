#include "system/loader/ZVRequestHeaders.h"

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

// True when a line begins with a name and a colon.
bool IsLineOf(const ZVString& line, const wchar_t* name)
{
    return line.StartsWith(name, false) && line.GetAt(static_cast<int32_t>(wcslen(name))) == L':';
}

int32_t FindEntry(const ZVStringArray& headers, const wchar_t* name)
{
    for (int32_t index = 0; index < headers.GetCount(); ++index)
        if (IsLineOf(headers[index], name))
            return index;
    return -1;
}
}

bool ZVRequestHeaders::FindValue(const ZVString& lines, const wchar_t* name, ZVString& value)
{
    ZVStringArray list;
    list.SetSplit(lines, L'\n');
    for (const ZVString& line : list)
    {
        if (!IsLineOf(line, name))
            continue;
        value = line.Mid(static_cast<int32_t>(wcslen(name)) + 1);
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
