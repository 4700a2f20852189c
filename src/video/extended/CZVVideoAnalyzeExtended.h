#pragma once

#include "core/property/ZVPropertyMap.h"
#include "system/filename/ZVFilename.h"
#include "video/film/ZVFilmReader.h"
#include "video/film/ZVFilmSource.h"

#include <cstdint>

// Tells what a film is from its container and its first frames: codec, bit rate, depth, colours, high dynamic range, scan type,
// aspect, and the list of its audio and subtitle streams. Made for one file. Only as much is read as the first frames need.
class CZVVideoAnalyzeExtended
{
public:
    CZVVideoAnalyzeExtended();
    CZVVideoAnalyzeExtended(const CZVVideoAnalyzeExtended&) = delete;
    CZVVideoAnalyzeExtended& operator=(const CZVVideoAnalyzeExtended&) = delete;

    // Analyzes a file, or the main title of the Blu-ray disc that it names, once per object. False, with the reason in the log,
    // when the codec libraries are missing, for a kind of input that is not analyzed here, for a disc without a title, for a file
    // that they do not open, and when the machine lacks the memory to decode it. Whatever else is missing in the file is missing
    // in the result.
    bool AnalyzeFile(const ZVFilename& file);

    // The result.
    ZVPropertyMap Properties;

private:
    bool Analyze(const ZVFilename& file, const ZVFilmSource& source);
    void WriteMainStream();
    void WalkStreams(const ZVFilmSource& source);
    bool IsSecondLayer(const AVStream& stream) const;
    void ProcessFrame(const AVFrame& frame);
    void WriteAspectRatio(const ZVString& extension);

    ZVFilmReader m_film;
    AVRational m_sampleAspect {0, 1};
};
