#include "video/extended/ZVCodecName.h"

#include "video/extended/RealCodec.h"

namespace
{
using ZVCodecNameTest = RealCodec;

TEST_F(ZVCodecNameTest, HasProfileAndLevelWhereTheyAreKnown)
{
    // clang-format off
    const struct
    {
        AVCodecID Codec;
        int32_t Profile;
        int32_t Level;
        uint32_t Tag;
        const wchar_t* Expected;
    } rows[] = {
        {AV_CODEC_ID_H264, AV_PROFILE_H264_HIGH, 41, 0, L"H264 High L4.1"},
        {AV_CODEC_ID_H264, AV_PROFILE_H264_CONSTRAINED_BASELINE, 9, 0, L"H264 Constrained Baseline L0.9"},
        {AV_CODEC_ID_H264, AV_PROFILE_H264_HIGH, 40, 0, L"H264 High L4.0"},
        {AV_CODEC_ID_H264, AV_PROFILE_H264_HIGH, AV_LEVEL_UNKNOWN, 0, L"H264 High"},
        {AV_CODEC_ID_H264, AV_PROFILE_H264_HIGH, 0, 0, L"H264 High"},
        {AV_CODEC_ID_H264, AV_PROFILE_H264_HIGH, 999, 0, L"H264 High L99.9"},
        {AV_CODEC_ID_H264, AV_PROFILE_H264_HIGH, 1000, 0, L"H264 High"},
        {AV_CODEC_ID_H264, AV_PROFILE_UNKNOWN, 41, 0, L"H264"},
        {AV_CODEC_ID_HEVC, AV_PROFILE_HEVC_MAIN_10, 153, 0, L"HEVC Main 10 L5.1"},
        {AV_CODEC_ID_HEVC, AV_PROFILE_HEVC_MAIN, 120, 0, L"HEVC Main L4.0"},
        {AV_CODEC_ID_HEVC, AV_PROFILE_HEVC_MAIN, 100, 0, L"HEVC Main L3.3"},
        {AV_CODEC_ID_HEVC, AV_PROFILE_HEVC_MAIN, 1000, 0, L"HEVC Main"},
        {AV_CODEC_ID_HEVC, AV_PROFILE_UNKNOWN, 153, 0, L"HEVC"},
        {AV_CODEC_ID_VC1, AV_PROFILE_VC1_ADVANCED, 3, 0, L"VC-1 Advanced L3"},
        {AV_CODEC_ID_VC1, AV_PROFILE_VC1_ADVANCED, 1000, 0, L"VC-1 Advanced L1000"},
        {AV_CODEC_ID_VC1, AV_PROFILE_VC1_MAIN, AV_LEVEL_UNKNOWN, 0, L"VC-1 Main"},
        {AV_CODEC_ID_VC1, AV_PROFILE_VC1_MAIN, 0, 0, L"VC-1 Main"},
        {AV_CODEC_ID_DTS, AV_PROFILE_DTS_HD_MA, 0, 0, L"DTS-HD MA"},
        {AV_CODEC_ID_DTS, AV_PROFILE_DTS_HD_MA, 0, 0xA2, L"DTS Express"},
        {AV_CODEC_ID_DTS, AV_PROFILE_UNKNOWN, 0, 0, L"DTS"},
        {AV_CODEC_ID_JPEG2000, AV_PROFILE_JPEG2000_DCINEMA_4K, 0, 0, L"JPEG 2000 digital cinema 4K"},
        {AV_CODEC_ID_JPEG2000, AV_PROFILE_UNKNOWN, 0, 0, L"JPEG 2000"},
        {AV_CODEC_ID_DNXHD, AV_PROFILE_DNXHR_HQX, 0, 0, L"DNXHR HQX"},
        {AV_CODEC_ID_DNXHD, AV_PROFILE_UNKNOWN, 0, 0, L"DNXHD"},
        {AV_CODEC_ID_TRUEHD, AV_PROFILE_TRUEHD_ATMOS, 0, 0, L"TrueHD Atmos"},
        {AV_CODEC_ID_TRUEHD, AV_PROFILE_UNKNOWN, 0, 0, L"TrueHD"},
        {AV_CODEC_ID_EAC3, AV_PROFILE_EAC3_DDP_ATMOS, 0, 0, L"E-AC3 Atmos"},
        {AV_CODEC_ID_EAC3, AV_PROFILE_UNKNOWN, 0, 0, L"E-AC3"},
        {AV_CODEC_ID_MPEG2VIDEO, AV_PROFILE_MPEG2_MAIN, 8, 0, L"MPEG-2 Main"},
        {AV_CODEC_ID_AAC, AV_PROFILE_AAC_HE, 0, 0, L"AAC HE-AAC"},
        {AV_CODEC_ID_AC3, AV_PROFILE_UNKNOWN, 0, 0xA2, L"AC-3"},
        {AV_CODEC_ID_ASS, AV_PROFILE_UNKNOWN, 0, 0, L"ASS"},
        {AV_CODEC_ID_MSMPEG4V3, AV_PROFILE_UNKNOWN, 0, 0, L"MSMPEG4V3"},
        {AV_CODEC_ID_NONE, AV_PROFILE_UNKNOWN, 0, 0, L"Unknown"},
        {static_cast<AVCodecID>(0x7fff), AV_PROFILE_UNKNOWN, 0, 0, L"Unknown"},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        AVCodecParameters parameters {};
        parameters.codec_id = row.Codec;
        parameters.profile = row.Profile;
        parameters.level = row.Level;
        parameters.codec_tag = row.Tag;
        EXPECT_EQ(CodecName(m_codec, parameters), row.Expected);
    }
}

// The numbers of the major version that the libraries have: a name that slips by a row would show here.
TEST_F(ZVCodecNameTest, IsTheProductsOwnForMany)
{
    const struct
    {
        int32_t Codec;
        const wchar_t* Expected;
    } rows[] = {
        {1,       L"MPEG-1"           },
        {13,      L"RAW"              },
        {24,      L"DV"               },
        {51,      L"TrueMotion 1.0"   },
        {70,      L"VC-1"             },
        {112,     L"Indeo5"           },
        {131,     L"FlashSV v2"       },
        {147,     L"ProRes"           },
        {171,     L"WebP"             },
        {213,     L"TrueMotion 2.0 RT"},
        {223,     L"ClearVideo"       },
        {0x15003, L"AC-3"             },
        {0x15006, L"DV"               },
        {0x15024, L"WMA Voice"        },
        {0x1502b, L"TwinVQ"           },
        {0x15031, L"AAC (LATM)"       },
        {0x1503f, L"MetaSound"        },
        {0x17000, L"VobSub"           },
        {0x17004, L"SSA/ASS"          },
        {0x17005, L"TX3G"             },
        {0x17006, L"PGS"              },
        {0x17007, L"Teletext"         },
        {0x17011, L"SRT"              },
        {0x17017, L"HDMV Text"        },
    };
    for (const auto& row : rows)
    {
        AVCodecParameters parameters {};
        parameters.codec_id = static_cast<AVCodecID>(row.Codec);
        parameters.profile = AV_PROFILE_UNKNOWN;
        EXPECT_EQ(CodecName(m_codec, parameters), row.Expected) << row.Codec;
    }
}
}
