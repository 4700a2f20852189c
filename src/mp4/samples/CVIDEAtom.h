#pragma once

#include "mp4/samples/CSampleEntryAtom.h"

#include <cstdint>

// A description of video samples (ISO/IEC 14496-12, 12.1.3).
class CVIDEAtom : public CSampleEntryAtom
{
public:
    static const CAtomClass Class;

    using CSampleEntryAtom::CSampleEntryAtom;

    void Fields(CFieldVisitor& visitor);
    void Append(CAtom& other) override;

    int32_t GetWidth() const override { return m_width; }
    int32_t GetHeight() const override { return m_height; }

private:
    // Version, revision, vendor, temporal and spatial quality.
    static constexpr int64_t VendorSize = 16;
    static constexpr int64_t CompressorNameSize = 32;

    CAtomBytes m_vendor;
    uint16_t m_width = 0;
    uint16_t m_height = 0;
    uint32_t m_horizontalResolution = 0;
    uint32_t m_verticalResolution = 0;
    uint16_t m_frameCount = 0;
    CAtomBytes m_compressorName;
    uint16_t m_depth = 0;
    uint16_t m_colorTable = 0;
    CAtomBytes m_end;  // fewer bytes than an atom has
};

inline constexpr CAtomClass CVIDEAtom::Class = MakeAtomClass<CVIDEAtom>("CVIDEAtom");
