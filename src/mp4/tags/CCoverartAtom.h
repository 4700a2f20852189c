#pragma once

#include "mp4/tags/CTagAtomBase.h"

class ZVFilename;

// covr: the picture of the cover. It has no text.
class CCoverartAtom : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;
    using CTagAtomBase::GetValue;

    // Writes the picture to a file, or without a name to a new temporary one, which filename then names. False if there is no
    // picture or if it could not be written.
    bool GetValue(ZVFilename& filename) const;
    // Takes the path of a picture.
    void SetValue(const ZVString& value) override { SetPicture(value); }
};
