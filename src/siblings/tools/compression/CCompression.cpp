#include "siblings/tools/compression/CCompression.h"

#include "siblings/tools/compression/CGzipDecoder.h"

#include <new>

IZVDecoder* CCompression::CreateGzipDecoder(const void* bytes, int64_t count)
{
    const CZLibrary* const library = CZLibrary::Get();
    return library == nullptr ? nullptr : new (std::nothrow) CGzipDecoder(*library, bytes, count);
}
