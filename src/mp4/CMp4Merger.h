#pragma once

#include "core/containers/ZVOwnedPtrArray.h"
#include "mp4/model/CAtom.h"

#include <cstdint>
#include <memory>

class CMOOVAtom;

// Makes one movie of those of two verified files, which both stay as they are. The second one's media are to become further data of
// one mdat atom of the first, in the order of their list. All that cannot be merged is thrown.
class CMp4Merger
{
public:
    // One of the files, which must outlive the merger.
    struct Side
    {
        const ZVOwnedPtrArray<CAtom>& RootAtoms;
        const CMOOVAtom& Movie;
        const CMDATList& MdatList;
    };

    CMp4Merger(const Side& first, const Side& second);

    // The merged movie for the first file, with the places that the media will have there. It is not verified.
    std::unique_ptr<CMOOVAtom> MergeMovies() const;
    // The mdat atom of the first file that is to take the data; null when neither file has any.
    CMDATAtom* GetTarget() const { return m_target; }

private:
    void CheckRootAtoms() const;
    ZVString FindFault(const CMOOVAtom& first, const CMOOVAtom& second) const;
    bool NeedsLongOffsets(const CMOOVAtom& first, const CMOOVAtom& second) const;
    void MoveIntoTarget(const CMOOVAtom& second) const;

    const Side m_first;
    const Side m_second;
    CMDATAtom* m_target = nullptr;
};
