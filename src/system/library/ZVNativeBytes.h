#pragma once

#include "core/string/ZVString.h"

#include <string>

// The bytes of a path that is in the style of the file system already, as that of a folder that the system or its environment
// gave. Other paths go through ZVNativePath.
//
// A name on a disk is any run of bytes, and the product's text carries neither bytes that are not UTF-8, nor characters above
// U+FFFF, nor a backslash that is part of a name. Each such byte of a name that the system gave stands in the text as the
// character U+DC00 plus the byte, which no valid UTF-8 decodes to, and becomes that byte again here. So a listed name always
// leads back to its own file and never to another.
class ZVNativeBytes
{
public:
    explicit ZVNativeBytes(const ZVString& path);

    // NUL-terminated; lives as long as the object.
    const char* Get() const { return m_bytes.c_str(); }
    operator const char*() const { return Get(); }
    const std::string& GetBytes() const { return m_bytes; }

    // The text of a path that the system gave; null is an empty path. One that a user gave may have backslashes for separators,
    // which then stay what they are.
    static ZVString ToText(const char* path, bool keepBackslashes = false);
    // The byte that a character of such a text carries, or 0 when it stands for itself.
    static unsigned char GetCarriedByte(wchar_t character);

private:
    std::string m_bytes;
};
