#pragma once

#include "mp4/model/CContainerAtom.h"

// The units a second of two movies that are merged.
struct CTimescales
{
    uint32_t Own = 1;
    uint32_t Other = 1;
};

// An atom whose body begins with a version and flags. A body that is too short for them is kept as it is.
class CFullAtom : public CContainerAtom
{
public:
    using CContainerAtom::CContainerAtom;

    void Fields(CFieldVisitor& visitor)
    {
        if (!visitor.If(m_hasVersion, 4))
        {
            visitor.Rest("too short for a version", m_stub);
            return;
        }
        visitor.Field("version", m_version);
        visitor.Field("flags", m_flags, 3);
    }

    uint8_t GetVersion() const { return m_version; }
    uint32_t GetFlags() const { return m_flags; }
    void SetFlags(uint32_t flags) { m_flags = flags; }

protected:
    // Of an atom that is made, or whose numbers become wider.
    void SetVersion(uint8_t version) { m_version = version; }

    // Adds a duration that stands in a like atom of another movie. Where 32 bits are too few for the sum it raises the version.
    // With one that is not known, which is all ones, the sum is not known either. Throws when not even 64 bits are enough.
    void AddDuration(uint64_t& duration, const CFullAtom& other, uint64_t more, const CTimescales& scales);

    // The width of what has 32 bits in version 0 and 64 in all others.
    int32_t GetLongWidth() const { return m_version == 0 ? 4 : 8; }

private:
    uint64_t GetUnknownDuration() const { return m_version == 0 ? UINT32_MAX : UINT64_MAX; }

    bool m_hasVersion = true;
    uint8_t m_version = 0;
    uint32_t m_flags = 0;  // 24 bits
    CAtomBytes m_stub;
};
