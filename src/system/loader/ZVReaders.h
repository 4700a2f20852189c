#pragma once

#include "contracts/IZVReader.h"
#include "contracts/ZVReleasePointer.h"
#include "core/string/ZVString.h"

// Owns a reader of the reader library.
using ZVReaderPointer = ZVReleasePointer<IZVReader>;

// The reader library, which the first call loads.
namespace ZVReaders
{
// Makes a closed reader for a path or an address. Null without the library, or when it has no reader for such a name.
ZVReaderPointer CreateGeneric(const ZVString& name);
}
