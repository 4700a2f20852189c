#pragma once

#include <cstdint>

// What the value of a format record holds. The numbers are part of the contract between the libraries.
enum class ZVFormatCode : int32_t
{
    None = 0,      // an unused place
    UTF8Text = 1,  // pointer to a NUL-terminated UTF-8 text
    WideText = 2,  // pointer to a NUL-terminated wide text
    String = 3,    // pointer to a ZVString object, not to its characters
    Integer = 4,   // a 64-bit integer
    Double = 5,    // the 64 bits of a double
};

// One typed argument of a format, in the form in which it crosses a library boundary. A record owns nothing: what it points to
// must live until the call that takes the record returns.
struct ZVFormatRecord
{
    ZVFormatCode Code = ZVFormatCode::None;
    int64_t Value = 0;
};
