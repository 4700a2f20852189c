#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFieldVisitor.h"

#include <cstdint>
#include <optional>

// mdat: the media themselves, which stay in the file. The last one of a file may be cut.
class CMDATAtom : public CAtom
{
public:
    static const CAtomClass Class;

    using CAtom::CAtom;

    void Fields(CFieldVisitor& visitor) { visitor.Range("data", m_data, CRangeEnd::MayBeCut); }

    // Where the data begin in the file that the offsets of the tree are about: the one that was read, or the one that is written.
    uint64_t GetDataStart() const { return m_writtenStart.value_or(static_cast<uint64_t>(m_data.GetStart())); }
    // While the file is written, the data begin at another place.
    void SetWrittenStart(uint64_t start) { m_writtenStart = start; }
    void ForgetWrittenStart() { m_writtenStart.reset(); }
    // How many bytes of data the header says there are.
    uint64_t GetDataSize() const { return static_cast<uint64_t>(m_data.GetDeclaredCount()); }

    // The data that are really there: fewer in a file that is cut.
    const CAtomBytes& GetData() const { return m_data; }

private:
    CAtomBytes m_data;
    std::optional<uint64_t> m_writtenStart;
};

inline constexpr CAtomClass CMDATAtom::Class = MakeAtomClass<CMDATAtom>("CMDATAtom");
