#pragma once

#include "core/property/ZVPropertyMap.h"
#include "system/filename/ZVFilename.h"

#include <cstdint>
#include <span>

class IZVVideoPlayer;
struct ZVCompressionInfo;
struct ZVStreamInfo;

// Tells what the library files of a film or a sound file: what it is, how long, how large, its codecs and its tags. The object is the
// result. Made for one file.
//
// Four layers add to it, each to what those before it wrote: the MP4 reader, for files of that family; what the player says of the
// streams; the tags that the player reads; the extended analysis, which wins.
class CZVVideoAnalyzeHelper : public ZVPropertyMap
{
public:
    // Analyzes a file, a disc by one of its files, or a recording by its stub. False, with the reason in the log, when there is no
    // player library or the player cannot open the file. Neither the MP4 reader nor the extended analysis is needed for a result.
    bool AnalyzeFile(const ZVFilename& file);

private:
    enum class Mode
    {
        Plain,
        Mp4,  // what the MP4 reader found stays
    };

    // The file, and its extension, whose case is as it stands.
    struct Film
    {
        const ZVFilename& File;
        ZVString Type;
        Mode Reading;
    };

    // A property of a stream, and how its value is made.
    struct StreamProperty
    {
        const wchar_t* Name;
        ZVString (*GetText)(const ZVStreamInfo& info);
    };

    static const StreamProperty VideoProperties[3];
    static const StreamProperty AudioProperties[3];

    static Mode GetMode(const ZVString& fileType);
    void ReadMp4Tags(const Film& film);
    bool AskPlayer(const Film& film);
    void WriteFacts(const Film& film, IZVVideoPlayer& player);
    bool WriteStream(const Film& film, IZVVideoPlayer& player, int32_t kind, ZVString& codec);
    void WriteTags(const Film& film, IZVVideoPlayer& player);
    void WriteLocation(const ZVString& text);
    void MergeExtendedAnalysis(const ZVFilename& file);
    bool MayWrite(const Film& film, const wchar_t* property) const;
};
