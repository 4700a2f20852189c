#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFieldVisitor.h"

#include <cstdint>
#include <span>
#include <vector>

// idat: the bytes of small items (ISO/IEC 14496-12, 8.11.11). They stay in the file until new ones take their place.
class IDatAtom : public CAtom
{
public:
    static const CAtomClass Class;

    using CAtom::CAtom;

    void Fields(CFieldVisitor& visitor) { visitor.Range("data", m_data, CRangeEnd::MayBeCut); }

    // Throws unless as many bytes are written as the size says that there are.
    void Write(CAtomWriter& writer) override;

    // How many bytes there are: of a file that is cut those that are left.
    uint64_t GetDataSize() const { return static_cast<uint64_t>(m_data.GetCount()); }
    // Puts bytes in the place of those that are there.
    void SetData(std::span<const uint8_t> bytes) { m_data = CAtomBytes(bytes); }
    // Reads bytes of the body, whose offset counts from its start. False, with no bytes, if they are not all inside it and inside
    // the file, which is the one the atom was read from.
    bool ReadData(CAtomReader& reader, uint64_t offset, uint64_t size, std::vector<uint8_t>& bytes) const;

private:
    CAtomBytes m_data;
};

inline constexpr CAtomClass IDatAtom::Class = MakeAtomClass<IDatAtom>("IDatAtom");
