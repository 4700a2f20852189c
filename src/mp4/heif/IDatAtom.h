#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFieldVisitor.h"

#include <cstdint>
#include <vector>

// idat: the bytes of small items (ISO/IEC 14496-12, 8.11.11), which stay in the file.
class IDatAtom : public CAtom
{
public:
    static const CAtomClass Class;

    using CAtom::CAtom;

    void Fields(CFieldVisitor& visitor) { visitor.Range("data", m_data, CRangeEnd::MayBeCut); }

    // Where the bytes begin in the file, and how many the header says there are.
    uint64_t GetDataStart() const { return static_cast<uint64_t>(m_data.GetStart()); }
    uint64_t GetDataSize() const { return static_cast<uint64_t>(m_data.GetDeclaredCount()); }

    // Reads bytes of the body, whose offset counts from its start. False, with no bytes, if they are not all inside it and inside
    // the file, which is the one the atom was read from.
    bool ReadData(CAtomReader& reader, uint64_t offset, uint64_t size, std::vector<uint8_t>& bytes) const;

private:
    CAtomBytes m_data;
};

inline constexpr CAtomClass IDatAtom::Class = MakeAtomClass<IDatAtom>("IDatAtom");
