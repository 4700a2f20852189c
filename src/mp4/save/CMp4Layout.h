#pragma once

#include "core/containers/ZVOwnedPtrArray.h"
#include "mp4/movie/CMDATAtom.h"

#include <cstdint>
#include <unordered_map>

// Where the atoms of a file will lie when it is written. It works out the sizes of all atoms anew.
class CMp4Layout
{
public:
    explicit CMp4Layout(const ZVOwnedPtrArray<CAtom>& roots);

    int64_t GetFileSize() const { return m_fileSize; }
    // Where the data of an mdat of the top level will begin; those of others stay.
    uint64_t GetDataStart(const CMDATAtom& mdat) const;
    // Whether any data will begin at another place.
    bool MovesData() const;

private:
    friend class CMovedOffsets;

    int64_t m_fileSize = 0;
    std::unordered_map<CMDATAtom*, uint64_t> m_starts;
};

// While it lives, all places in the tree are those of the file that is written. After it they are what they were before, also when
// it cannot be made.
class CMovedOffsets
{
public:
    CMovedOffsets(const ZVOwnedPtrArray<CAtom>& roots, const CMp4Layout& layout);
    CMovedOffsets(const CMovedOffsets&) = delete;
    CMovedOffsets& operator=(const CMovedOffsets&) = delete;
    ~CMovedOffsets();

private:
    void MoveBack();

    const ZVOwnedPtrArray<CAtom>& m_roots;
    const CMp4Layout& m_layout;
    bool m_isMoved = false;
};
