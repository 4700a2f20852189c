#pragma once

#include "core/string/ZVString.h"

class IZVFileLoaderProgress;
class ZVBuffer;
class ZVStringArray;

// Loads the bytes of a file or an internet resource, as ZVString::LoadFromFile loads its text. With a null or empty path the
// buffer is emptied and the result is true.
bool ZVLoadFile(const wchar_t* path, ZVBuffer& buffer, IZVFileLoaderProgress* progress = nullptr,
                const ZVStringArray* requestHeaders = nullptr);
