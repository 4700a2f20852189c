#include "video/film/ZVCodecName.h"

#include "video/RealCodec.h"

namespace
{
class ZVCodecNameTest : public RealCodec
{
protected:
    ZVString NameOf(int32_t id, int32_t profile = AV_PROFILE_UNKNOWN, int32_t level = 0, uint32_t tag = 0) const
    {
        AVCodecParameters parameters {};
        parameters.codec_id = static_cast<AVCodecID>(id);
        parameters.profile = profile;
        parameters.level = level;
        parameters.codec_tag = tag;
        return CodecName(m_codec, parameters);
    }
};

TEST_F(ZVCodecNameTest, HasProfileAndLevelWhereTheyAreKnown)
{
    EXPECT_EQ(NameOf(AV_CODEC_ID_H264, AV_PROFILE_H264_CONSTRAINED_BASELINE, 9), L"H264 Constrained Baseline L0.9");
    EXPECT_EQ(NameOf(AV_CODEC_ID_H264, AV_PROFILE_H264_HIGH), L"H264 High");
    EXPECT_EQ(NameOf(AV_CODEC_ID_H264, AV_PROFILE_H264_HIGH, 999), L"H264 High L99.9");
    EXPECT_EQ(NameOf(AV_CODEC_ID_H264, AV_PROFILE_H264_HIGH, 1000), L"H264 High");
    EXPECT_EQ(NameOf(AV_CODEC_ID_H264, AV_PROFILE_UNKNOWN, 41), L"H264");
    EXPECT_EQ(NameOf(AV_CODEC_ID_HEVC, AV_PROFILE_HEVC_MAIN_10, 153), L"HEVC Main 10 L5.1");
    EXPECT_EQ(NameOf(AV_CODEC_ID_VC1, AV_PROFILE_VC1_ADVANCED, 1000), L"VC-1 Advanced L1000");
    EXPECT_EQ(NameOf(AV_CODEC_ID_VC1, AV_PROFILE_VC1_MAIN), L"VC-1 Main");
    EXPECT_EQ(NameOf(AV_CODEC_ID_DTS, AV_PROFILE_DTS_HD_MA, 0, 0xA2), L"DTS Express");
    EXPECT_EQ(NameOf(AV_CODEC_ID_DTS), L"DTS");
    EXPECT_EQ(NameOf(AV_CODEC_ID_JPEG2000, AV_PROFILE_JPEG2000_DCINEMA_4K), L"JPEG 2000 digital cinema 4K");
    EXPECT_EQ(NameOf(AV_CODEC_ID_DNXHD, AV_PROFILE_DNXHR_HQX), L"DNXHR HQX");
    EXPECT_EQ(NameOf(AV_CODEC_ID_TRUEHD, AV_PROFILE_TRUEHD_ATMOS), L"TrueHD Atmos");
    EXPECT_EQ(NameOf(AV_CODEC_ID_EAC3, AV_PROFILE_EAC3_DDP_ATMOS), L"E-AC3 Atmos");
    EXPECT_EQ(NameOf(AV_CODEC_ID_AAC, AV_PROFILE_AAC_HE), L"AAC HE-AAC");
    EXPECT_EQ(NameOf(32767), L"Unknown");
}
}
