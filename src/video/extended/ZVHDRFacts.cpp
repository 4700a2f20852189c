#include "video/extended/ZVHDRFacts.h"

#include "core/property/ZVPropertyMap.h"
#include "video/extended/ZVPrimariesName.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr wchar_t HDR10[] = L"HDR10";
constexpr wchar_t MasteringLuminance[] = L"HDR Mastering Luminance";
constexpr wchar_t MasteringColorSpace[] = L"HDR Mastering Color Space";
constexpr wchar_t PeakLuminance[] = L"HDR Peak Luminance";
constexpr wchar_t AverageLuminance[] = L"HDR Average Luminance";

constexpr wchar_t DolbyVision[] = L"DolbyVision";
constexpr wchar_t DolbyVision5[] = L"DolbyVision Profile 5 (ICtCp)";
constexpr wchar_t DolbyVision5ColorSpace[] = L"BT.2020";

// A mastering display is never as dark as this: such a value comes from a mistaken unit.
constexpr double DarkestDisplay = 10.0;

struct TransferFormat
{
    AVColorTransferCharacteristic Transfer;
    const wchar_t* Format;
};

constexpr TransferFormat TransferFormats[] = {
    {AVCOL_TRC_SMPTE2084,    HDR10 },
    {AVCOL_TRC_ARIB_STD_B67, L"HLG"},
};

// The text for a profile of the record; with any compatibility the number of the profile alone decides.
struct DolbyVisionProfile
{
    uint8_t Profile;
    uint8_t Compatibility;
    const wchar_t* Text;
};

constexpr uint8_t AnyCompatibility = 0xff;

// clang-format off
constexpr DolbyVisionProfile DolbyVisionProfiles[] = {
    {5, AnyCompatibility, DolbyVision5},
    {6, AnyCompatibility, L"DolbyVision Profile 6, HDR10-compatible"},
    {7, AnyCompatibility, L"DolbyVision Profile 7, HDR10-compatible"},
    {8, 1,                L"DolbyVision Profile 8.1, HDR10-compatible"},
    {8, 4,                L"DolbyVision Profile 8.4, HLG-compatible"},
};
// clang-format on

constexpr uint8_t ProfileWithCompatibility = 8;

// Code values have 12 bits.
constexpr uint16_t LargestPQ = 4095;

// The luminance of a 12-bit code value by the transfer function of SMPTE ST 2084, in nits.
int32_t GetNitsOfPQ(uint16_t value)
{
    // The constants of the standard: 1/m2, c1, c2, c3, 1/m1. Single precision, as the players that show the value compute it.
    const float power = std::pow(static_cast<float>(std::min(value, LargestPQ)) / LargestPQ, 0.012683313f);
    const float linear = std::max(power - 0.8359375f, 0.0f) / (18.8515625f - 18.6875f * power);
    return static_cast<int32_t>(std::round(10000.0f * std::pow(linear, 6.2773948f)));
}

ZVString GetFormat(const AVDOVIDecoderConfigurationRecord& config)
{
    for (const DolbyVisionProfile& profile : DolbyVisionProfiles)
        if (profile.Profile == config.dv_profile &&
            (profile.Compatibility == AnyCompatibility || profile.Compatibility == config.dv_bl_signal_compatibility_id))
            return profile.Text;
    if (config.dv_profile == ProfileWithCompatibility)
        return ZVFormat(L"DolbyVision Profile %d.%d", config.dv_profile, config.dv_bl_signal_compatibility_id);
    return ZVFormat(L"DolbyVision Profile %d", config.dv_profile);
}

void SetFormat(ZVPropertyMap& properties, const ZVString& format)
{
    properties.SetString(ZVHDRFacts::Format, format);
    if (format == DolbyVision5)
        properties.SetString(ZVHDRFacts::ColorSpace, DolbyVision5ColorSpace);
}

// What the header of the metadata says, empty when it says nothing.
ZVString GetFormat(const AVDOVIRpuDataHeader& header)
{
    if (header.vdr_rpu_profile == 0 && header.bl_video_full_range_flag != 0)
        return DolbyVision5;
    if (header.vdr_rpu_profile != 1)
        return ZVString();
    const bool hasOneLayer = header.el_spatial_resampling_filter_flag == 0 || header.disable_residual_flag != 0;
    return hasOneLayer ? L"DolbyVision Profile 8, HDR10-compatible" : L"DolbyVision Profile 7, HDR10-compatible";
}

AVColorPrimariesDesc GetPrimaries(const AVMasteringDisplayMetadata& mastering)
{
    AVColorPrimariesDesc primaries {};
    primaries.wp = {mastering.white_point[0], mastering.white_point[1]};
    primaries.prim.r = {mastering.display_primaries[0][0], mastering.display_primaries[0][1]};
    primaries.prim.g = {mastering.display_primaries[1][0], mastering.display_primaries[1][1]};
    primaries.prim.b = {mastering.display_primaries[2][0], mastering.display_primaries[2][1]};
    return primaries;
}

// A value with a denominator of 0 does not count as given.
bool IsValid(const AVRational& value)
{
    return value.den != 0;
}

bool HasPrimaries(const AVMasteringDisplayMetadata& mastering)
{
    if (mastering.has_primaries == 0)
        return false;
    bool areValid = IsValid(mastering.white_point[0]) && IsValid(mastering.white_point[1]);
    for (const auto& primary : mastering.display_primaries)
        areValid = areValid && IsValid(primary[0]) && IsValid(primary[1]);
    return areValid;
}
}

void ZVHDRFacts::ApplyTransfer(ZVPropertyMap& properties, AVColorTransferCharacteristic transfer)
{
    for (const TransferFormat& row : TransferFormats)
        if (row.Transfer == transfer)
            properties.SetString(Format, row.Format);
}

void ZVHDRFacts::ApplyHdrMetadata(ZVPropertyMap& properties, const CZVAVLibraries& codec,
                                  const AVMasteringDisplayMetadata* mastering, const AVContentLightMetadata* light)
{
    if (mastering != nullptr && mastering->has_luminance != 0 && IsValid(mastering->max_luminance))
    {
        const double luminance = av_q2d(mastering->max_luminance);
        if (luminance > DarkestDisplay)
            properties.SetInt64(MasteringLuminance, static_cast<int64_t>(luminance));
    }
    if (mastering != nullptr && HasPrimaries(*mastering))
    {
        const AVColorPrimariesDesc description = GetPrimaries(*mastering);
        const AVColorPrimaries primaries = codec.av_csp_primaries_id_from_desc(&description);
        if (primaries != AVCOL_PRI_UNSPECIFIED)
            properties.SetString(MasteringColorSpace, PrimariesName(primaries, codec.av_color_primaries_name(primaries)));
    }
    if (light != nullptr && light->MaxCLL != 0)
        properties.SetInt64(PeakLuminance, light->MaxCLL);
    if (light != nullptr && light->MaxFALL != 0)
        properties.SetInt64(AverageLuminance, light->MaxFALL);
}

void ZVHDRFacts::ApplyDynamic(ZVPropertyMap& properties)
{
    if (!properties.IsSet(Format) || properties.GetString(Format) == HDR10)
        properties.SetString(Format, L"HDR10+");
}

void ZVHDRFacts::ApplyDolbyVision(ZVPropertyMap& properties, const AVDOVIDecoderConfigurationRecord& config)
{
    SetFormat(properties, GetFormat(config));
}

void ZVHDRFacts::ApplyDolbyVision(ZVPropertyMap& properties, const AVDOVIMetadata& metadata)
{
    if (properties.GetString(Format).Find(DolbyVision) < 0)
    {
        const ZVString format = GetFormat(*av_dovi_get_header(&metadata));
        if (!format.IsEmpty())
            SetFormat(properties, format);
    }
    const uint16_t peak = av_dovi_get_color(&metadata)->source_max_pq;
    if (peak != 0)
        properties.SetInt(PeakLuminance, GetNitsOfPQ(peak));
}
