#pragma once

#include "core/string/ZVString.h"

#include <cstdint>
#include <vector>

// A picture with the type of data that a tag has for its format.
struct CPictureFile
{
    uint32_t DataType;
    std::vector<uint8_t> Bytes;
};

// Reads a picture of JPEG, PNG or BMP, whatever its name says. Throws a message for what is none of these, is larger than 64 MiB
// or cannot be read.
CPictureFile ReadPictureFile(const ZVString& path);
