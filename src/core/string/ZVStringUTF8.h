#pragma once

#include "core/string/ZVString.h"
#include "core/string/ZVUTF8.h"

// A text in UTF-8 for the time of a call: the form in which the system library gets every path and name.
class ZVStringUTF8
{
public:
    explicit ZVStringUTF8(const ZVString& text) : m_bytes(text.GetUTF8()) {}
    // A null text gives a null pointer.
    explicit ZVStringUTF8(const wchar_t* text) : m_bytes(ZVUTF8::EncodeToNewArray(text, text == nullptr ? 0 : wcslen(text))) {}
    ~ZVStringUTF8() { delete[] m_bytes; }

    ZVStringUTF8(const ZVStringUTF8&) = delete;
    ZVStringUTF8& operator=(const ZVStringUTF8&) = delete;

    operator const char*() const { return m_bytes; }
    const char* Get() const { return m_bytes; }

private:
    char* m_bytes;
};
