#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// Where the parts of a path begin and end: positions in its text, each at or behind the one before.
struct ZVPathLayout
{
    int32_t DriveEnd = 0;   // the start of the directory
    int32_t NameStart = 0;  // the end of the directory, behind its separator
    int32_t NameEnd = 0;
    int32_t ExtensionStart = 0;  // behind the "."; the end of the name when there is none
    int32_t End = 0;             // of the extension; of a URL in front of its query and fragment

    // The layout of a local path, or of a URL when the text has "://". Both kinds of separators count.
    static ZVPathLayout Of(const ZVString& path);

    // The path of a folder with a separator at its end, one that it has or a "/".
    static ZVString WithClosingSlash(ZVString path);

    static bool IsSeparator(wchar_t character) { return character == L'/' || character == L'\\'; }
    static bool HasDriveLetter(const ZVString& path);
};
