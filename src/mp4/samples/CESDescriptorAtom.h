#pragma once

#include "mp4/model/CFullAtom.h"

#include <cstdint>
#include <optional>
#include <vector>

// What a descriptor says of a codec. What it does not say, or has no room for, is 0.
struct CStreamDescription
{
    // See CCodecNumber.h.
    int32_t ObjectType = 0;
    int32_t SampleSize = 0;  // bits
    int32_t SampleRate = 0;
    int32_t Channels = 0;
    // Bits a second.
    uint32_t AverageBitRate = 0;
    uint32_t MaximumBitRate = 0;
    // What a decoder needs.
    std::vector<uint8_t> RawConfig;
};

// An atom inside a sample entry that describes the codec. It is kept as it stands and taken apart when it is first asked.
class CESDescriptorAtom : public CFullAtom
{
public:
    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Rest("descriptor", m_body);
    }

    // What the atom says, which is taken apart by the first call.
    const CStreamDescription& GetDescription() const
    {
        if (!m_description.has_value())
            m_description = Parse();
        return *m_description;
    }

protected:
    // Takes the body apart. A damaged one is no failure: its description ends where it does.
    virtual CStreamDescription Parse() const = 0;
    const CAtomBytes& GetBody() const { return m_body; }

private:
    CAtomBytes m_body;
    mutable std::optional<CStreamDescription> m_description;
};
