#include "video/extended/ZVStreamFacts.h"

#include "core/property/ZVPropertyMap.h"
#include "disc/language/LanguageCodes.h"
#include "video/film/ZVCodecName.h"

#include <string>
#include <string_view>

namespace
{
// Below these a value in bits per second is taken for a mistake.
constexpr int64_t LeastTagBitrate = 1000;
constexpr int64_t LeastStreamBitrate = 5000;
constexpr int64_t BitsPerKilobit = 1000;

constexpr std::string_view ContainerWithTags = "matroska";
constexpr std::string_view ContainersWithBitrates[] = {"mov", "avi", "flv"};

std::string_view GetContainerName(const AVFormatContext& context)
{
    const std::string_view names = context.iformat != nullptr && context.iformat->name != nullptr ? context.iformat->name : "";
    return names.substr(0, names.find(','));
}

bool MayUseStreamBitrate(std::string_view container, const AVStream& stream)
{
    for (const std::string_view name : ContainersWithBitrates)
        if (name == container)
            return true;
    return stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
}

void AddEntry(ZVPropertyMap& properties, const wchar_t* key, const ZVString& entry)
{
    properties.SetString(key, properties.GetString(key) + entry + L";");
}
}

ZVString ZVStreamFacts::GetStreamTag(const CZVAVLibraries& codec, const AVStream& stream, const char* key)
{
    const AVDictionaryEntry* entry = codec.av_dict_get(stream.metadata, key, nullptr, 0);
    if (entry == nullptr || entry->value == nullptr)
        entry = codec.av_dict_get(stream.metadata, (std::string(key) + "-").c_str(), nullptr, AV_DICT_IGNORE_SUFFIX);
    return entry == nullptr || entry->value == nullptr ? ZVString() : ZVString::FromUTF8(entry->value);
}

int32_t ZVStreamFacts::BitrateKbps(const CZVAVLibraries& codec, const AVFormatContext& context, const AVStream& stream)
{
    const std::string_view container = GetContainerName(context);
    if (container == ContainerWithTags)
    {
        const int32_t tag = GetStreamTag(codec, stream, "BPS").ToInt();
        if (tag > LeastTagBitrate)
            return static_cast<int32_t>(tag / BitsPerKilobit);
    }
    const int64_t bitrate = MayUseStreamBitrate(container, stream) ? stream.codecpar->bit_rate : 0;
    return bitrate > LeastStreamBitrate ? static_cast<int32_t>(bitrate / BitsPerKilobit) : 0;
}

ZVString ZVStreamFacts::GetLanguage(const CZVAVLibraries& codec, const AVStream& stream)
{
    return LanguageNameFromCode(NormalizeLanguageCode(GetStreamTag(codec, stream, "language")));
}

void ZVStreamFacts::AddAudioStream(ZVPropertyMap& properties, const CZVAVLibraries& codec, const ListedStream& listed)
{
    const AVCodecParameters& parameters = *listed.Stream.codecpar;
    properties.SetInt(L"Audio Streams", properties.GetInt(L"Audio Streams", 0) + 1);
    AddEntry(properties, L"Audio Codec", CodecName(codec, parameters));
    AddEntry(properties, L"Audio Channels", ZVString::FromInt(parameters.ch_layout.nb_channels));
    AddEntry(properties, L"Audio Sample Rate", ZVString::FromInt(parameters.sample_rate));
    const int32_t bitrate = BitrateKbps(codec, listed.Container, listed.Stream);
    AddEntry(properties, L"Audio Bitrate", bitrate < 1 ? ZVString() : ZVString::FromInt(bitrate));
    AddEntry(properties, L"Audio Title", GetStreamTag(codec, listed.Stream, "title"));
    AddEntry(properties, L"Audio Language", listed.Language);
}

void ZVStreamFacts::AddSubtitleStream(ZVPropertyMap& properties, const CZVAVLibraries& codec, const ListedStream& listed)
{
    properties.SetInt(L"Subtitle Streams", properties.GetInt(L"Subtitle Streams", 0) + 1);
    AddEntry(properties, L"Subtitle Codec", CodecName(codec, *listed.Stream.codecpar));
    AddEntry(properties, L"Subtitle Title", GetStreamTag(codec, listed.Stream, "title"));
    AddEntry(properties, L"Subtitle Language", listed.Language);
}

const void* ZVStreamFacts::FindSideData(const AVCodecParameters& parameters, AVPacketSideDataType type, size_t minimumSize)
{
    for (int32_t index = 0; index < parameters.nb_coded_side_data; ++index)
    {
        const AVPacketSideData& data = parameters.coded_side_data[index];
        if (data.type == type && data.size >= minimumSize)
            return data.data;
    }
    return nullptr;
}
