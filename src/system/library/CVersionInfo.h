#pragma once

#include "core/string/ZVString.h"

// The version that a file carries as a resource. Files of this platform carry none.
class CVersionInfo
{
public:
    // "0.0.0.0", or "0.0.0" in three parts, whatever the file is and whether it exists or not.
    static ZVString GetFileVersion(const ZVString& file, bool threeParts);
};
