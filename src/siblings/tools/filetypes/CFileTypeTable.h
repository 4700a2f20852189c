#pragma once

#include "contracts/IZVFileTypes.h"

#include <cstdint>

// What a type of file is played or shown as.
enum class CMediaKind : uint8_t
{
    Video,
    Audio,
    Image,
    Playlist,
    Data,
};

// One type of file. Texts are arrays, so that the table needs no work when the library is loaded.
struct CFileType
{
    wchar_t Extension[6];
    CMediaKind Kind;
    int8_t Class;             // 0 for none
    wchar_t ContentType[36];  // empty when there is none
};

// The types that the product knows.
namespace CFileTypeTable
{
// The type of an extension without its dot, in any case; null for one that is not known.
const CFileType* Find(const wchar_t* extension);
}
