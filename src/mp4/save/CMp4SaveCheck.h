#pragma once

#include "core/containers/ZVOwnedPtrArray.h"
#include "mp4/model/CAtom.h"

class CMp4Layout;

// What keeps a film from being written anew, because something in it could be lost. Each of these throws a message that tells why.
namespace CMp4SaveCheck
{
// Ties each iloc to the mdat that its items lie in; there must be one that all of them lie in.
void TieItems(const ZVOwnedPtrArray<CAtom>& roots);
// Whether all places are known that would have to be moved. The movie is verified, and the items are tied.
void CheckPlaces(const ZVOwnedPtrArray<CAtom>& roots);
// A header of an mdat that is longer than it needs to be becomes shorter when it is written, which moves the data. Here it keeps its
// length if something in the file has places that cannot be moved.
void KeepLongHeaders(const ZVOwnedPtrArray<CAtom>& roots);
// Whether all places can be moved to where the layout has their data.
void CheckMove(const ZVOwnedPtrArray<CAtom>& roots, const CMp4Layout& layout);
}
