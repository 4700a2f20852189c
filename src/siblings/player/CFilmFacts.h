#pragma once

#include "contracts/ZVStreamInfo.h"
#include "core/containers/ZVMap.h"
#include "core/string/ZVString.h"
#include "video/film/ZVFilmReader.h"

#include <cstdint>
#include <string>
#include <vector>

// What a stream is; see ZVStreamInfo for the units.
struct CStreamFacts
{
    static constexpr int32_t KindOther = -1;

    ZVString Title;
    ZVString Language;
    ZVString Compression;
    ZVString Codec;
    int32_t Kind = KindOther;
    int32_t WidthOrChannels = 0;
    int32_t HeightOrSampleRate = 0;
    int32_t BitDepth = 0;
    double Fps = 0;
    int32_t Rotation = 0;
    bool IsMirrored = false;  // frames are mirrored from left to right before they are turned
};

struct CChapterFacts
{
    ZVString Name;
    int64_t Milliseconds = 0;
};

// What the container of a film says of it, copied, so that it can be asked while the film is read on another thread.
class CFilmFacts
{
public:
    // Takes everything out of an open film, whose main stream is chosen.
    void Read(const ZVFilmReader& film);

    // The text of a tag, or empty. Names are compared without regard to case.
    ZVString GetTag(const char* name) const;

    // In milliseconds; 0 when it is not known.
    int64_t Duration = 0;
    std::vector<CStreamFacts> Streams;
    // The main streams, or -1.
    int32_t VideoStream = -1;
    int32_t AudioStream = -1;
    // In the order of their times.
    std::vector<CChapterFacts> Chapters;

private:
    struct Tag
    {
        std::string Name;
        std::string Text;
    };

    const std::string* FindTag(const char* name) const;
    void ReadStream(const ZVFilmReader& film, const AVStream& stream);
    void ReadTags(const ZVFilmReader& film, const AVDictionary* tags);
    void ReadChapters(const ZVFilmReader& film);

    std::vector<Tag> m_tags;
};
