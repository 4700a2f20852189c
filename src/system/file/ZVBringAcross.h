#pragma once

#include "core/string/ZVString.h"

class ZVTransferPlace;

// Brings a whole copy of a file or folder to a place on another device, with the owner, the mode and the times that the device
// can hold. The source keeps its name: the caller deletes it once the copy has its own. A failure is logged as one of
// ZVFileSystem::MoveFile. Nothing is copied if the folder of the source does not let this user delete in it.
bool ZVBringAcross(const ZVString& from, const ZVTransferPlace& place);
