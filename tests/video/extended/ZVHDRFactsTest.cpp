#include "video/extended/ZVHDRFacts.h"

#include "support/PropertyLines.h"
#include "video/extended/RealCodec.h"

namespace
{
using Lines = std::set<std::string>;

using ZVHDRFactsTest = RealCodec;

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
};

ZVPropertyMap WithFormat(const wchar_t* format)
{
    ZVPropertyMap properties;
    if (*format != 0)
        properties.SetString(L"HDR Format", format);
    return properties;
}

TEST(ZVHDRFacts, TheTransferFunctionTellsTheFormat)
{
    const struct
    {
        AVColorTransferCharacteristic Transfer;
        Lines Expected;
    } rows[] = {
        {AVCOL_TRC_SMPTE2084,    {"HDR Format=HDR10"}},
        {AVCOL_TRC_ARIB_STD_B67, {"HDR Format=HLG"}  },
        {AVCOL_TRC_SMPTE428,     {}                  },
        {AVCOL_TRC_BT2020_10,    {}                  },
    };
    for (const auto& row : rows)
    {
        ZVPropertyMap properties;
        ZVHDRFacts::ApplyTransfer(properties, row.Transfer);
        EXPECT_EQ(GetLines(properties), row.Expected) << row.Transfer;
    }
}

TEST_F(ZVHDRFactsTest, MasteringLuminanceIsCutToWholeNits)
{
    const struct
    {
        const char* Name;
        int HasLuminance;
        AVRational Luminance;
        Lines Expected;
    } rows[] = {
        {"as discs have it",     1, {10'000'000, 10'000}, {"HDR Mastering Luminance=1000"}      },
        {"cut, not rounded",     1, {39'999, 10},         {"HDR Mastering Luminance=3999"}      },
        {"a wrong unit",         1, {10, 1},              {}                                    },
        {"just above",           1, {100'001, 10'000},    {"HDR Mastering Luminance=10"}        },
        {"negative",             1, {-1000, 1},           {}                                    },
        {"no denominator",       1, {1000, 0},            {}                                    },
        {"both signs",           1, {INT32_MIN, -1},      {"HDR Mastering Luminance=2147483648"}},
        {"said not to be there", 0, {10'000'000, 10'000}, {}                                    },
    };
    for (const auto& row : rows)
    {
        ZVPropertyMap properties;
        AVMasteringDisplayMetadata mastering {};
        mastering.has_luminance = row.HasLuminance;
        mastering.max_luminance = row.Luminance;
        ZVHDRFacts::ApplyHdrMetadata(properties, m_codec, &mastering, nullptr);
        EXPECT_EQ(GetLines(properties), row.Expected) << row.Name;
    }
}

TEST_F(ZVHDRFactsTest, MasteringPrimariesAreNamedByTheirPlaces)
{
    // Red, green, blue and white in units of 0.00002, as a bit stream has them.
    // clang-format off
    const struct
    {
        const char* Name;
        int Places[4][2];
        int Unit;
        const char* Expected;
    } rows[] = {
        {"BT.2020",        {{35400, 14600}, {8500, 39850}, {6550, 2300}, {15635, 16450}}, 50000, "BT.2020"},
        {"P3, white D65",  {{34000, 16000}, {13250, 34500}, {7500, 3000}, {15635, 16450}}, 50000, "Display P3"},
        {"P3, theatrical", {{34000, 16000}, {13250, 34500}, {7500, 3000}, {15700, 17550}}, 50000, "DCI P3"},
        {"BT.709",         {{32000, 16500}, {15000, 30000}, {7500, 3000}, {15635, 16450}}, 50000, "BT.709"},
        {"wrong order",    {{8500, 39850}, {6550, 2300}, {35400, 14600}, {15635, 16450}}, 50000, nullptr},
        {"no denominator", {{35400, 14600}, {8500, 39850}, {6550, 2300}, {15635, 16450}}, 0, nullptr},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        ZVPropertyMap properties;
        AVMasteringDisplayMetadata mastering {};
        mastering.has_primaries = 1;
        for (size_t axis = 0; axis < 2; ++axis)
        {
            for (size_t color = 0; color < 3; ++color)
                mastering.display_primaries[color][axis] = {row.Places[color][axis], row.Unit};
            mastering.white_point[axis] = {row.Places[3][axis], row.Unit};
        }
        ZVHDRFacts::ApplyHdrMetadata(properties, m_codec, &mastering, nullptr);
        const std::string line = std::string("HDR Mastering Color Space=") + (row.Expected != nullptr ? row.Expected : "");
        EXPECT_EQ(GetLines(properties), row.Expected != nullptr ? Lines({line}) : Lines());

        mastering.has_primaries = 0;
        ZVPropertyMap none;
        ZVHDRFacts::ApplyHdrMetadata(none, m_codec, &mastering, nullptr);
        EXPECT_EQ(GetLines(none), Lines());
    }
}

TEST_F(ZVHDRFactsTest, LightLevelsOfZeroAreNotKnown)
{
    const struct
    {
        AVContentLightMetadata Light;
        Lines Expected;
    } rows[] = {
        {{1000, 400},     {"HDR Peak Luminance=1000", "HDR Average Luminance=400"}},
        {{0, 400},        {"HDR Average Luminance=400"}                           },
        {{1, 0},          {"HDR Peak Luminance=1"}                                },
        {{UINT32_MAX, 0}, {"HDR Peak Luminance=4294967295"}                       },
        {{0, 0},          {}                                                      },
    };
    for (const auto& row : rows)
    {
        ZVPropertyMap properties;
        ZVHDRFacts::ApplyHdrMetadata(properties, m_codec, nullptr, &row.Light);
        EXPECT_EQ(GetLines(properties), row.Expected);
    }
}

TEST(ZVHDRFacts, DynamicMetadataMakesHDR10TheBetterFormat)
{
    const struct
    {
        const wchar_t* Before;
        const char* After;
    } rows[] = {
        {L"",                        "HDR10+"                 },
        {L"HDR10",                   "HDR10+"                 },
        {L"HDR10+",                  "HDR10+"                 },
        {L"HLG",                     "HLG"                    },
        {L"DolbyVision Profile 8.1", "DolbyVision Profile 8.1"},
    };
    for (const auto& row : rows)
    {
        ZVPropertyMap properties = WithFormat(row.Before);
        ZVHDRFacts::ApplyDynamic(properties);
        EXPECT_EQ(GetLines(properties), Lines({std::string("HDR Format=") + row.After}));
    }
}

TEST(ZVHDRFacts, TheRecordOfTheContainerNamesTheProfile)
{
    const struct
    {
        uint8_t Profile;
        uint8_t Compatibility;
        Lines Expected;
    } rows[] = {
        {4,   2,   {"HDR Format=DolbyVision Profile 4"}                               },
        {5,   0,   {"HDR Format=DolbyVision Profile 5 (ICtCp)", "Color Space=BT.2020"}},
        {6,   1,   {"HDR Format=DolbyVision Profile 6, HDR10-compatible"}             },
        {7,   6,   {"HDR Format=DolbyVision Profile 7, HDR10-compatible"}             },
        {8,   1,   {"HDR Format=DolbyVision Profile 8.1, HDR10-compatible"}           },
        {8,   2,   {"HDR Format=DolbyVision Profile 8.2"}                             },
        {8,   4,   {"HDR Format=DolbyVision Profile 8.4, HLG-compatible"}             },
        {8,   255, {"HDR Format=DolbyVision Profile 8.255"}                           },
        {10,  4,   {"HDR Format=DolbyVision Profile 10"}                              },
        {255, 0,   {"HDR Format=DolbyVision Profile 255"}                             },
    };
    for (const auto& row : rows)
    {
        ZVPropertyMap properties = WithFormat(L"HDR10");
        AVDOVIDecoderConfigurationRecord record {};
        record.dv_profile = row.Profile;
        record.dv_bl_signal_compatibility_id = row.Compatibility;
        ZVHDRFacts::ApplyDolbyVision(properties, record);
        EXPECT_EQ(GetLines(properties), row.Expected);
    }
}

TEST(ZVHDRFacts, TheMetadataOfAFrameNamesTheProfileWhenTheContainerDoesNot)
{
    // clang-format off
    const struct
    {
        const char* Name;
        const wchar_t* Before;
        uint8_t Profile;
        bool IsFullRange, IsResampled, HasNoResidual;
        uint16_t Peak;
        Lines Expected;
    } rows[] = {
        {"profile 5", L"", 0, true, false, false, 0, {"HDR Format=DolbyVision Profile 5 (ICtCp)", "Color Space=BT.2020"}},
        {"limited range is not profile 5", L"HDR10", 0, false, false, false, 0, {"HDR Format=HDR10"}},
        {"one layer", L"HDR10", 1, false, false, false, 0, {"HDR Format=DolbyVision Profile 8, HDR10-compatible"}},
        {"a layer without residual", L"", 1, false, true, true, 0, {"HDR Format=DolbyVision Profile 8, HDR10-compatible"}},
        {"two layers", L"HDR10+", 1, false, true, false, 0, {"HDR Format=DolbyVision Profile 7, HDR10-compatible"}},
        {"an unknown profile", L"HLG", 2, true, true, false, 0, {"HDR Format=HLG"}},
        {"the record is better, but has no peak", L"DolbyVision Profile 8.4, HLG-compatible", 1, false, false, false, 3079,
         {"HDR Format=DolbyVision Profile 8.4, HLG-compatible", "HDR Peak Luminance=1001"}},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        ZVPropertyMap properties = WithFormat(row.Before);
        DolbyVisionFrame frame;
        frame.Header.vdr_rpu_profile = row.Profile;
        frame.Header.bl_video_full_range_flag = row.IsFullRange;
        frame.Header.el_spatial_resampling_filter_flag = row.IsResampled;
        frame.Header.disable_residual_flag = row.HasNoResidual;
        frame.Color.source_max_pq = row.Peak;
        ZVHDRFacts::ApplyDolbyVision(properties, frame.Metadata);
        EXPECT_EQ(GetLines(properties), row.Expected);
    }
}

TEST(ZVHDRFacts, ThePeakOfAFrameTakesThePlaceOfTheLightLevel)
{
    ZVPropertyMap properties;
    properties.SetInt(L"HDR Peak Luminance", 50);
    DolbyVisionFrame frame;
    ZVHDRFacts::ApplyDolbyVision(properties, frame.Metadata);
    EXPECT_EQ(GetLines(properties), Lines({"HDR Peak Luminance=50"}));
    frame.Color.source_max_pq = 2081;
    ZVHDRFacts::ApplyDolbyVision(properties, frame.Metadata);
    EXPECT_EQ(GetLines(properties), Lines({"HDR Peak Luminance=100"}));
}

TEST(ZVHDRFacts, CodeValuesBecomeNits)
{
    // The codes of the usual displays, of 100, 600, 1000, 2000 and 4000 nits, lie within 2 nits of them; and the two ends.
    const struct
    {
        uint16_t Value;
        int32_t Nits;
    } rows[] = {
        {0,          0    },
        {1,          0    },
        {2081,       100  },
        {2851,       600  },
        {3079,       1001 },
        {3388,       1999 },
        {3696,       4000 },
        {4095,       10000},
        {UINT16_MAX, 10000},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ZVHDRFacts::GetNitsOfPQ(row.Value), row.Nits) << row.Value;
}
}
