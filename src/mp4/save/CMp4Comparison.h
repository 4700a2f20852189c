#pragma once

#include "core/containers/ZVOwnedPtrArray.h"
#include "mp4/model/CAtom.h"

// Compares a film with one that was written of it, and throws a message if they are not the same: each chunk and each item must
// have its place in the data of the same mdat, and each mdat must have the same size and the same bytes at both ends. Both are
// verified and their items are tied.
void CompareFilms(const ZVOwnedPtrArray<CAtom>& film, const ZVOwnedPtrArray<CAtom>& written);
