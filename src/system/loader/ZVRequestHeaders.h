#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/string/ZVString.h"

#include <cstdint>

// The method of a request with a body.
enum class ZVRequestMethod
{
    Post,
    Put,
};

// What the body of a request is made of.
enum class ZVRequestBodyKind
{
    General,
    XML,
    JSON,
    Form,
    Multipart,
};

// The body of a request.
struct ZVRequestBody
{
    ZVRequestBodyKind Kind = ZVRequestBodyKind::General;
    const void* Data = nullptr;
    int64_t Size = 0;
    // Otherwise the bytes stay with the caller and must live until the load ends.
    bool IsCopied = false;
    // The content type of a general body, the boundary of a multipart one.
    ZVString Detail {};
};

// The header lines of HTTP requests and answers as texts "name: value". A list's entry may hold several lines, separated by CR and
// LF. Names are compared without regard to case.
namespace ZVRequestHeaders
{
// Entries that are no headers but options for the reader, and the headers that go with them.
inline constexpr wchar_t Method[] = L"HTTPREQUEST_TYPE";
inline constexpr wchar_t RangeStart[] = L"RANGE_START";
inline constexpr wchar_t IfModifiedSince[] = L"If-Modified-Since";
inline constexpr wchar_t UseCache[] = L"USE_CACHE";
inline constexpr wchar_t SucceedOnError[] = L"SUCCEED_ON_ERROR";

// What separates the entries of a list that is handed on as one text.
inline constexpr wchar_t Separator[] = L"|";

// The value of the first line of a name, without white space around it. False when there is no such line.
bool FindValue(const ZVString& lines, const wchar_t* name, ZVString& value);
// The same in a list.
bool FindHeader(const ZVStringArray& headers, const wchar_t* name, ZVString& value);
// Adds an entry, or replaces the first one that begins with its name. False, and nothing is done, for a value that would become
// more than one line or entry.
bool SetEntry(ZVStringArray& headers, const wchar_t* name, const ZVString& value);

// The value of Method for a request with a body.
const wchar_t* GetMethodName(ZVRequestMethod method);
// The lines that describe a body, as one entry.
ZVString GetBodyHeaders(const ZVRequestBody& body);
}
