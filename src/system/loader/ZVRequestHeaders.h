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

// The header lines of HTTP requests and answers as texts "name: value". A list's entry may hold several lines, parted by CR and
// LF. Names are compared without regard to case.
namespace ZVRequestHeaders
{
// Entries that are no headers but tell the reader what to do.
inline constexpr wchar_t Method[] = L"HTTPREQUEST_TYPE";
inline constexpr wchar_t RangeStart[] = L"RANGE_START";
inline constexpr wchar_t IfModifiedSince[] = L"If-Modified-Since";
inline constexpr wchar_t UseCache[] = L"USE_CACHE";
inline constexpr wchar_t SucceedOnError[] = L"SUCCEED_ON_ERROR";

// What separates the entries of a list that is handed on as one text.
inline constexpr wchar_t Separator[] = L"|";

// The value of the first line of a name, without white space around it; false when there is none.
bool FindValue(const ZVString& lines, const wchar_t* name, ZVString& value);
// The same in a list.
bool FindHeader(const ZVStringArray& headers, const wchar_t* name, ZVString& value);
// Adds an entry, or replaces the first that begins with its name. False, and nothing done, for a value that would become more
// than one line or entry.
bool SetEntry(ZVStringArray& headers, const wchar_t* name, const ZVString& value);

// The value of Method for a request with a body.
const wchar_t* GetMethodName(ZVRequestMethod method);
// The lines that describe a body, as one entry. detail is the content type of a general body and the boundary of a multipart one.
ZVString GetBodyHeaders(ZVRequestBodyKind kind, int64_t size, const ZVString& detail = ZVString());
}
