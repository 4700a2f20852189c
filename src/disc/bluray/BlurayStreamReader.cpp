#include "disc/bluray/BlurayStreamReader.h"

#include "disc/bluray/BlurayCodes.h"

namespace
{
constexpr int64_t LanguageSize = 3;

// The two halves of a byte.
uint32_t HighNibble(uint8_t byte)
{
    return byte >> 4;
}

uint32_t LowNibble(uint8_t byte)
{
    return byte & 0x0f;
}

std::unique_ptr<BlurayStream> ReadVideo(BlurayCursor& cursor, BlurayStreamReader::VideoDetail detail)
{
    auto stream = std::make_unique<BlurayVideoStream>();
    const uint8_t formatAndRate = cursor.Read<uint8_t>();
    stream->FrameRateCode = LowNibble(formatAndRate);
    stream->AspectCode = HighNibble(cursor.Read<uint8_t>());
    if (detail == BlurayStreamReader::VideoDetail::Codes)
    {
        stream->VideoFormatCode = HighNibble(formatAndRate);
        return stream;
    }
    const BlurayVideoFormat format = BlurayCodes::GetVideoFormat(HighNibble(formatAndRate));
    stream->Height = format.Height;
    stream->Interlaced = format.IsInterlaced;
    const BlurayFrameRate rate = BlurayCodes::GetFrameRate(stream->FrameRateCode);
    stream->FrameRateNumerator = rate.Numerator;
    stream->FrameRateDenominator = rate.Denominator;
    return stream;
}

std::unique_ptr<BlurayStream> ReadAudio(BlurayCursor& cursor)
{
    auto stream = std::make_unique<BlurayAudioStream>();
    const uint8_t layoutAndRate = cursor.Read<uint8_t>();
    stream->ChannelLayoutCode = HighNibble(layoutAndRate);
    stream->SampleRate = BlurayCodes::GetSampleRate(LowNibble(layoutAndRate));
    stream->LanguageCode = BlurayStreamReader::ReadText(cursor, LanguageSize);
    return stream;
}

std::unique_ptr<BlurayStream> ReadGraphics(BlurayCursor& cursor)
{
    auto stream = std::make_unique<BlurayGraphicsStream>();
    stream->LanguageCode = BlurayStreamReader::ReadText(cursor, LanguageSize);
    return stream;
}

std::unique_ptr<BlurayStream> ReadTextStream(BlurayCursor& cursor)
{
    auto stream = std::make_unique<BlurayTextStream>();
    cursor.Skip(1);  // the character code
    stream->LanguageCode = BlurayStreamReader::ReadText(cursor, LanguageSize);
    return stream;
}

std::unique_ptr<BlurayStream> ReadKind(BlurayCursor& cursor, BlurayStreamKind kind, BlurayStreamReader::VideoDetail detail)
{
    switch (kind)
    {
    case BlurayStreamKind::Video:
        return ReadVideo(cursor, detail);
    case BlurayStreamKind::Audio:
        return ReadAudio(cursor);
    case BlurayStreamKind::Graphics:
        return ReadGraphics(cursor);
    case BlurayStreamKind::Text:
        return ReadTextStream(cursor);
    case BlurayStreamKind::None:
        break;
    }
    return nullptr;
}
}

ZVString BlurayStreamReader::ReadText(BlurayCursor& cursor, int64_t size)
{
    const std::string_view bytes = cursor.ReadBytes(size);
    ZVString text;
    text.SetFromNarrow(bytes.data(), static_cast<int32_t>(bytes.size()));
    return text;
}

std::unique_ptr<BlurayStream> BlurayStreamReader::ReadStream(BlurayCursor& cursor, uint16_t pid, uint8_t codingType,
                                                             VideoDetail detail)
{
    const BlurayStreamCoding& coding = BlurayCodes::FindStreamCoding(codingType);
    if (!coding.IsRead)
        return nullptr;
    std::unique_ptr<BlurayStream> stream = ReadKind(cursor, coding.Kind, detail);
    stream->PID = pid;
    stream->CodingType = codingType;
    return stream;
}
