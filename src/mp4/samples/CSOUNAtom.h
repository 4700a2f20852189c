#pragma once

#include "mp4/samples/CSampleEntryAtom.h"

#include <cstdint>

// A description of sound samples (ISO/IEC 14496-12, 12.2.3). A descriptor that tells channels, sample size or sample rate knows
// better than the entry itself, which has only 16 bits for each.
class CSOUNAtom : public CSampleEntryAtom
{
public:
    using CSampleEntryAtom::CSampleEntryAtom;

    void Append(CAtom& other) override;

    int32_t GetChannels() const override;
    int32_t GetSampleSize() const override;
    int32_t GetSampleRate() const override;
    // An esds, an alac, or the esds that QuickTime puts into a wave.
    const CESDescriptorAtom* GetDescriptor() const override;

protected:
    void SoundFields(CFieldVisitor& visitor);
    void EndFields(CFieldVisitor& visitor);

    uint16_t GetVersion() const { return m_version; }
    // Whether an entry of the same type has its samples in the same packets.
    virtual bool HasSamePackets(const CSOUNAtom& other) const = 0;

private:
    // What the descriptor says, or what the entry says if that is nothing.
    int32_t Prefer(int32_t CStreamDescription::*described, uint16_t own) const;

    uint16_t m_version = 0;
    uint16_t m_revision = 0;
    uint32_t m_vendor = 0;
    uint16_t m_channels = 0;
    uint16_t m_sampleSize = 0;
    uint16_t m_compressionID = 0;
    uint16_t m_packetSize = 0;
    uint16_t m_sampleRate = 0;
    uint16_t m_sampleRateFraction = 0;
    CAtomBytes m_end;  // fewer bytes than an atom has
};

// Compressed sound, whose version tells whether QuickTime's fields follow.
class CSOUNAtomGeneral : public CSOUNAtom
{
public:
    static const CAtomClass Class;

    using CSOUNAtom::CSOUNAtom;

    void Fields(CFieldVisitor& visitor);

protected:
    bool HasSamePackets(const CSOUNAtom& other) const override;

private:
    uint32_t m_samplesPerPacket = 0;
    uint32_t m_bytesPerPacket = 0;
    uint32_t m_bytesPerFrame = 0;
    uint32_t m_bytesPerSample = 0;
};

// Plain sound. Files have QuickTime's fields here whatever the version says, so there being room for them decides.
class CSWOTAtom : public CSOUNAtom
{
public:
    static const CAtomClass Class;

    using CSOUNAtom::CSOUNAtom;

    void Fields(CFieldVisitor& visitor);

protected:
    bool HasSamePackets(const CSOUNAtom& other) const override;

private:
    static constexpr int64_t PacketFieldsSize = 16;

    bool m_hasPacketFields = false;
    CAtomBytes m_packetFields;
};

inline constexpr CAtomClass CSOUNAtomGeneral::Class = MakeAtomClass<CSOUNAtomGeneral>("CSOUNAtomGeneral");
inline constexpr CAtomClass CSWOTAtom::Class = MakeAtomClass<CSWOTAtom>("CSWOTAtom");
