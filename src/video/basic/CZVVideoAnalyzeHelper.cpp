#include "video/basic/CZVVideoAnalyzeHelper.h"

#include "disc/aggregate/CMediaAggregate.h"
#include "disc/recording/RecordingSize.h"
#include "mp4/CMp4File.h"
#include "mp4/OpenMp4File.h"
#include "mp4/quicktime/FindISO6709Point.h"
#include "system/library/ZVDllString.h"
#include "system/library/ZVFileTypes.h"
#include "system/library/ZVPlayers.h"
#include "system/log/ZVLogScope.h"
#include "video/basic/ZVChapters.h"
#include "video/basic/ZVCompressionInfo.h"
#include "video/basic/ZVTagMapper.h"
#include "video/basic/ZVTelevisionTags.h"
#include "video/extended/CZVVideoAnalyzeExtended.h"

#include <algorithm>
#include <limits>
#include <new>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"CZVVideoAnalyzeHelper::AnalyzeFileZVVideo"};

constexpr int32_t OpenReserved = -10'000;
constexpr int64_t MillisecondsPerSecond = 1000;

constexpr wchar_t FileSize[] = L"File Size";
constexpr wchar_t MediaType[] = L"Media Type";
constexpr wchar_t Video[] = L"Video";

// In a film this is usually the name of whoever copied it.
constexpr ZVTagRule TitleRule = {"title", L"Name"};

constexpr ZVTagRule TagRules[] = {
    {"artist",       L"Artist"      },
    {"album_artist", L"Album Artist"},
    {"album",        L"Album"       },
    {"description",  L"Description" },
    {"comment",      L"Description" },
    {"genre",        L"Genre"       },
    {"copyright",    L"Copyright"   },
    {"track",        L"Track #"     },
    {"disc",         L"Disc #"      },
    {"author",       L"Artist"      },
    {"rating",       L"Rating"      },
    {"language",     L"Language"    },
};

constexpr ZVTagRule ServiceRules[] = {
    {"service_provider", L"Service Provider"},
    {"service_name",     L"Service Name"    },
};

// In bytes, of all files that the name stands for.
int64_t GetSize(const ZVFilename& file)
{
    CMediaAggregate aggregate;
    if (CMediaAggregate::IsAggregateExtension(file.GetExtension()) && aggregate.Detect(file.GetSerialized()))
        return aggregate.GetTotalSize(true);
    return GetMediaFileSize(file);
}

// In kilobits a second.
int32_t GetBitrate(int64_t bytes, int64_t milliseconds)
{
    constexpr double Least = std::numeric_limits<int32_t>::min();
    constexpr double Most = std::numeric_limits<int32_t>::max();
    // Sparse files and damaged durations lead to any number.
    return static_cast<int32_t>(std::clamp(static_cast<double>(bytes) * 8.0 / static_cast<double>(milliseconds), Least, Most));
}
}

constexpr CZVVideoAnalyzeHelper::StreamProperty CZVVideoAnalyzeHelper::VideoProperties[] = {
    {L"FPS",    [](const ZVStreamInfo& info) { return ZVString::FromDouble(info.Fps); }},
    {L"Width",  [](const ZVStreamInfo& info) { return ZVString::FromInt(info.Width); } },
    {L"Height", [](const ZVStreamInfo& info) { return ZVString::FromInt(info.Height); }},
};

constexpr CZVVideoAnalyzeHelper::StreamProperty CZVVideoAnalyzeHelper::AudioProperties[] = {
    {L"Sample Rate", [](const ZVStreamInfo& info) { return ZVString::FromInt(info.SampleRate); }},
    {L"Channels",    [](const ZVStreamInfo& info) { return ZVString::FromInt(info.Channels); }  },
    {L"Bit Depth",   [](const ZVStreamInfo& info) { return ZVString::FromInt(info.BitDepth); }  },
};

bool CZVVideoAnalyzeHelper::AnalyzeFile(const ZVFilename& file)
{
    const ZVLogScope scope(Source, true);
    const ZVString fileType = file.GetExtension(true);
    const Film film = {file, fileType, GetMode(fileType)};
    if (film.Reading == Mode::Mp4)
        ReadMp4Tags(film);
    if (!AskPlayer(film))
        return false;
    MergeExtendedAnalysis(file);
    return true;
}

CZVVideoAnalyzeHelper::Mode CZVVideoAnalyzeHelper::GetMode(const ZVString& fileType)
{
    const bool isMp4 = !ZVFileTypes::IsInClass(fileType, IZVFileTypes::ClassPlainMedia) &&
                       ZVFileTypes::IsInClass(fileType, IZVFileTypes::ClassMp4);
    return isMp4 ? Mode::Mp4 : Mode::Plain;
}

void CZVVideoAnalyzeHelper::ReadMp4Tags(const Film& film)
{
    CMp4File mp4;
    if (!OpenMp4File(mp4, film.File, film.Type))
    {
        Source.Log("Error reading tags.  %s", mp4.GetLastError());
        return;
    }
    mp4.GetTags(*this);
    mp4.GetFileInfo(*this);
}

bool CZVVideoAnalyzeHelper::AskPlayer(const Film& film)
{
    // Without the library the loader has logged why.
    const ZVVideoPlayerPointer player = ZVPlayers::CreateVideoPlayer();
    if (player == nullptr)
        return false;
    if (!player->Open(film.File.GetSerialized(), OpenReserved))
    {
        Source.Log("Opening file failed.");
        return false;
    }
    WriteFacts(film, *player);
    WriteTags(film, *player);
    WriteChapters(*player, *this);
    return true;
}

void CZVVideoAnalyzeHelper::WriteFacts(const Film& film, IZVVideoPlayer& player)
{
    if (MayWrite(film, L"File Type"))
        SetString(L"File Type", film.Type);
    const int64_t size = GetSize(film.File);
    if (MayWrite(film, FileSize))
        SetInt64(FileSize, size);
    const int64_t duration = player.GetDuration();
    if (duration > 0 && MayWrite(film, L"Duration"))
        SetInt64(L"Duration", duration / MillisecondsPerSecond);

    ZVCompressionInfo compression;
    compression.AudioOnly = !WriteStream(film, player, ZVStreamInfo::KindVideo, compression.VideoCodec);
    compression.VideoOnly = !WriteStream(film, player, ZVStreamInfo::KindAudio, compression.AudioCodec);
    SetString(MediaType, compression.AudioOnly ? L"Audio" : Video);
    const ZVString text = compression.GetText(film.Type);
    Source.Log("Compression: %s", text);
    SetString(L"Compression", text);
    if (duration > 0 && MayWrite(film, L"Bitrate"))
        SetInt(L"Bitrate", GetBitrate(size, duration));
}

// False when the film has no stream of the kind.
bool CZVVideoAnalyzeHelper::WriteStream(const Film& film, IZVVideoPlayer& player, int32_t kind, ZVString& codec)
{
    const int32_t index = player.GetStreamIndex(kind);
    if (index < 0)
        return false;
    ZVDllString codecText(codec);
    ZVStreamInfo info;
    info.Compression = &codecText;
    player.GetStreamInfo(index, info);
    // The values of a stream belong together: one source tells all of them.
    const std::span<const StreamProperty> properties = kind == ZVStreamInfo::KindVideo ? VideoProperties : AudioProperties;
    const auto isSet = [this](const StreamProperty& property) { return IsSet(property.Name); };
    if (film.Reading == Mode::Plain || !std::ranges::all_of(properties, isSet))
        for (const StreamProperty& property : properties)
            SetString(property.Name, property.GetText(info));
    return true;
}

void CZVVideoAnalyzeHelper::WriteTags(const Film& film, IZVVideoPlayer& player)
{
    const ZVTagMapper mapper(player, *this);
    if (!GetString(MediaType).IsEqual(Video, false))
        mapper.MapTag(TitleRule);
    mapper.MapTags(TagRules);
    mapper.MapDate({"date", L"Date"}, ZVTagMapper::DateForm::Number);
    mapper.MapDate({"creation_time", L"Date Created"}, ZVTagMapper::DateForm::UnixSeconds);
    if (film.Reading == Mode::Mp4)
        WriteLocation(mapper.GetTag("location"));
    mapper.MapTags(ServiceRules);
    if (ZVTelevisionTags::AreIn(film.Type))
        ZVTelevisionTags::Map(mapper);
}

void CZVVideoAnalyzeHelper::WriteLocation(const ZVString& text)
{
    ISO6709Point point;
    if (IsSet(L"Latitude") || IsSet(L"Longitude") || !FindISO6709Point(text, point))
        return;
    SetString(L"Latitude", point.Latitude);
    SetString(L"Longitude", point.Longitude);
    SetString(L"Altitude", point.Altitude);
}

void CZVVideoAnalyzeHelper::MergeExtendedAnalysis(const ZVFilename& file)
{
    try
    {
        CZVVideoAnalyzeExtended extended;
        if (extended.AnalyzeFile(file))
            MergeFrom(extended.Properties);
    }
    catch (const std::bad_alloc&)
    {
        Source.Log("There is not enough memory for the extended analysis: %s", file.GetPathOnly());
    }
}

bool CZVVideoAnalyzeHelper::MayWrite(const Film& film, const wchar_t* property) const
{
    return film.Reading == Mode::Plain || GetString(property).IsEmpty();
}
