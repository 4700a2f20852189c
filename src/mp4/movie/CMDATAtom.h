#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFieldVisitor.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

// mdat: the media themselves, which stay in the file. The last one of a file may be cut.
class CMDATAtom : public CAtom
{
public:
    static const CAtomClass Class;

    using CAtom::CAtom;

    void Fields(CFieldVisitor& visitor)
    {
        visitor.Range("data", m_data, CRangeEnd::MayBeCut);
        for (CAtomBytes& data : m_appended)
            visitor.Range("appended data", data, CRangeEnd::MayBeCut);
    }
    // Adds the data of another atom, which stay in its file.
    void Append(CAtom& other) override;
    // Drops appended data until that many pieces are left.
    void DropAppended(size_t count) { m_appended.resize(count); }
    size_t GetAppendedCount() const { return m_appended.size(); }

    // Where the data begin in the file that the offsets of the tree are about: the one that was read, or the one that is written.
    uint64_t GetDataStart() const { return m_writtenStart.value_or(static_cast<uint64_t>(m_data.GetStart())); }
    // While the file is written, the data begin at another place.
    void SetWrittenStart(uint64_t start) { m_writtenStart = start; }
    void ForgetWrittenStart() { m_writtenStart.reset(); }
    // How many bytes of data the header says there are, with what was appended.
    uint64_t GetDataSize() const;
    // How many are really there: fewer in a file that is cut.
    int64_t GetPresentSize() const;
    // A copy of some of them, which must all be there, in whatever files they are.
    std::vector<uint8_t> GetPart(int64_t start, int64_t count) const;
    bool IsCut() const { return m_data.GetCount() < m_data.GetDeclaredCount(); }

private:
    CAtomBytes m_data;
    std::optional<uint64_t> m_writtenStart;
    std::vector<CAtomBytes> m_appended;  // of other files, behind the own
};

inline constexpr CAtomClass CMDATAtom::Class = MakeAtomClass<CMDATAtom>("CMDATAtom");
