#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFieldVisitor.h"

// mdat: the media themselves, which stay in the file. The last one of a file may be cut.
class CMDATAtom : public CAtom
{
public:
    static const CAtomClass Class;

    using CAtom::CAtom;

    void Fields(CFieldVisitor& visitor) { visitor.Range("data", m_data, CRangeEnd::MayBeCut); }

    // Where the data begin in the file.
    uint64_t GetDataStart() const { return static_cast<uint64_t>(m_data.GetStart()); }
    // How many bytes of data the header says there are.
    uint64_t GetDataSize() const { return static_cast<uint64_t>(m_data.GetDeclaredCount()); }

private:
    CAtomBytes m_data;
};

inline constexpr CAtomClass CMDATAtom::Class = MakeAtomClass<CMDATAtom>("CMDATAtom");
