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

// The pixels are looked at, so they must come out right; and the filters keep frames while the next are decoded.
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
    if (!Walk(source.GetPath()) || m_film.HasNoMemory() || m_filter.HasNoMemory())
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
    const bool isOpeningCounted = !positions.IsOpening(0);
    if (!isOpeningCounted && positions.IsBeforeEnd(1))
    {
        if (VisitLaterPlaces(positions, Opening::LeftOut))
            return true;
        if (m_film.HasNoMemory() || !m_film.Open(path) || !OpenDecoders())
            return false;
    }
    LookAtPlace(isOpeningCounted ? Frames::Counted : Frames::Seen);
    VisitLaterPlaces(positions, Opening::Decoded);
    return true;
}

// Looks at the places behind the opening. Where that was left out, false as soon as it turns out to be missing.
bool CZVVideoBlackBars::VisitLaterPlaces(const ZVSamplePositions& positions, Opening opening)
{
    for (int32_t index = 1; index < positions.GetCount() && positions.IsBeforeEnd(index); ++index)
    {
        m_filter.Restart();
        PlaceSource.Log("Seeking to %d", positions.Get(index));
        const bool isThere = m_film.SeekTo(positions.Get(index));
        if (opening == Opening::LeftOut && !isThere)
            return false;
        LookAtPlace(Frames::Counted);
        if (opening == Opening::LeftOut && !m_hasFrame)
            return false;
        opening = Opening::Decoded;
    }
    return true;
}

void CZVVideoBlackBars::LookAtPlace(Frames frames)
{
    while (const AVFrame* const frame = m_film.NextFrame())
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
    if (displayAspect > 0)
        Properties.SetString(AspectRatio, ZVString::FromDouble(displayAspect, 2));
}
