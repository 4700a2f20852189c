#pragma once

#include "core/string/ZVString.h"

// The version that is stored in a file as a resource. On this platform files have no resources.
class CVersionInfo
{
public:
    // "0.0.0.0", or "0.0.0" in three parts, for every file, whether it exists or not.
    static ZVString GetFileVersion(const ZVString& file, bool threeParts);
};
