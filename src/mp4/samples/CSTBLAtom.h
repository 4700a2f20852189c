#pragma once

#include "mp4/model/CContainerAtom.h"
#include "mp4/model/CFoundAtom.h"
#include "mp4/samples/CSTSDAtom.h"

#include <cstdint>

// Where a sample lies in the file.
struct CSamplePlace
{
    bool IsFound = false;
    uint64_t Offset = 0;
    uint64_t Size = 0;
};

// stbl: the tables of a track's samples (ISO/IEC 14496-12, 8.5.1). What its accessors tell was found by Verify.
class CSTBLAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    // Finds the tables, which must be there, and in which of the file's mdat atoms each chunk lies.
    void Verify(const CMDATList& mdatList, bool checkOverlap) override;

    // 'v', 'a' or 'o', as the descriptions say.
    char GetMediaType() const { return m_descriptions == nullptr ? 'o' : m_descriptions->GetMediaType(); }
    const CSTSDAtom* GetDescriptions() const { return m_descriptions; }
    // As many as the table of sizes and the chunks agree on.
    uint32_t GetSampleCount() const { return m_sampleCount; }
    // Samples count from 0.
    CSamplePlace FindSample(uint32_t sample) const;

private:
    CFoundAtom<CSTSDAtom> m_descriptions;
    uint32_t m_sampleCount = 0;
};

inline constexpr CAtomClass CSTBLAtom::Class = MakeAtomClass<CSTBLAtom>("CSTBLAtom");
