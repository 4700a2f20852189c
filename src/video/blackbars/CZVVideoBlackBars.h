#pragma once

#include "core/property/ZVPropertyMap.h"
#include "system/filename/ZVFilename.h"
#include "video/blackbars/ZVCropFilter.h"
#include "video/blackbars/ZVRectTrackers.h"
#include "video/blackbars/ZVSamplePositions.h"
#include "video/film/ZVFilmReader.h"

#include <cstdint>

// Finds out where the picture of a film is inside its frames, without black bars, and how sure that is. Made for one file.
//
// At nine places of the film up to 200 frames each are decoded, however long it is. The first of them, the opening, counts only in a
// film of unknown length, which has two places.
class CZVVideoBlackBars
{
public:
    CZVVideoBlackBars();
    CZVVideoBlackBars(const CZVVideoBlackBars&) = delete;
    CZVVideoBlackBars& operator=(const CZVVideoBlackBars&) = delete;

    // The names of the properties.
    static constexpr wchar_t Crop[] = L"Video Crop";
    static constexpr wchar_t Report[] = L"Video Black Bar Analysis Report";

    // Analyzes a file, or the main title of the Blu-ray disc that it names, once per object. False, with the reason in the log, where
    // the extended analysis of the same file fails too, and when the machine lacks the memory to decode it. A film in which nothing
    // is found has a crop of zeros and no report.
    bool AnalyzeFile(const ZVFilename& file);

    // The result: the crop as left, top, right and bottom, the aspect in which what is inside it is shown, and the report.
    ZVPropertyMap Properties;

private:
    // Where the first place after the opening must begin.
    enum class FirstPlace
    {
        WhereverItIs,
        WhereItWasSought,  // whatever was read of the film before, and with a frame in it
    };

    // What the frames of a place are decoded for.
    enum class Frames
    {
        Counted,
        Seen,  // only for what the last of them says of itself
    };

    bool OpenDecoders();
    bool Walk(const ZVString& path);
    bool VisitLaterPlaces(const ZVSamplePositions& positions, FirstPlace first);
    void LookAtPlace(Frames frames);
    void ProcessBlackBarFilter(const AVFrame& frame);
    void WriteResult(const ZVString& extension);
    bool HasNoMemory() const { return m_film.HasNoMemory() || m_filter.HasNoMemory(); }

    ZVFilmReader m_film;
    ZVCropFilter m_filter;
    ZVRectTrackers m_trackers;
    // Of the main stream or, if it does not know its size, of its first frame.
    int32_t m_width = 0;
    int32_t m_height = 0;
    bool m_hasOtherSizes = false;
    // Of the last frame, if there was one.
    AVRational m_sampleAspect {0, 1};
    bool m_hasFrame = false;
};
