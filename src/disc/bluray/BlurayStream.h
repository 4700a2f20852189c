#pragma once

#include "core/containers/ZVOwnedPtrArray.h"
#include "core/string/ZVString.h"
#include "disc/bluray/BlurayDescriptor.h"

#include <cstdint>
#include <memory>

// A stream of a disc's title, as the disc describes it. Each class adds its operations after those of its base, and their order
// is fixed.
class BlurayStream
{
public:
    BlurayStream() = default;
    // A deep copy of what all streams have.
    BlurayStream(const BlurayStream& other);
    BlurayStream& operator=(const BlurayStream&) = delete;
    virtual ~BlurayStream() = default;

    // The short name of the codec and the PID: "AC3 (4352)".
    virtual ZVString StreamLabel() const;
    // Empty for every kind; a sound has AudioDescription.
    virtual ZVString Description() const;

    // The names of the codec: "Dolby Digital Audio", "DD AC3", "AC3".
    ZVString CodecName() const;
    ZVString CodecAltName() const;
    ZVString CodecShortName() const;
    // The language as the disc has it: three letters of ISO 639-2, or empty.
    const ZVString& Language() const { return LanguageCode; }

    ZVString LanguageCode;
    ZVString LanguageName;
    uint16_t PID = 0;
    uint32_t CodingType = 0;  // see BlurayCodes
    ZVOwnedPtrArray<BlurayDescriptor> Descriptors;
    int64_t BitRate = 0;  // in bits per second; no disc tells it
    bool VariableRate = false;
    bool Initialized = false;
    bool Hidden = false;
    // Counters of readers that go through the streams themselves, which this one does not.
    uint32_t PacketCounts[2] = {};
    double PacketSeconds = 0.0;
    uint32_t CaptionCount = 0;

protected:
    // True for a sound with surround channels in the middle of the back.
    virtual bool IsExtended() const { return false; }
};

class BlurayVideoStream : public BlurayStream
{
public:
    // A deep copy.
    virtual std::unique_ptr<BlurayVideoStream> Clone() const;

    // "1080p / 23.976 fps / 16:9".
    ZVString VideoDescription() const;

    int32_t Height = 0;  // in lines
    bool Interlaced = false;
    int32_t FrameRateNumerator = 0;
    int32_t FrameRateDenominator = 0;
    uint32_t AspectCode = 0;
    ZVString EncodingProfile;
    uint32_t FrameRateCode = 0;
    uint32_t VideoFormatCode = 0;
};

class BlurayAudioStream : public BlurayStream
{
public:
    BlurayAudioStream() = default;
    BlurayAudioStream(const BlurayAudioStream& other);

    // "5.1 / 48 kHz / 640 kbps".
    virtual ZVString AudioDescription() const;
    // A deep copy, with the core.
    virtual std::unique_ptr<BlurayAudioStream> Clone() const;

    // "5.1", "5.1-EX"; empty when the channels are not known.
    ZVString ChannelDescription() const;

    int32_t SampleRate = 0;  // in Hz
    int32_t ChannelCount = 0;
    int32_t BitDepth = 0;
    int32_t LfeCount = 0;
    int32_t DialNorm = 0;
    int32_t AudioMode = 0;
    uint32_t ChannelLayoutCode = 0;
    std::unique_ptr<BlurayAudioStream> CoreStream;  // the sound that a lossless one carries for older players, or null

protected:
    bool IsExtended() const override;
};

class BlurayGraphicsStream : public BlurayStream
{
public:
    BlurayGraphicsStream() { VariableRate = Initialized = true; }
    virtual std::unique_ptr<BlurayGraphicsStream> Clone() const;
};

class BlurayTextStream : public BlurayStream
{
public:
    BlurayTextStream() { VariableRate = Initialized = true; }
    virtual std::unique_ptr<BlurayTextStream> Clone() const;
};
