#include "video/extended/ZVStreamFacts.h"

#include "video/RealCodec.h"

#include <vector>

namespace
{
// Names and their values in turn.
using TagList = std::vector<const char*>;

using ZVStreamFactsTest = RealCodec;

// A stream in a container, as the libraries would hand it over.
class HandMadeStream
{
public:
    HandMadeStream(const CZVAVLibraries& codec, const char* container, AVMediaType type, const TagList& tags) : m_codec(codec)
    {
        m_container.name = container;
        Context.iformat = &m_container;
        Parameters.codec_type = type;
        Stream.codecpar = &Parameters;
        for (size_t index = 0; index < tags.size(); index += 2)
            m_codec.av_dict_set(&Stream.metadata, tags[index], tags[index + 1], 0);
    }
    ~HandMadeStream() { m_codec.av_dict_free(&Stream.metadata); }

    AVFormatContext Context {};
    AVStream Stream {};
    AVCodecParameters Parameters {};

private:
    const CZVAVLibraries& m_codec;
    AVInputFormat m_container {};
};

TEST_F(ZVStreamFactsTest, TheContainerDecidesWhatTellsTheBitrate)
{
    const auto getRate = [this](const char* container, AVMediaType type, int64_t bitrate, const TagList& tags = {})
    {
        HandMadeStream stream(m_codec, container, type, tags);
        stream.Parameters.bit_rate = bitrate;
        return ZVStreamFacts::BitrateKbps(m_codec, stream.Context, stream.Stream);
    };
    constexpr AVMediaType video = AVMEDIA_TYPE_VIDEO;
    constexpr AVMediaType audio = AVMEDIA_TYPE_AUDIO;
    // The name of a tag may end in a language.
    EXPECT_EQ(getRate("matroska,webm", audio, 384'000, {"BPS", "1500999", "BPS-eng", "2000000"}), 1500);
    EXPECT_EQ(getRate("matroska,webm", audio, 384'000, {"TITLE", "3000000", "bps-ENG", "2000000"}), 2000);
    EXPECT_EQ(getRate("matroska,webm", audio, 384'000, {"BPSX", "1000000", "BPS_eng", "2000000"}), 384);
    EXPECT_EQ(getRate("matroska,webm", video, 4'000'000), 0);
    EXPECT_EQ(getRate("matroska,webm", audio, 384'000, {"BPS", "1000"}), 384) << "a tag that counts kilobits";
    EXPECT_EQ(getRate("matroska,webm", audio, 384'000, {"BPS", "fast"}), 384) << "a tag that is no number";
    EXPECT_EQ(getRate("mpegts", video, 0, {"BPS", "1500000"}), 0) << "a tag elsewhere is not read";
    EXPECT_EQ(getRate("mov,mp4,m4a", video, 4'000'999), 4000) << "MP4 video";
    EXPECT_EQ(getRate("avi", video, 5001), 5);
    EXPECT_EQ(getRate("flv", video, 5000), 0) << "too small to be true";
    EXPECT_EQ(getRate("mpegts", audio, 448'000), 448) << "another container, audio";
    EXPECT_EQ(getRate("mp4,mov", video, 4'000'000), 0) << "the first name counts";
}

TEST(ZVStreamFacts, SideDataThatIsTooShortIsNone)
{
    uint8_t bytes[12] = {};
    AVPacketSideData data[] = {
        {bytes,     4, AV_PKT_DATA_DOVI_CONF},
        {bytes + 4, 8, AV_PKT_DATA_DOVI_CONF},
    };
    AVCodecParameters parameters {};
    EXPECT_EQ(ZVStreamFacts::FindSideData(parameters, AV_PKT_DATA_DOVI_CONF, 0), nullptr);
    parameters.coded_side_data = data;
    parameters.nb_coded_side_data = 2;
    EXPECT_EQ(ZVStreamFacts::FindSideData(parameters, AV_PKT_DATA_DOVI_CONF, 8), bytes + 4);
    EXPECT_EQ(ZVStreamFacts::FindSideData(parameters, AV_PKT_DATA_DOVI_CONF, 9), nullptr);
}
}
