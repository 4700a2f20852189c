#pragma once

#include "core/string/ZVString.h"

#include <string>

// The bytes of a path that is in the style of the file system already, as that of a folder that the system or its environment
// gave. Other paths go through ZVNativePath.
//
// A name on a disk is any run of bytes. The product's text can carry neither bytes that are not UTF-8, nor characters above
// U+FFFF, nor a backslash that is part of a name. So each such byte of a name that the system gave stands in the text as the
// character U+DC00 plus the byte, which no valid UTF-8 decodes to, and becomes that byte again here. A listed name therefore
// always leads back to its own file and never to another.
class ZVNativeBytes
{
public:
    explicit ZVNativeBytes(const ZVString& path);

    // NUL-terminated; valid as long as the object lives.
    const char* Get() const { return m_bytes.c_str(); }
    operator const char*() const { return Get(); }
    const std::string& GetBytes() const { return m_bytes; }

    // The text of a path that the system gave. Null is an empty path.
    static ZVString ToText(const char* path);
    // The same for a path that a user gave: its backslashes may be separators and stay characters of their own.
    static ZVString UserPathToText(const char* path);
    // The byte that a character of such a text carries, or 0 if it stands for itself.
    static unsigned char GetCarriedByte(wchar_t character);

private:
    std::string m_bytes;
};
