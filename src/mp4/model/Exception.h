#pragma once

#include "core/string/ZVString.h"

// What ends the reading of a file: a message. It is made with new and thrown as a pointer, and whoever catches it deletes it.
class Exception
{
public:
    explicit Exception(const ZVString& message) : Message(message) {}

    ZVString Message;
};

// The message of a file that ends too early. What was read of such a file is kept.
inline constexpr wchar_t ReadPastEnd[] = L"Read past EOF";

// Throws a message with arguments as ZVFormat takes them.
template <class... Arguments>
[[noreturn]] void ThrowException(const wchar_t* format, const Arguments&... arguments)
{
    throw new Exception(ZVFormat(format, arguments...));
}
