#pragma once

#include "mp4/model/CContainerAtom.h"
#include "mp4/samples/CESDescriptorAtom.h"

#include <cstdint>

// One description of samples (ISO/IEC 14496-12, 8.5.2.2). An mp4s has no more than what all of them have; for that and other kinds
// that know nothing of picture or sound the accessors tell 0.
class CSampleEntryAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;

    void Fields(CFieldVisitor& visitor)
    {
        EntryFields(visitor);
        visitor.Children(*this);
    }

    // Stays as it is; throws unless the other one describes samples that the same decoder can go on with.
    void Append(CAtom& other) override;

    virtual int32_t GetWidth() const { return 0; }
    virtual int32_t GetHeight() const { return 0; }
    virtual int32_t GetChannels() const { return 0; }
    // Bits of one sample of one channel.
    virtual int32_t GetSampleSize() const { return 0; }
    virtual int32_t GetSampleRate() const { return 0; }
    // The child that describes the codec, or null.
    virtual const CESDescriptorAtom* GetDescriptor() const;
    // The number of the codec; see CCodecNumber.h. A descriptor decides, whatever it says; without one the type does.
    int32_t GetObjectType() const;

protected:
    void EntryFields(CFieldVisitor& visitor);
    // Throws unless the children and the place of the media are the same. The bit rates of btrt may be different.
    void CompareChildren(const CSampleEntryAtom& other) const;

private:
    uint16_t m_dataReferenceIndex = 0;
};

inline constexpr CAtomClass CSampleEntryAtom::Class = MakeAtomClass<CSampleEntryAtom>("CSampleEntryAtom");
