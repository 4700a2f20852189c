#include "disc/bluray/BlurayStream.h"

#include "disc/bluray/BlurayCodes.h"

namespace
{
constexpr wchar_t Separator[] = L" / ";
constexpr int32_t SeparatorLength = 3;

// The value of AudioMode for surround channels in the middle of the back, for two sounds in one, and for a matrix of four in two.
constexpr int32_t ExtendedMode = 4;
constexpr int32_t DualMonoMode = 1;
constexpr int32_t SurroundMode = 3;

constexpr uint32_t DolbyDigital = 0x81;
constexpr uint32_t DTS = 0x82;

// What a code stands for in a description; the texts of video end in a separator.
struct CodeText
{
    uint32_t Code;
    const wchar_t* Text;
};

constexpr CodeText AspectTexts[] = {
    {2, L"4:3 / " },
    {3, L"16:9 / "},
};

constexpr CodeText ChannelLayoutTexts[] = {
    {3, L"2.0"},
    {6, L"5.1"},
    {1, L"1.0"},
};

constexpr CodeText ExtensionTexts[] = {
    {DolbyDigital, L"-EX"},
    {DTS,          L"-ES"},
    {0x85,         L"-ES"},
    {0x86,         L"-ES"},
};

constexpr CodeText CoreTexts[] = {
    {DolbyDigital, L"AC3 Embedded"},
    {DTS,          L"DTS Core"    },
};

template <size_t Count>
const wchar_t* FindText(const CodeText (&texts)[Count], uint32_t code)
{
    for (const CodeText& text : texts)
        if (text.Code == code)
            return text.Text;
    return L"";
}

ZVString WithoutLastSeparator(ZVString text)
{
    if (text.EndsWith(Separator))
        text.Trim(0, SeparatorLength);
    return text;
}
}

BlurayStream::BlurayStream(const BlurayStream& other)
    : LanguageCode(other.LanguageCode),
      LanguageName(other.LanguageName),
      PID(other.PID),
      CodingType(other.CodingType),
      BitRate(other.BitRate),
      VariableRate(other.VariableRate),
      Initialized(other.Initialized),
      Hidden(other.Hidden),
      PacketCounts {other.PacketCounts[0], other.PacketCounts[1]},
      PacketSeconds(other.PacketSeconds),
      CaptionCount(other.CaptionCount)
{
    for (const BlurayDescriptor* const descriptor : other.Descriptors)
    {
        std::unique_ptr<BlurayDescriptor> copy = descriptor->Clone();
        Descriptors.Add(copy.get());
        copy.release();
    }
}

ZVString BlurayStream::StreamLabel() const
{
    return ZVFormat(L"%s (%d)", CodecShortName(), PID);
}

ZVString BlurayStream::Description() const
{
    return {};
}

ZVString BlurayStream::CodecName() const
{
    const BlurayStreamCoding& coding = BlurayCodes::FindStreamCoding(CodingType);
    return IsExtended() && coding.ExtendedName != nullptr ? coding.ExtendedName : coding.Name;
}

ZVString BlurayStream::CodecAltName() const
{
    return BlurayCodes::FindStreamCoding(CodingType).AltName;
}

ZVString BlurayStream::CodecShortName() const
{
    const BlurayStreamCoding& coding = BlurayCodes::FindStreamCoding(CodingType);
    return IsExtended() && coding.ExtendedShortName != nullptr ? coding.ExtendedShortName : coding.ShortName;
}

std::unique_ptr<BlurayVideoStream> BlurayVideoStream::Clone() const
{
    return std::make_unique<BlurayVideoStream>(*this);
}

ZVString BlurayVideoStream::VideoDescription() const
{
    ZVString text;
    if (Height > 0)
        text.AppendFormat(L"%d%s / ", Height, Interlaced ? L"i" : L"p");
    if (FrameRateNumerator > 0 && FrameRateDenominator > 0)
    {
        if (FrameRateNumerator % FrameRateDenominator == 0)
            text.AppendFormat(L"%d fps / ", FrameRateNumerator / FrameRateDenominator);
        else
            text.AppendFormat(L"%.3f fps / ", static_cast<double>(FrameRateNumerator) / FrameRateDenominator);
    }
    text += FindText(AspectTexts, AspectCode);
    if (!EncodingProfile.IsEmpty())
        text += EncodingProfile + Separator;
    return WithoutLastSeparator(text);
}

BlurayAudioStream::BlurayAudioStream(const BlurayAudioStream& other)
    : BlurayStream(other),
      SampleRate(other.SampleRate),
      ChannelCount(other.ChannelCount),
      BitDepth(other.BitDepth),
      LfeCount(other.LfeCount),
      DialNorm(other.DialNorm),
      AudioMode(other.AudioMode),
      ChannelLayoutCode(other.ChannelLayoutCode),
      CoreStream(other.CoreStream == nullptr ? nullptr : other.CoreStream->Clone())
{
}

std::unique_ptr<BlurayAudioStream> BlurayAudioStream::Clone() const
{
    return std::make_unique<BlurayAudioStream>(*this);
}

bool BlurayAudioStream::IsExtended() const
{
    return AudioMode == ExtendedMode;
}

ZVString BlurayAudioStream::ChannelDescription() const
{
    ZVString text;
    if (ChannelCount > 0)
        text.AppendFormat(L"%d.%d", ChannelCount, LfeCount);
    else
        text += FindText(ChannelLayoutTexts, ChannelLayoutCode);
    if (IsExtended())
        text += FindText(ExtensionTexts, CodingType);
    return text;
}

ZVString BlurayAudioStream::AudioDescription() const
{
    constexpr double BitsPerKilobit = 1000.0;

    ZVString text = ChannelDescription();
    if (SampleRate > 0)
        text.AppendFormat(L" / %d kHz", SampleRate / 1000);
    if (BitRate != 0)
        text.AppendFormat(L" / %d kbps", static_cast<int64_t>(static_cast<double>(BitRate) / BitsPerKilobit + 0.5));
    if (BitDepth > 0)
        text.AppendFormat(L" / %d-bit", BitDepth);
    // The braces are not filled in. Whoever shows the text knows it so, and it stays.
    if (DialNorm != 0)
        text += L" / DN {0}dB";
    if (ChannelCount == 2 && AudioMode == DualMonoMode)
        text += L" / Dual Mono";
    if (ChannelCount == 2 && AudioMode == SurroundMode)
        text += L" / Dolby Surround";
    text = WithoutLastSeparator(text);
    // Both are texts, and the format asks for numbers, so that zeros stand there. Whoever shows the text knows it so.
    if (CoreStream != nullptr)
        text.AppendFormat(L" (%d: %d)", FindText(CoreTexts, CoreStream->CodingType), CoreStream->AudioDescription());
    return text;
}

std::unique_ptr<BlurayGraphicsStream> BlurayGraphicsStream::Clone() const
{
    return std::make_unique<BlurayGraphicsStream>(*this);
}

std::unique_ptr<BlurayTextStream> BlurayTextStream::Clone() const
{
    return std::make_unique<BlurayTextStream>(*this);
}
