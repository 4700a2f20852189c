#include "mp4/samples/CSOUNAtom.h"

#include "mp4/model/Exception.h"
#include "mp4/samples/SoundExtensions.h"

#include <algorithm>
#include <tuple>

void CSOUNAtom::SoundFields(CFieldVisitor& visitor)
{
    EntryFields(visitor);
    visitor.Field("version", m_version);
    visitor.Field("revision", m_revision);
    visitor.Field("vendor", m_vendor);
    visitor.Field("channels", m_channels);
    visitor.Field("sample size", m_sampleSize);
    visitor.Field("compression id", m_compressionID);
    visitor.Field("packet size", m_packetSize);
    visitor.Field("sample rate", m_sampleRate);
    visitor.Field("sample rate fraction", m_sampleRateFraction);
}

void CSOUNAtom::EndFields(CFieldVisitor& visitor)
{
    visitor.Children(*this);
    visitor.Rest("end", m_end);
}

const CESDescriptorAtom* CSOUNAtom::GetDescriptor() const
{
    if (const CESDescriptorAtom* const own = CSampleEntryAtom::GetDescriptor())
        return own;
    // Inside an entry of another type it is not understood.
    const CAtom* const alac = GetFirstChild(FourCC("alac"));
    if (alac != nullptr && !alac->IsOpaque())
        return static_cast<const CESDescriptorAtom*>(alac);
    const auto* const wave = static_cast<const WAVEAtom*>(GetFirstChild(FourCC("wave")));
    return wave == nullptr ? nullptr : static_cast<const CESDescriptorAtom*>(wave->GetFirstChild(FourCC("esds")));
}

int32_t CSOUNAtom::Prefer(int32_t CStreamDescription::*described, uint16_t own) const
{
    const CESDescriptorAtom* const descriptor = GetDescriptor();
    const int32_t value = descriptor == nullptr ? 0 : descriptor->GetDescription().*described;
    return value != 0 ? value : own;
}

int32_t CSOUNAtom::GetChannels() const
{
    return Prefer(&CStreamDescription::Channels, m_channels);
}

int32_t CSOUNAtom::GetSampleSize() const
{
    return Prefer(&CStreamDescription::SampleSize, m_sampleSize);
}

int32_t CSOUNAtom::GetSampleRate() const
{
    return Prefer(&CStreamDescription::SampleRate, m_sampleRate);
}

void CSOUNAtomGeneral::Fields(CFieldVisitor& visitor)
{
    SoundFields(visitor);
    if (GetVersion() != 0)
    {
        visitor.Field("samples per packet", m_samplesPerPacket);
        visitor.Field("bytes per packet", m_bytesPerPacket);
        visitor.Field("bytes per frame", m_bytesPerFrame);
        visitor.Field("bytes per sample", m_bytesPerSample);
    }
    EndFields(visitor);
}

void CSWOTAtom::Fields(CFieldVisitor& visitor)
{
    SoundFields(visitor);
    if (visitor.If(m_hasPacketFields, PacketFieldsSize))
        visitor.Bytes("samples and bytes per packet", PacketFieldsSize, m_packetFields);
    EndFields(visitor);
}

void CSOUNAtom::Append(CAtom& other)
{
    if (GetType() != other.GetType())
        ThrowException(L"Sound tracks have different types");
    const auto& second = static_cast<const CSOUNAtom&>(other);
    if (GetChannels() != second.GetChannels())
        ThrowException(L"Sound tracks have different number of channels");
    if (GetSampleSize() != second.GetSampleSize())
        ThrowException(L"Sound tracks have different sample sizes");
    if (GetSampleRate() != second.GetSampleRate())
        ThrowException(L"Sound tracks have different sample rates");
    if (m_version != second.m_version || m_compressionID != second.m_compressionID || !HasSamePackets(second))
        ThrowException(L"Sound tracks have different encodings");
    CompareChildren(second);
}

bool CSOUNAtomGeneral::HasSamePackets(const CSOUNAtom& other) const
{
    const auto& second = static_cast<const CSOUNAtomGeneral&>(other);
    return std::tie(m_samplesPerPacket, m_bytesPerPacket, m_bytesPerFrame, m_bytesPerSample) ==
           std::tie(second.m_samplesPerPacket, second.m_bytesPerPacket, second.m_bytesPerFrame, second.m_bytesPerSample);
}

bool CSWOTAtom::HasSamePackets(const CSOUNAtom& other) const
{
    return std::ranges::equal(m_packetFields.View(), static_cast<const CSWOTAtom&>(other).m_packetFields.View());
}
