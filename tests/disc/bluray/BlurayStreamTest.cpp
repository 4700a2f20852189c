#include "disc/bluray/BlurayStream.h"

#include <gtest/gtest.h>

namespace
{
TEST(BlurayStream, DescribesVideo)
{
    struct Row
    {
        int32_t Height;
        bool Interlaced;
        int32_t Numerator;
        int32_t Denominator;
        uint32_t Aspect;
        const wchar_t* Profile;
        const wchar_t* Text;
    };
    const Row rows[] = {
        {0,    false, 0,     0,    0, L"",     L""                            },
        {1080, true,  25000, 1000, 3, L"High", L"1080i / 25 fps / 16:9 / High"},
        {576,  false, 24000, 1001, 2, L"",     L"576p / 23.976 fps / 4:3"     },
        {0,    true,  60000, 1001, 1, L"",     L"59.940 fps"                  },
    };
    for (const Row& row : rows)
    {
        BlurayVideoStream stream;
        stream.Height = row.Height;
        stream.Interlaced = row.Interlaced;
        stream.FrameRateNumerator = row.Numerator;
        stream.FrameRateDenominator = row.Denominator;
        stream.AspectCode = row.Aspect;
        stream.EncodingProfile = row.Profile;
        EXPECT_STREQ(stream.VideoDescription(), row.Text);
    }
}

TEST(BlurayStream, DescribesAudio)
{
    BlurayAudioStream stream;
    stream.CodingType = 0x81;
    stream.PID = 0x1100;
    EXPECT_STREQ(stream.AudioDescription(), L"");
    stream.ChannelLayoutCode = 6;
    stream.SampleRate = 44100;
    EXPECT_STREQ(stream.AudioDescription(), L"5.1 / 44 kHz");
    EXPECT_STREQ(stream.StreamLabel(), L"AC3 (4352)");
    stream.ChannelCount = 2;
    stream.AudioMode = 1;
    stream.BitRate = 639'500;
    stream.BitDepth = 24;
    stream.DialNorm = -27;
    EXPECT_STREQ(stream.AudioDescription(), L"2.0 / 44 kHz / 640 kbps / 24-bit / DN {0}dB / Dual Mono");
    stream.AudioMode = 4;
    EXPECT_STREQ(stream.CodecName(), L"Dolby Digital EX Audio");
    EXPECT_STREQ(stream.ChannelDescription(), L"2.0-EX");
    EXPECT_STREQ(stream.CodecAltName(), L"DD AC3");
    stream.CodingType = 0x86;
    EXPECT_STREQ(stream.CodecShortName(), L"DTS-HD MA") << "it has no extended name";
    EXPECT_STREQ(stream.ChannelDescription(), L"2.0-ES");
    // The core's two texts stand where the format wants numbers.
    BlurayAudioStream lossless;
    lossless.CoreStream = stream.Clone();
    EXPECT_STREQ(lossless.AudioDescription(), L" (0: 0)");
}

}
