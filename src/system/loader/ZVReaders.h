#pragma once

#include "contracts/IZVReader.h"
#include "core/string/ZVString.h"

#include <memory>

// A reader of the reader library with its owner.
struct ZVReaderRelease
{
    void operator()(IZVReader* reader) const { reader->Release(); }
};

using ZVReaderPointer = std::unique_ptr<IZVReader, ZVReaderRelease>;

// The reader library, which the first call loads.
namespace ZVReaders
{
// A closed reader for a path or an address; null without the library, or when it has none for such a name.
ZVReaderPointer CreateGeneric(const ZVString& name);
}
