#include "video/extended/ZVHDRFacts.h"

#include "support/PropertyLines.h"
#include "video/extended/RealCodec.h"

namespace
{
using Lines = std::set<std::string>;

class ZVHDRFactsTest : public RealCodec
{
protected:
    Lines Apply(const AVMasteringDisplayMetadata* mastering, const AVContentLightMetadata* light = nullptr) const
    {
        ZVPropertyMap properties;
        ZVHDRFacts::ApplyHdrMetadata(properties, m_codec, mastering, light);
        return GetLines(properties);
    }
};

// Side data of a frame, laid out as the libraries do: the parts behind the record that has their places.
struct DolbyVisionFrame
{
    AVDOVIMetadata Metadata {};
    AVDOVIRpuDataHeader Header {};
    AVDOVIDataMapping Mapping {};
    AVDOVIColorMetadata Color {};

    DolbyVisionFrame()
    {
        Metadata.header_offset = offsetof(DolbyVisionFrame, Header);
        Metadata.mapping_offset = offsetof(DolbyVisionFrame, Mapping);
        Metadata.color_offset = offsetof(DolbyVisionFrame, Color);
    }

    // What it makes of a property.
    Lines ApplyTo(const wchar_t* key, const wchar_t* value) const
    {
        ZVPropertyMap properties;
        properties.SetString(key, value, true);
        ZVHDRFacts::ApplyDolbyVision(properties, Metadata);
        return GetLines(properties);
    }
};

TEST_F(ZVHDRFactsTest, LuminanceIsInWholeNits)
{
    const auto apply = [this](AVRational luminance, bool isThere = true)
    {
        AVMasteringDisplayMetadata mastering {};
        mastering.has_luminance = isThere;
        mastering.max_luminance = luminance;
        return Apply(&mastering);
    };
    EXPECT_EQ(apply({39'999, 10}), Lines({"HDR Mastering Luminance=3999"})) << "cut, not rounded";
    EXPECT_EQ(apply({39'999, 10}, false), Lines());
    EXPECT_EQ(apply({100'001, 10'000}), Lines({"HDR Mastering Luminance=10"}));
    EXPECT_EQ(apply({10, 1}), Lines()) << "a wrong unit";
    EXPECT_EQ(apply({-1000, 1}), Lines());
    EXPECT_EQ(apply({1000, 0}), Lines());
    EXPECT_EQ(apply({INT32_MIN, -1}), Lines({"HDR Mastering Luminance=2147483648"}));

    const AVContentLightMetadata peak {UINT32_MAX, 0};
    EXPECT_EQ(Apply(nullptr, &peak), Lines({"HDR Peak Luminance=4294967295"}));
    const AVContentLightMetadata average {0, 1};
    EXPECT_EQ(Apply(nullptr, &average), Lines({"HDR Average Luminance=1"}));
}

TEST_F(ZVHDRFactsTest, MasteringPrimariesNeedAllOfTheirPlaces)
{
    AVMasteringDisplayMetadata mastering {};
    const int places[3][2] = {
        {35400, 14600},
        {8500,  39850},
        {6550,  2300 }
    };
    for (size_t color = 0; color < 3; ++color)
        for (size_t axis = 0; axis < 2; ++axis)
            mastering.display_primaries[color][axis] = {places[color][axis], 50000};
    mastering.white_point[0] = {15635, 50000};
    mastering.white_point[1] = {16450, 50000};
    EXPECT_EQ(Apply(&mastering), Lines()) << "they are said not to be there";
    mastering.has_primaries = 1;
    EXPECT_EQ(Apply(&mastering), Lines({"HDR Mastering Color Space=BT.2020"}));
    for (AVRational* const place : {&mastering.display_primaries[2][1], &mastering.white_point[0]})
    {
        place->den = 0;
        EXPECT_EQ(Apply(&mastering), Lines());
        place->den = 50000;
    }
    std::swap(mastering.display_primaries[0], mastering.display_primaries[1]);
    EXPECT_EQ(Apply(&mastering), Lines());
}

TEST(ZVHDRFacts, DynamicMetadataMakesHDR10TheBetterFormat)
{
    const auto apply = [](const wchar_t* before)
    {
        ZVPropertyMap properties;
        properties.SetString(L"HDR Format", before, true);
        ZVHDRFacts::ApplyDynamic(properties);
        return properties.GetString(L"HDR Format");
    };
    EXPECT_EQ(apply(L""), L"HDR10+");
    EXPECT_EQ(apply(L"HDR10"), L"HDR10+");
    EXPECT_EQ(apply(L"HLG"), L"HLG");
    EXPECT_EQ(apply(L"DolbyVision Profile 8.1"), L"DolbyVision Profile 8.1");
}

TEST(ZVHDRFacts, TheRecordOfTheContainerNamesTheProfile)
{
    const auto apply = [](uint8_t profile, uint8_t compatibility)
    {
        ZVPropertyMap properties;
        properties.SetString(L"HDR Format", L"HDR10");
        AVDOVIDecoderConfigurationRecord record {};
        record.dv_profile = profile;
        record.dv_bl_signal_compatibility_id = compatibility;
        ZVHDRFacts::ApplyDolbyVision(properties, record);
        return GetLines(properties);
    };
    EXPECT_EQ(apply(4, 2), Lines({"HDR Format=DolbyVision Profile 4"}));
    EXPECT_EQ(apply(5, 0), Lines({"HDR Format=DolbyVision Profile 5 (ICtCp)", "Color Space=BT.2020"}));
    EXPECT_EQ(apply(6, 1), Lines({"HDR Format=DolbyVision Profile 6, HDR10-compatible"}));
    EXPECT_EQ(apply(7, 6), Lines({"HDR Format=DolbyVision Profile 7, HDR10-compatible"}));
    EXPECT_EQ(apply(8, 1), Lines({"HDR Format=DolbyVision Profile 8.1, HDR10-compatible"}));
    EXPECT_EQ(apply(8, 4), Lines({"HDR Format=DolbyVision Profile 8.4, HLG-compatible"}));
    EXPECT_EQ(apply(8, 255), Lines({"HDR Format=DolbyVision Profile 8.255"}));
    EXPECT_EQ(apply(255, 4), Lines({"HDR Format=DolbyVision Profile 255"}));
}

TEST(ZVHDRFacts, TheMetadataOfAFrameNamesTheProfileWhenTheContainerDoesNot)
{
    const auto apply = [](const wchar_t* before, uint8_t profile, bool isFullRange, bool isResampled, bool hasNoResidual)
    {
        DolbyVisionFrame frame;
        frame.Header.vdr_rpu_profile = profile;
        frame.Header.bl_video_full_range_flag = isFullRange;
        frame.Header.el_spatial_resampling_filter_flag = isResampled;
        frame.Header.disable_residual_flag = hasNoResidual;
        return frame.ApplyTo(L"HDR Format", before);
    };
    EXPECT_EQ(apply(L"", 0, true, false, false), Lines({"HDR Format=DolbyVision Profile 5 (ICtCp)", "Color Space=BT.2020"}));
    EXPECT_EQ(apply(L"HDR10", 0, false, false, false), Lines({"HDR Format=HDR10"})) << "limited range is not profile 5";
    const Lines oneLayer {"HDR Format=DolbyVision Profile 8, HDR10-compatible"};
    EXPECT_EQ(apply(L"HDR10", 1, false, false, false), oneLayer);
    EXPECT_EQ(apply(L"", 1, false, true, true), oneLayer) << "a layer without residual";
    EXPECT_EQ(apply(L"HDR10+", 1, false, true, false), Lines({"HDR Format=DolbyVision Profile 7, HDR10-compatible"}));
    EXPECT_EQ(apply(L"HLG", 2, true, true, false), Lines({"HDR Format=HLG"})) << "an unknown profile";
    EXPECT_EQ(apply(L"DolbyVision Profile 4", 1, false, false, false), Lines({"HDR Format=DolbyVision Profile 4"}));
}

TEST(ZVHDRFacts, ThePeakOfAFrameTakesThePlaceOfTheLightLevel)
{
    const auto apply = [](uint16_t code)
    {
        DolbyVisionFrame frame;
        frame.Color.source_max_pq = code;
        return frame.ApplyTo(L"HDR Peak Luminance", L"50");
    };
    // Codes of usual displays, of 100, 1000 and 4000 nits, lie within 2 nits of them; and the two ends, of which 0 says nothing.
    EXPECT_EQ(apply(0), Lines({"HDR Peak Luminance=50"}));
    EXPECT_EQ(apply(1), Lines({"HDR Peak Luminance=0"}));
    EXPECT_EQ(apply(2081), Lines({"HDR Peak Luminance=100"}));
    EXPECT_EQ(apply(3079), Lines({"HDR Peak Luminance=1001"}));
    EXPECT_EQ(apply(3696), Lines({"HDR Peak Luminance=4000"}));
    EXPECT_EQ(apply(4095), Lines({"HDR Peak Luminance=10000"}));
    EXPECT_EQ(apply(UINT16_MAX), Lines({"HDR Peak Luminance=10000"}));
}
}
