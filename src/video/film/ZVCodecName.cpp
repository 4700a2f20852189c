#include "video/film/ZVCodecName.h"

namespace
{
constexpr wchar_t Unknown[] = L"Unknown";

struct NamedCodec
{
    AVCodecID Codec;
    const wchar_t* Name;
};

// Codecs whose name is not the libraries' own in upper case.
// clang-format off
constexpr NamedCodec CodecNames[] = {
    {AV_CODEC_ID_VC1,                L"VC-1"},
    {AV_CODEC_ID_MPEG1VIDEO,         L"MPEG-1"},
    {AV_CODEC_ID_MPEG2VIDEO,         L"MPEG-2"},
    {AV_CODEC_ID_RAWVIDEO,           L"RAW"},
    {AV_CODEC_ID_DVVIDEO,            L"DV"},
    {AV_CODEC_ID_HUFFYUV,            L"HuffYUV"},
    {AV_CODEC_ID_THEORA,             L"Theora"},
    {AV_CODEC_ID_CINEPAK,            L"Cinepak"},
    {AV_CODEC_ID_MSVIDEO1,           L"MSVideo1"},
    {AV_CODEC_ID_IDCIN,              L"idCIN"},
    {AV_CODEC_ID_FLIC,               L"Flic"},
    {AV_CODEC_ID_TRUEMOTION1,        L"TrueMotion 1.0"},
    {AV_CODEC_ID_TRUEMOTION2,        L"TrueMotion 2.0"},
    {AV_CODEC_ID_TRUEMOTION2RT,      L"TrueMotion 2.0 RT"},
    {AV_CODEC_ID_VMDVIDEO,           L"VMD"},
    {AV_CODEC_ID_INDEO2,             L"Indeo2"},
    {AV_CODEC_ID_INDEO3,             L"Indeo3"},
    {AV_CODEC_ID_INDEO4,             L"Indeo4"},
    {AV_CODEC_ID_INDEO5,             L"Indeo5"},
    {AV_CODEC_ID_MMVIDEO,            L"MMVideo"},
    {AV_CODEC_ID_SMACKVIDEO,         L"Smacker"},
    {AV_CODEC_ID_FLASHSV,            L"FlashSV"},
    {AV_CODEC_ID_FLASHSV2,           L"FlashSV v2"},
    {AV_CODEC_ID_JPEG2000,           L"JPEG 2000"},
    {AV_CODEC_ID_DIRAC,              L"Dirac"},
    {AV_CODEC_ID_MOTIONPIXELS,       L"MotionPixels"},
    {AV_CODEC_ID_CDGRAPHICS,         L"CD Graphics"},
    {AV_CODEC_ID_BINKVIDEO,          L"Bink"},
    {AV_CODEC_ID_PICTOR,             L"Pictor"},
    {AV_CODEC_ID_LAGARITH,           L"Lagarith"},
    {AV_CODEC_ID_PRORES,             L"ProRes"},
    {AV_CODEC_ID_UTVIDEO,            L"UtVideo"},
    {AV_CODEC_ID_DXTORY,             L"Dxtory"},
    {AV_CODEC_ID_ZEROCODEC,          L"ZeroCodec"},
    {AV_CODEC_ID_WEBP,               L"WebP"},
    {AV_CODEC_ID_SCREENPRESSO,       L"Screenpresso"},
    {AV_CODEC_ID_DAALA,              L"Daala"},
    {AV_CODEC_ID_MAGICYUV,           L"MagicYUV"},
    {AV_CODEC_ID_SHEERVIDEO,         L"SheerVideo"},
    {AV_CODEC_ID_SPEEDHQ,            L"SpeedHQ"},
    {AV_CODEC_ID_CLEARVIDEO,         L"ClearVideo"},
    {AV_CODEC_ID_AAC_LATM,           L"AAC (LATM)"},
    {AV_CODEC_ID_VORBIS,             L"Vorbis"},
    {AV_CODEC_ID_DVAUDIO,            L"DV"},
    {AV_CODEC_ID_VMDAUDIO,           L"VMD"},
    {AV_CODEC_ID_COOK,               L"Cook"},
    {AV_CODEC_ID_TRUESPEECH,         L"TrueSpeech"},
    {AV_CODEC_ID_SMACKAUDIO,         L"SmackerAudio"},
    {AV_CODEC_ID_WAVPACK,            L"WavPack"},
    {AV_CODEC_ID_NELLYMOSER,         L"Nellymoser"},
    {AV_CODEC_ID_SPEEX,              L"Speex"},
    {AV_CODEC_ID_WMAVOICE,           L"WMA Voice"},
    {AV_CODEC_ID_WMAPRO,             L"WMA Pro"},
    {AV_CODEC_ID_WMALOSSLESS,        L"WMA Lossless"},
    {AV_CODEC_ID_AC3,                L"AC-3"},
    {AV_CODEC_ID_EAC3,               L"E-AC3"},
    {AV_CODEC_ID_TWINVQ,             L"TwinVQ"},
    {AV_CODEC_ID_TRUEHD,             L"TrueHD"},
    {AV_CODEC_ID_OPUS,               L"Opus"},
    {AV_CODEC_ID_METASOUND,          L"MetaSound"},
    {AV_CODEC_ID_TEXT,               L"TXT"},
    {AV_CODEC_ID_MOV_TEXT,           L"TX3G"},
    {AV_CODEC_ID_HDMV_PGS_SUBTITLE,  L"PGS"},
    {AV_CODEC_ID_DVD_SUBTITLE,       L"VobSub"},
    {AV_CODEC_ID_DVB_SUBTITLE,       L"DVBSub"},
    {AV_CODEC_ID_SSA,                L"SSA/ASS"},
    {AV_CODEC_ID_DVB_TELETEXT,       L"Teletext"},
    {AV_CODEC_ID_MICRODVD,           L"MicroDVD"},
    {AV_CODEC_ID_JACOSUB,            L"JACOsub"},
    {AV_CODEC_ID_REALTEXT,           L"RealText"},
    {AV_CODEC_ID_SUBRIP,             L"SRT"},
    {AV_CODEC_ID_WEBVTT,             L"WebVTT"},
    {AV_CODEC_ID_HDMV_TEXT_SUBTITLE, L"HDMV Text"},
};
// clang-format on

// The RIFF tag of the low bit rate form of DTS.
constexpr uint32_t DTSExpressTag = 0xA2;

// What a profile text does to the name.
enum class ProfileRule
{
    Append,        // follows the name; the rule of every codec that is not listed
    Replace,       // takes the place of the name
    DTS,           // takes the place of the name, except for the form that has no profile of its own
    LevelTenths,   // follows the name and is followed by the level, which counts tenths
    LevelThirds,   // the same with a level that counts thirtieths
    LevelInteger,  // the same with the level as it stands
    Atmos,         // one profile has a name of its own
};

struct CodecProfile
{
    AVCodecID Codec;
    ProfileRule Rule;
    int32_t AtmosProfile;
    const wchar_t* AtmosName;
};

// clang-format off
constexpr CodecProfile CodecProfiles[] = {
    {AV_CODEC_ID_DTS,      ProfileRule::DTS,          0, nullptr},
    {AV_CODEC_ID_H264,     ProfileRule::LevelTenths,  0, nullptr},
    {AV_CODEC_ID_HEVC,     ProfileRule::LevelThirds,  0, nullptr},
    {AV_CODEC_ID_VC1,      ProfileRule::LevelInteger, 0, nullptr},
    {AV_CODEC_ID_JPEG2000, ProfileRule::Replace,      0, nullptr},
    {AV_CODEC_ID_DNXHD,    ProfileRule::Replace,      0, nullptr},
    {AV_CODEC_ID_TRUEHD,   ProfileRule::Atmos,        AV_PROFILE_TRUEHD_ATMOS,   L"TrueHD Atmos"},
    {AV_CODEC_ID_EAC3,     ProfileRule::Atmos,        AV_PROFILE_EAC3_DDP_ATMOS, L"E-AC3 Atmos"},
};
// clang-format on

// H.264 and HEVC have no level as high as this.
constexpr int32_t LevelLimit = 1000;

const CodecProfile& FindProfileRule(AVCodecID codec)
{
    static constexpr CodecProfile Plain = {AV_CODEC_ID_NONE, ProfileRule::Append, 0, nullptr};
    for (const CodecProfile& profile : CodecProfiles)
        if (profile.Codec == codec)
            return profile;
    return Plain;
}

ZVString GetPlainName(const AVCodecDescriptor& descriptor)
{
    for (const NamedCodec& name : CodecNames)
        if (name.Codec == descriptor.id)
            return name.Name;
    ZVString name = ZVString::FromUTF8(descriptor.name);
    name.MakeUpper();
    return name;
}

bool HasLevel(int32_t level)
{
    return level != 0 && level != AV_LEVEL_UNKNOWN;
}

ZVString WithProfile(const ZVString& name, const ZVString& profile)
{
    return name.IsEmpty() || profile.IsEmpty() ? name : ZVFormat(L"%s %s", name, profile);
}

ZVString WithLevel(const ZVString& text, int32_t level, double unit)
{
    return HasLevel(level) && level < LevelLimit ? ZVFormat(L"%s L%s", text, ZVString::FromDouble(level / unit, 1, true)) : text;
}

ZVString ApplyProfile(const ZVString& name, const ZVString& profile, const AVCodecParameters& parameters)
{
    const CodecProfile& rule = FindProfileRule(parameters.codec_id);
    if (rule.Rule == ProfileRule::Atmos && parameters.profile == rule.AtmosProfile)
        return rule.AtmosName;
    if (rule.Rule == ProfileRule::DTS && parameters.codec_tag == DTSExpressTag)
        return L"DTS Express";
    if (profile.IsEmpty())
        return name;
    switch (rule.Rule)
    {
    case ProfileRule::Replace:
    case ProfileRule::DTS:
        return profile;
    case ProfileRule::LevelTenths:
        return WithLevel(WithProfile(name, profile), parameters.level, 10.0);
    case ProfileRule::LevelThirds:
        return WithLevel(WithProfile(name, profile), parameters.level, 30.0);
    case ProfileRule::LevelInteger:
        return HasLevel(parameters.level) ? ZVFormat(L"%s L%d", WithProfile(name, profile), parameters.level)
                                          : WithProfile(name, profile);
    case ProfileRule::Append:
    case ProfileRule::Atmos:
        break;
    }
    return WithProfile(name, profile);
}
}

ZVString CodecName(const CZVAVLibraries& codec, const AVCodecParameters& parameters)
{
    const AVCodecDescriptor* const descriptor = codec.avcodec_descriptor_get(parameters.codec_id);
    if (descriptor == nullptr)
        return Unknown;
    const ZVString profile = ZVString::FromUTF8(codec.avcodec_profile_name(parameters.codec_id, parameters.profile));
    const ZVString name = ApplyProfile(GetPlainName(*descriptor), profile, parameters);
    return name.IsEmpty() ? ZVString(Unknown) : name;
}

ZVString PlainCodecName(const CZVAVLibraries& codec, AVCodecID id)
{
    const AVCodecDescriptor* const descriptor = codec.avcodec_descriptor_get(id);
    return descriptor == nullptr ? ZVString() : GetPlainName(*descriptor);
}
