#include "video/extended/ZVStreamFacts.h"

#include "support/PropertyLines.h"
#include "video/extended/RealCodec.h"

#include <vector>

namespace
{
using TagList = std::vector<std::pair<const char*, const char*>>;

// A stream in a container, as the libraries would hand it over.
class HandMadeStream
{
public:
    HandMadeStream(const CZVAVLibraries& codec, const char* containerName, AVMediaType type, const TagList& tags) : m_codec(codec)
    {
        m_container.name = containerName;
        Context.iformat = &m_container;
        Parameters.codec_type = type;
        Parameters.profile = AV_PROFILE_UNKNOWN;
        Stream.codecpar = &Parameters;
        for (const auto& [key, value] : tags)
            m_codec.av_dict_set(&Stream.metadata, key, value, 0);
    }
    ~HandMadeStream() { m_codec.av_dict_free(&Stream.metadata); }
    HandMadeStream(const HandMadeStream&) = delete;
    HandMadeStream& operator=(const HandMadeStream&) = delete;

    AVFormatContext Context {};
    AVStream Stream {};
    AVCodecParameters Parameters {};

private:
    const CZVAVLibraries& m_codec;
    AVInputFormat m_container {};
};

class ZVStreamFactsTest : public RealCodec
{
protected:
    int32_t BitrateOf(const char* container, AVMediaType type, int64_t bitrate, const TagList& tags = {}) const
    {
        HandMadeStream stream(m_codec, container, type, tags);
        stream.Parameters.bit_rate = bitrate;
        return ZVStreamFacts::BitrateKbps(m_codec, stream.Context, stream.Stream);
    }
};

TEST_F(ZVStreamFactsTest, ATagMayHaveALanguageBehindItsName)
{
    const struct
    {
        const char* Name;
        TagList Tags;
        const wchar_t* Expected;
    } rows[] = {
        {"none",                {},                                 L""             },
        {"plain",               {{"BPS", "1"}, {"BPS-eng", "2"}},   L"1"            },
        {"with a language",     {{"TITLE", "3"}, {"BPS-eng", "2"}}, L"2"            },
        {"in another case",     {{"bps-ENG", "2"}},                 L"2"            },
        {"a longer name",       {{"BPSX", "1"}, {"BPS_eng", "2"}},  L""             },
        {"an empty one is one", {{"BPS", ""}, {"BPS-eng", "2"}},    L""             },
        {"UTF-8",               {{"BPS", "Ton f\xc3\xbcr alle"}},   L"Ton für alle"},
    };
    for (const auto& row : rows)
    {
        const HandMadeStream stream(m_codec, "matroska,webm", AVMEDIA_TYPE_VIDEO, row.Tags);
        EXPECT_EQ(ZVStreamFacts::GetStreamTag(m_codec, stream.Stream, "BPS"), row.Expected) << row.Name;
    }
}

TEST_F(ZVStreamFactsTest, TheContainerDecidesWhatTellsTheBitrate)
{
    const struct
    {
        const char* Name;
        const char* Container;
        AVMediaType Type;
        int64_t Bitrate;
        TagList Tags;
        int32_t Expected;
    } rows[] = {
        {"Matroska by its tag",           "matroska,webm", AVMEDIA_TYPE_VIDEO, 0,         {{"BPS-eng", "1500999"}}, 1500},
        {"the tag wins",                  "matroska,webm", AVMEDIA_TYPE_AUDIO, 384'000,   {{"BPS", "640000"}},      640 },
        {"a tag that counts kilobits",    "matroska,webm", AVMEDIA_TYPE_AUDIO, 384'000,   {{"BPS", "1000"}},        384 },
        {"a tag that is no number",       "matroska,webm", AVMEDIA_TYPE_AUDIO, 384'000,   {{"BPS", "fast"}},        384 },
        {"Matroska without a tag, video", "matroska,webm", AVMEDIA_TYPE_VIDEO, 4'000'000, {},                       0   },
        {"a tag elsewhere is not read",   "mpegts",        AVMEDIA_TYPE_VIDEO, 0,         {{"BPS", "1500000"}},     0   },
        {"MP4 video",                     "mov,mp4,m4a",   AVMEDIA_TYPE_VIDEO, 4'000'999, {},                       4000},
        {"AVI video",                     "avi",           AVMEDIA_TYPE_VIDEO, 5001,      {},                       5   },
        {"too small to be true",          "flv",           AVMEDIA_TYPE_VIDEO, 5000,      {},                       0   },
        {"another container, video",      "mpegts",        AVMEDIA_TYPE_VIDEO, 4'000'000, {},                       0   },
        {"another container, audio",      "mpegts",        AVMEDIA_TYPE_AUDIO, 448'000,   {},                       448 },
        {"another container, small",      "mpegts",        AVMEDIA_TYPE_AUDIO, 5000,      {},                       0   },
        {"a name that only begins so",    "movie",         AVMEDIA_TYPE_VIDEO, 4'000'000, {},                       0   },
        {"in another case",               "AVI",           AVMEDIA_TYPE_VIDEO, 4'000'000, {},                       0   },
        {"the first name counts",         "mp4,mov",       AVMEDIA_TYPE_VIDEO, 4'000'000, {},                       0   },
    };
    for (const auto& row : rows)
        EXPECT_EQ(BitrateOf(row.Container, row.Type, row.Bitrate, row.Tags), row.Expected) << row.Name;
}

TEST_F(ZVStreamFactsTest, ListsStayAlignedWhereATextIsMissing)
{
    ZVPropertyMap properties;
    HandMadeStream first(m_codec, "mpegts", AVMEDIA_TYPE_AUDIO,
                         {
                             {"title",    "Kommentar"},
                             {"language", "de"       }
    });
    first.Parameters.codec_id = AV_CODEC_ID_AC3;
    first.Parameters.ch_layout.nb_channels = 6;
    first.Parameters.sample_rate = 48000;
    first.Parameters.bit_rate = 448'000;
    HandMadeStream second(m_codec, "mpegts", AVMEDIA_TYPE_AUDIO,
                          {
                              {"language", "und"}
    });
    HandMadeStream third(m_codec, "mpegts", AVMEDIA_TYPE_AUDIO,
                         {
                             {"language",  "xyz"  },
                             {"title-eng", "Music"}
    });
    for (HandMadeStream* stream : {&first, &second, &third})
        ZVStreamFacts::AddAudioStream(properties, m_codec, stream->Context, stream->Stream);
    HandMadeStream subtitle(m_codec, "mpegts", AVMEDIA_TYPE_SUBTITLE,
                            {
                                {"language", "English"}
    });
    subtitle.Parameters.codec_id = AV_CODEC_ID_HDMV_PGS_SUBTITLE;
    ZVStreamFacts::AddSubtitleStream(properties, m_codec, subtitle.Stream);

    EXPECT_EQ(GetLines(properties), GetLines(std::string("Audio Streams=3\n"
                                                         "Audio Codec=AC-3;Unknown;Unknown;\n"
                                                         "Audio Channels=6;0;0;\n"
                                                         "Audio Sample Rate=48000;0;0;\n"
                                                         "Audio Bitrate=448;;;\n"
                                                         "Audio Title=Kommentar;;Music;\n"
                                                         "Audio Language=German;;;\n"
                                                         "Subtitle Streams=1\n"
                                                         "Subtitle Codec=PGS;\n"
                                                         "Subtitle Title=;\n"
                                                         "Subtitle Language=English;\n")));
}

TEST(ZVStreamFacts, SideDataThatIsTooShortIsNone)
{
    uint8_t bytes[24] = {};
    AVPacketSideData data[] = {
        {bytes,      4,  AV_PKT_DATA_DOVI_CONF},
        {bytes + 4,  8,  AV_PKT_DATA_DOVI_CONF},
        {bytes + 12, 12, AV_PKT_DATA_SPHERICAL},
    };
    AVCodecParameters parameters {};
    EXPECT_EQ(ZVStreamFacts::FindSideData(parameters, AV_PKT_DATA_DOVI_CONF, 0), nullptr);
    parameters.coded_side_data = data;
    parameters.nb_coded_side_data = 3;
    EXPECT_EQ(ZVStreamFacts::FindSideData(parameters, AV_PKT_DATA_DOVI_CONF, 4), bytes);
    EXPECT_EQ(ZVStreamFacts::FindSideData(parameters, AV_PKT_DATA_DOVI_CONF, 8), bytes + 4);
    EXPECT_EQ(ZVStreamFacts::FindSideData(parameters, AV_PKT_DATA_DOVI_CONF, 9), nullptr);
    EXPECT_EQ(ZVStreamFacts::FindSideData(parameters, AV_PKT_DATA_MASTERING_DISPLAY_METADATA, 0), nullptr);
}
}
