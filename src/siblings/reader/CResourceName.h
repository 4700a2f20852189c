#pragma once

#include "core/string/ZVString.h"

#include <string>

// What the name of a resource says about how to reach it.
namespace CResourceName
{
enum class Kind
{
    None,   // an empty name, or an address whose scheme nothing here reads
    Local,  // a path, or an address that begins with "file://"
    HTTP,   // an address that begins with "http://" or "https://" or one of the product's names for them
};

// The case of a scheme does not count. A name with a "/" before its "://" is a path.
Kind GetKind(const ZVString& name);

// Drops a leading "file://", and then "localhost" if a "/" follows. True when the first was there.
bool CutFileScheme(ZVString& name);
// Replaces "%" and two hexadecimal digits by the byte they stand for. Other percent signs stay, and so does "%00".
std::string DecodePercent(const std::string& text);

// An HTTP address as it goes to the server: UTF-8, with the product's names for the two schemes replaced, and with blanks and
// bytes beyond ASCII after the host percent-escaped. Empty for an address with control characters.
std::string GetAddress(const ZVString& name);
// The address for a log line: without user and password, and without the query, which may hold keys.
std::string GetLoggedAddress(const std::string& address);
}
