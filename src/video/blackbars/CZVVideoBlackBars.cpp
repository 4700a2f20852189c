#include "video/blackbars/CZVVideoBlackBars.h"

#include "system/log/ZVLog.h"
#include "video/blackbars/ZVBlackBarReport.h"
#include "video/blackbars/ZVBlackBarVerdict.h"
#include "video/film/ZVFilmAspect.h"
#include "video/film/ZVFilmSource.h"

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"CZVVideoBlackBars::AnalyzeFile"};
// The name under which those who read the log look for the places.
constexpr ZVLogSource PlaceSource {ZVLogCategory::Network, L"CZVVideoAnalyzeExtended::BlackBarDetection"};

// The pixels are looked at, so they must come out right, and while that is done the decoder already writes the next ones.
constexpr ZVFilmOptions FilmOptions = {
    .Read = ZVFilmOptions::Packets::OfDecodedStreams,
    .FramesPerPlace = 200,
};

constexpr wchar_t NothingFound[] = L"0x0x0x0";
}

CZVVideoBlackBars::CZVVideoBlackBars() : m_film(FilmOptions), m_filter(m_film.GetCodec()) {}

bool CZVVideoBlackBars::AnalyzeFile(const ZVFilename& file)
{
    Properties.SetString(Crop, NothingFound);
    if (!m_film.GetCodec().Loaded)
        return false;
    const ZVFilmSource source(file);
    if (!source.IsFound() || !m_film.Open(source.GetPath()))
        return false;
    // Neither a file of sound nor one without a decoder is a failure.
    if (!OpenDecoders())
        return !m_film.HasNoMemory();
    if (!Walk(source.GetPath()) || HasNoMemory())
        return false;
    WriteResult(file.GetExtension(true));
    return true;
}

bool CZVVideoBlackBars::OpenDecoders()
{
    if (m_film.ChooseMainStream() == nullptr || !m_film.OpenDecoders())
        return false;
    m_width = m_film.GetMainStream()->codecpar->width;
    m_height = m_film.GetMainStream()->codecpar->height;
    return true;
}

// Where the opening does not count, its frames are decoded only when they are missing afterwards: for the aspect of the film, or
// because a film that cannot be moved goes on from there. Then the film is opened once more.
bool CZVVideoBlackBars::Walk(const ZVString& path)
{
    const ZVSamplePositions positions(m_film.GetContainer().duration);
    if (!positions.IsOpeningCounted() && positions.IsBeforeEnd(1))
    {
        if (VisitLaterPlaces(positions, FirstPlace::WhereItWasSought))
            return true;
        if (HasNoMemory() || !m_film.Open(path) || !OpenDecoders())
            return false;
    }
    LookAtPlace(positions.IsOpeningCounted() ? Frames::Counted : Frames::Seen);
    return VisitLaterPlaces(positions, FirstPlace::WhereverItIs);
}

// Looks at the places after the opening. False when the first of them is not what it must be.
bool CZVVideoBlackBars::VisitLaterPlaces(const ZVSamplePositions& positions, FirstPlace first)
{
    for (int32_t index = 1; index < positions.GetCount() && positions.IsBeforeEnd(index) && !HasNoMemory(); ++index)
    {
        const bool mustBeRight = index == 1 && first == FirstPlace::WhereItWasSought;
        m_filter.Restart();
        PlaceSource.Log("Seeking to %d", positions.Get(index));
        const bool isThere = m_film.SeekTo(positions.Get(index));
        if (mustBeRight && !isThere)
            return false;
        LookAtPlace(Frames::Counted);
        if (mustBeRight && !m_hasFrame)
            return false;
    }
    return true;
}

void CZVVideoBlackBars::LookAtPlace(Frames frames)
{
    while (const AVFrame* const frame = HasNoMemory() ? nullptr : m_film.NextFrame())
    {
        if (frames == Frames::Counted)
            ProcessBlackBarFilter(*frame);
        m_sampleAspect = frame->sample_aspect_ratio;
        m_hasFrame = true;
    }
}

// A stream may change its size. Rectangles of several sizes could not be weighed against each other.
void CZVVideoBlackBars::ProcessBlackBarFilter(const AVFrame& frame)
{
    if (m_width < 1 || m_height < 1)
    {
        m_width = frame.width;
        m_height = frame.height;
    }
    if (frame.width == m_width && frame.height == m_height)
    {
        m_filter.Process(frame, m_trackers);
        return;
    }
    if (!m_hasOtherSizes)
        Source.Log("There are frames of %dx%d in a film of %dx%d, which are left out", frame.width, frame.height, m_width,
                   m_height);
    m_hasOtherSizes = true;
}

void CZVVideoBlackBars::WriteResult(const ZVString& extension)
{
    const AVStream& stream = *m_film.GetMainStream();
    const double pixelAspect = ZVFilmAspect::GetPixelAspect(stream, m_sampleAspect, extension);
    double displayAspect = ZVFilmAspect::GetDisplayAspect(stream, pixelAspect);
    const ZVArray<sRectTracker> trackers = m_trackers.GetSeenOften();
    if (trackers.GetCount() > 0)
    {
        const ZVBlackBarVerdict verdict(trackers, pixelAspect);
        if (!verdict.GetResult().IsEmpty())
        {
            Properties.SetString(Crop, verdict.GetResult().GetText(L"x"));
            displayAspect = verdict.GetAspect(verdict.GetResult());
        }
        const ZVFilmClock clock {stream.time_base, m_film.GetStart()};
        Properties.SetString(Report, ZVBlackBarReport::Write(verdict, displayAspect, m_film.GetCodec(), clock));
    }
    ZVFilmAspect::Write(Properties, displayAspect);
}
