#include "siblings/player/CFilmFacts.h"

#include "siblings/player/CDisplayMatrix.h"
#include "siblings/player/CTagNames.h"
#include "video/film/ZVCodecName.h"

#include <algorithm>

namespace
{
// Of a sound whose codec has no samples of a size, as AAC: what decoders give.
constexpr int32_t UsualBitDepth = 16;

constexpr AVRational Milliseconds = {1, 1000};

// The first sound that the container wants played, else the first.
int32_t FindAudioStream(std::span<AVStream* const> streams)
{
    int32_t first = -1;
    for (const AVStream* const stream : streams)
    {
        if (stream->codecpar->codec_type != AVMEDIA_TYPE_AUDIO)
            continue;
        if ((stream->disposition & AV_DISPOSITION_DEFAULT) != 0)
            return stream->index;
        if (first < 0)
            first = stream->index;
    }
    return first;
}

// What a broadcast says of the programme that a stream belongs to; null when there is none.
const AVDictionary* FindProgrammeTags(const AVFormatContext& container, int32_t stream)
{
    for (const AVProgram* const programme : std::span(container.programs, container.nb_programs))
        for (const unsigned index : std::span(programme->stream_index, programme->nb_stream_indexes))
            if (index == static_cast<unsigned>(stream))
                return programme->metadata;
    return nullptr;
}

ZVString GetText(const CZVAVLibraries& codec, const AVDictionary* tags, const char* name)
{
    const AVDictionaryEntry* const entry = codec.av_dict_get(tags, name, nullptr, 0);
    return entry == nullptr ? ZVString() : ZVString::FromUTF8(entry->value);
}

double GetFps(const AVStream& stream)
{
    for (const AVRational& rate : {stream.avg_frame_rate, stream.r_frame_rate})
        if (rate.num > 0 && rate.den > 0)
            return av_q2d(rate);
    return 0;
}

int32_t GetBitDepth(const AVCodecParameters& parameters)
{
    if (parameters.bits_per_raw_sample > 0)
        return parameters.bits_per_raw_sample;
    return parameters.bits_per_coded_sample > 0 ? parameters.bits_per_coded_sample : UsualBitDepth;
}

// Of the longest stream, where the container as a whole does not tell.
int64_t GetDuration(const ZVFilmReader& film)
{
    const CZVAVLibraries& codec = film.GetCodec();
    if (film.GetContainer().duration > 0)
        return codec.av_rescale_q(film.GetContainer().duration, {1, AV_TIME_BASE}, Milliseconds);
    int64_t duration = 0;
    for (const AVStream* const stream : film.GetStreams())
        if (stream->duration > 0)
            duration = std::max(duration, codec.av_rescale_q(stream->duration, stream->time_base, Milliseconds));
    return duration;
}
}

void CFilmFacts::Read(const ZVFilmReader& film)
{
    Duration = GetDuration(film);
    for (const AVStream* const stream : film.GetStreams())
        ReadStream(film, *stream);
    VideoStream = film.GetMainStream() == nullptr ? -1 : film.GetMainStream()->index;
    AudioStream = FindAudioStream(film.GetStreams());
    ReadTags(film, film.GetContainer().metadata);
    const int32_t best = VideoStream < 0 ? AudioStream : VideoStream;
    if (best >= 0)
    {
        ReadTags(film, film.GetStreams()[static_cast<size_t>(best)]->metadata);
        ReadTags(film, FindProgrammeTags(film.GetContainer(), best));
    }
    ReadChapters(film);
}

void CFilmFacts::ReadStream(const ZVFilmReader& film, const AVStream& stream)
{
    const CZVAVLibraries& codec = film.GetCodec();
    const AVCodecParameters& parameters = *stream.codecpar;
    CStreamFacts facts;
    facts.Title = GetText(codec, stream.metadata, "title");
    facts.Language = GetText(codec, stream.metadata, "language");
    facts.Compression = PlainCodecName(codec, parameters.codec_id);
    if (const AVCodecDescriptor* const descriptor = codec.avcodec_descriptor_get(parameters.codec_id))
        facts.Codec = ZVString::FromUTF8(descriptor->name);
    if (parameters.codec_type == AVMEDIA_TYPE_VIDEO)
    {
        const CDisplayMatrix matrix(codec, stream);
        facts.Kind = ZVStreamInfo::KindVideo;
        facts.WidthOrChannels = parameters.width;
        facts.HeightOrSampleRate = parameters.height;
        facts.Fps = GetFps(stream);
        facts.Rotation = matrix.Rotation;
        facts.IsMirrored = matrix.IsMirrored;
    }
    else if (parameters.codec_type == AVMEDIA_TYPE_AUDIO)
    {
        facts.Kind = ZVStreamInfo::KindAudio;
        facts.WidthOrChannels = parameters.ch_layout.nb_channels;
        facts.HeightOrSampleRate = parameters.sample_rate;
        facts.BitDepth = GetBitDepth(parameters);
    }
    Streams.push_back(std::move(facts));
}

// Tags that were read before keep their place: the container's come before those of its stream, and these before its programme's.
void CFilmFacts::ReadTags(const ZVFilmReader& film, const AVDictionary* tags)
{
    const AVDictionaryEntry* entry = nullptr;
    while ((entry = film.GetCodec().av_dict_get(tags, "", entry, AV_DICT_IGNORE_SUFFIX)) != nullptr)
        m_tags.push_back({entry->key, entry->value});
}

const std::string* CFilmFacts::FindTag(const char* name) const
{
    for (const Tag& tag : m_tags)
        if (CTagNames::AreSame(tag.Name.c_str(), name))
            return &tag.Text;
    return nullptr;
}

ZVString CFilmFacts::GetTag(const char* name) const
{
    const std::string* text = FindTag(name);
    const char* const newName = text == nullptr ? CTagNames::FindNewName(name) : nullptr;
    if (newName != nullptr)
        text = FindTag(newName);
    return text == nullptr ? ZVString() : ZVString::FromUTF8(text->c_str());
}

void CFilmFacts::ReadChapters(const ZVFilmReader& film)
{
    const AVFormatContext& container = film.GetContainer();
    const CZVAVLibraries& codec = film.GetCodec();
    for (unsigned index = 0; index < container.nb_chapters; ++index)
    {
        const AVChapter& chapter = *container.chapters[index];
        Chapters.push_back(
            {GetText(codec, chapter.metadata, "title"), codec.av_rescale_q(chapter.start, chapter.time_base, Milliseconds)});
    }
    std::ranges::stable_sort(Chapters, {}, &CChapterFacts::Milliseconds);
}
