#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// Where the parts of a path begin and end: positions in its text, in ascending order.
struct ZVPathLayout
{
    int32_t DriveEnd = 0;   // where the directory starts
    int32_t NameStart = 0;  // where the directory ends, after its separator
    int32_t NameEnd = 0;
    int32_t ExtensionStart = 0;   // after the "."; the end of the name if there is no extension
    int32_t End = 0;              // of the extension; of a URL where its query or fragment starts
    bool HasDriveLetter = false;  // whether the drive is a character and ":"

    // The layout of a local path, or of a URL when the text has "://". Both kinds of separators count.
    static ZVPathLayout Of(const ZVString& path);

    // The path of a folder with a separator at its end: the one that it has, or a "/".
    static ZVString WithClosingSlash(ZVString path);
    // The folder that a path in file system style is in, with its "/": "./" for a name alone.
    static ZVString FolderOf(const ZVString& path);

    static bool IsSeparator(wchar_t character) { return character == L'/' || character == L'\\'; }
};
