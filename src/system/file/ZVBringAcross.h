#pragma once

#include "core/string/ZVString.h"

class ZVTransferPlace;

// Brings a whole copy of a file or folder to a place on another device, with owner, mode and times. The source keeps its name, so
// that it is the caller who deletes it, once the copy has its own. Failing is logged as that of ZVFileSystem::MoveFile, and so is
// a source that could not be deleted in the end: nothing is copied then.
bool ZVBringAcross(const ZVString& from, const ZVTransferPlace& place);
