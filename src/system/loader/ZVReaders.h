#pragma once

#include "contracts/IZVReader.h"
#include "contracts/ZVReleasePointer.h"
#include "core/string/ZVString.h"

// A reader of the reader library with its owner.
using ZVReaderPointer = ZVReleasePointer<IZVReader>;

// The reader library, which the first call loads.
namespace ZVReaders
{
// A closed reader for a path or an address; null without the library, or when it has none for such a name.
ZVReaderPointer CreateGeneric(const ZVString& name);
}
