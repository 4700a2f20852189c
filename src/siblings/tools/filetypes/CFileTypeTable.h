#pragma once

#include "contracts/IZVFileTypes.h"

#include <cstdint>

// How files of a type are played or shown.
enum class CMediaKind : uint8_t
{
    Video,
    Audio,
    Image,
    Playlist,
    Data,
};

// One type of file. Texts are arrays, so the table needs no work when the library is loaded.
struct CFileType
{
    wchar_t Extension[9];
    CMediaKind Kind;
    int8_t Class;             // 0 if there is none
    wchar_t ContentType[36];  // empty if there is none
};

// The types that the product knows.
namespace CFileTypeTable
{
// The type of an extension without the dot, in upper or lower case; null if it is not known.
const CFileType* Find(const wchar_t* extension);
}
