#include "video/extended/ZVHDRFacts.h"

#include "support/PropertyLines.h"
#include "video/RealCodec.h"

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

// What is made of a property.
template <class Change>
Lines Changed(const wchar_t* key, const wchar_t* before, Change change)
{
    ZVPropertyMap properties;
    properties.SetString(key, before, true);
    change(properties);
    return GetLines(properties);
}

// Side data of a frame, laid out as the libraries do it: the record with the places of the parts that follow it.
struct DolbyVisionFrame
{
    AVDOVIMetadata Metadata {};
    AVDOVIRpuDataHeader Header {};
    AVDOVIDataMapping Mapping {};
    AVDOVIColorMetadata Color {};

    void operator()(ZVPropertyMap& properties)
    {
        Metadata.header_offset = offsetof(DolbyVisionFrame, Header);
        Metadata.mapping_offset = offsetof(DolbyVisionFrame, Mapping);
        Metadata.color_offset = offsetof(DolbyVisionFrame, Color);
        ZVHDRFacts::ApplyDolbyVision(properties, Metadata);
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
    EXPECT_EQ(apply({10, 1}), Lines()) << "a wrong unit";
    EXPECT_EQ(apply({1000, 0}), Lines());
    EXPECT_EQ(apply({INT32_MIN, -1}), Lines({"HDR Mastering Luminance=2147483648"}));

    const AVContentLightMetadata lights[] = {
        {UINT32_MAX, 0},
        {0,          1}
    };
    EXPECT_EQ(Apply(nullptr, &lights[0]), Lines({"HDR Peak Luminance=4294967295"}));
    EXPECT_EQ(Apply(nullptr, &lights[1]), Lines({"HDR Average Luminance=1"}));
}

TEST_F(ZVHDRFactsTest, MasteringPrimariesNeedAllOfTheirPlaces)
{
    AVMasteringDisplayMetadata mastering {};
    AVRational* const places = &mastering.display_primaries[0][0];
    for (size_t index = 0; const int place : {35400, 14600, 8500, 39850, 6550, 2300})
        places[index++] = {place, 50000};
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
}

TEST(ZVHDRFacts, DynamicMetadataMakesHDR10TheBetterFormat)
{
    EXPECT_EQ(Changed(L"HDR Format", L"", ZVHDRFacts::ApplyDynamic), Lines({"HDR Format=HDR10+"}));
    EXPECT_EQ(Changed(L"HDR Format", L"HDR10", ZVHDRFacts::ApplyDynamic), Lines({"HDR Format=HDR10+"}));
    EXPECT_EQ(Changed(L"HDR Format", L"HLG", ZVHDRFacts::ApplyDynamic), Lines({"HDR Format=HLG"}));
}

TEST(ZVHDRFacts, TheRecordOfTheContainerNamesTheProfile)
{
    const auto apply = [](uint8_t profile, uint8_t compatibility)
    {
        AVDOVIDecoderConfigurationRecord record {};
        record.dv_profile = profile;
        record.dv_bl_signal_compatibility_id = compatibility;
        return Changed(L"HDR Format", L"HDR10",
                       [&record](ZVPropertyMap& properties) { ZVHDRFacts::ApplyDolbyVision(properties, record); });
    };
    EXPECT_EQ(apply(4, 2), Lines({"HDR Format=DolbyVision Profile 4"}));
    EXPECT_EQ(apply(5, 0), Lines({"HDR Format=DolbyVision Profile 5 (ICtCp)", "Color Space=BT.2020"}));
    EXPECT_EQ(apply(7, 6), Lines({"HDR Format=DolbyVision Profile 7, HDR10-compatible"}));
    EXPECT_EQ(apply(8, 1), Lines({"HDR Format=DolbyVision Profile 8.1, HDR10-compatible"}));
    EXPECT_EQ(apply(8, 4), Lines({"HDR Format=DolbyVision Profile 8.4, HLG-compatible"}));
    EXPECT_EQ(apply(8, 255), Lines({"HDR Format=DolbyVision Profile 8.255"}));
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
        return Changed(L"HDR Format", before, frame);
    };
    EXPECT_EQ(apply(L"", 0, true, false, false), Lines({"HDR Format=DolbyVision Profile 5 (ICtCp)", "Color Space=BT.2020"}));
    EXPECT_EQ(apply(L"HDR10", 0, false, false, false), Lines({"HDR Format=HDR10"})) << "limited range is not profile 5";
    const Lines oneLayer {"HDR Format=DolbyVision Profile 8, HDR10-compatible"};
    EXPECT_EQ(apply(L"HDR10", 1, false, false, false), oneLayer);
    EXPECT_EQ(apply(L"", 1, false, true, true), oneLayer) << "a layer without residual";
    EXPECT_EQ(apply(L"HDR10+", 1, false, true, false), Lines({"HDR Format=DolbyVision Profile 7, HDR10-compatible"}));
    EXPECT_EQ(apply(L"DolbyVision Profile 4", 1, false, false, false), Lines({"HDR Format=DolbyVision Profile 4"}));
}

TEST(ZVHDRFacts, ThePeakOfAFrameTakesThePlaceOfTheLightLevel)
{
    const auto apply = [](uint16_t code)
    {
        DolbyVisionFrame frame;
        frame.Color.source_max_pq = code;
        return Changed(L"HDR Peak Luminance", L"50", frame);
    };
    // Codes of usual displays, of 100 and 4000 nits, and the two ends, of which 0 says nothing.
    EXPECT_EQ(apply(0), Lines({"HDR Peak Luminance=50"}));
    EXPECT_EQ(apply(2081), Lines({"HDR Peak Luminance=100"}));
    EXPECT_EQ(apply(3696), Lines({"HDR Peak Luminance=4000"}));
    EXPECT_EQ(apply(4095), Lines({"HDR Peak Luminance=10000"}));
}
}
