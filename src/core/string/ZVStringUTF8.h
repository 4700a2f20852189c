#pragma once

#include "core/string/ZVString.h"
#include "core/string/ZVUTF8.h"

#include <memory>

// A text in UTF-8 for the duration of a call: the form in which every path and name goes to the system library.
class ZVStringUTF8
{
public:
    explicit ZVStringUTF8(const ZVString& text) : m_bytes(text.GetUTF8()) {}
    // A null text gives a null pointer.
    explicit ZVStringUTF8(const wchar_t* text) : m_bytes(ZVUTF8::EncodeToNewArray(text, text == nullptr ? 0 : wcslen(text))) {}

    operator const char*() const { return m_bytes.get(); }
    const char* Get() const { return m_bytes.get(); }

private:
    std::unique_ptr<char[]> m_bytes;
};
