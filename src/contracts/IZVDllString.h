#pragma once

#include <cstdint>

// A string of one library that another library may read and set. The characters stay with the side that owns the string, so
// neither side frees what the other allocated.
class IZVDllString
{
public:
    // The characters, NUL-terminated; valid until the string changes.
    virtual const wchar_t* GetString() = 0;
    // Replaces the text by the first length characters; a negative length means up to the NUL.
    virtual void SetString(const wchar_t* text, int32_t length) = 0;
    virtual void Empty() = 0;
    // Returns a writable buffer for length characters and a terminator, valid until ReleaseBuffer.
    virtual wchar_t* GetBuffer(int32_t length, bool keepContents) = 0;
    // Ends the use of the buffer and sets the length; -1 measures up to the NUL.
    virtual void ReleaseBuffer(int32_t length) = 0;

protected:
    ~IZVDllString() = default;
};
