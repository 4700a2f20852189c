#pragma once

#include "core/string/ZVString.h"

class IZVFileLoaderProgress;
class ZVBuffer;
class ZVStringArray;

// Loads the bytes of a file or an internet resource as ZVString::LoadFromFile loads its text. A null or empty path empties the
// buffer and is true.
bool ZVLoadFile(const wchar_t* path, ZVBuffer& buffer, IZVFileLoaderProgress* progress = nullptr,
                const ZVStringArray* requestHeaders = nullptr);
