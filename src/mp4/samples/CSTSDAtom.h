#pragma once

#include "mp4/model/CFoundAtom.h"
#include "mp4/model/CFullAtom.h"
#include "mp4/samples/CSampleEntryAtom.h"

#include <cstdint>

// stsd: what kind of samples a track has (ISO/IEC 14496-12, 8.5.2). What its accessors tell was found by Verify, and is 0 where the
// entry that counts does not have it.
class CSTSDAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Field("entry count", m_count);
        visitor.Children(*this);
    }

    // Settles which entry counts: the first of a known type. Throws when there are known ones of sound and of video.
    void Verify(const CMDATList& mdatList, bool checkOverlap) override;

    // Stays as it is; throws unless the other one describes the same in the same order.
    void Append(CAtom& other) override;

    // 'v', 'a' or 'o'.
    char GetMediaType() const { return m_mediaType; }
    int32_t GetWidth() const;
    int32_t GetHeight() const;
    int32_t GetChannels() const;
    int32_t GetSampleSize() const;
    int32_t GetSampleRate() const;
    // The number of the codec; see CCodecNumber.h.
    int32_t GetObjectType() const;
    // All that the descriptor of the entry says, or null without one.
    const CStreamDescription* GetDescription() const;
    // Bits a second.
    uint32_t GetAverageBitRate() const;

private:
    uint32_t m_count = 0;
    char m_mediaType = 'o';
    CFoundAtom<CSampleEntryAtom> m_entry;
};

inline constexpr CAtomClass CSTSDAtom::Class = MakeAtomClass<CSTSDAtom>("CSTSDAtom");
