#include "siblings/player/CPlayerSource.h"

#include "disc/dvd/CDvdTitle.h"
#include "disc/recording/CTVRecordingStubFile.h"
#include "system/log/ZVLog.h"
#include "video/film/ZVFilmSource.h"

#include <algorithm>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"CPlayerSource"};

// Compared as it stands: a stub in upper case is an ordinary file.
constexpr wchar_t StubExtension[] = L"ztv";
// In any case: discs have it in capitals.
constexpr wchar_t DVDExtension[] = L"ifo";

int64_t ToMilliseconds(double seconds)
{
    // Lengths on a disc have 32 bits of 45,000 a second, and a title has thousands of clips at most.
    return static_cast<int64_t>(seconds * 1000);
}
}

CPlayerSource::CPlayerSource(const ZVFilename& file) : m_extension(file.GetExtension(true))
{
    ZVString folded = m_extension;
    folded.MakeLower();
    if (m_extension == StubExtension)
        FindStream(file);
    else if (folded == DVDExtension)
        FindDVD(file);
    else
        FindBluray(file);
}

// Of everything that is no Blu-ray disc the path is that of the file itself.
void CPlayerSource::FindBluray(const ZVFilename& file)
{
    const ZVFilmSource source(file);
    if (!source.IsFound())
        return;
    m_paths.Add(source.GetPath());
    const BlurayPlaylist* const title = source.GetTitle();
    if (title == nullptr)
        return;
    const BlurayStreamClip& clip = *title->GetReferenceClip();
    m_clipStart = ToMilliseconds(clip.RelativeTimeIn);
    m_clipLength = ToMilliseconds(clip.Length);
    m_duration = ToMilliseconds(title->GetTotalLength());
    for (const double seconds : title->Chapters)
        m_chapters.push_back({ZVString(), ToMilliseconds(seconds)});
}

void CPlayerSource::FindDVD(const ZVFilename& file)
{
    const ZVString folder = CDvdTitle::FindFolder(file);
    CDvdTitle title;
    if (folder.IsEmpty() || !title.Open(folder))
    {
        Source.Log("The DVD has no title: %s", file.GetPathOnly());
        return;
    }
    for (const CDvdTitle::Part& part : title.Parts)
        m_paths.Add(part.Path);
    m_hasRestartingTimes = true;
    m_duration = title.Duration;
    for (const int64_t milliseconds : title.Chapters)
        m_chapters.push_back({ZVString(), milliseconds});
}

void CPlayerSource::FindStream(const ZVFilename& stub)
{
    CTVRecordingStubFile recording;
    if (recording.Read(stub) && !recording.StreamPath.IsEmpty())
        m_paths.Add(recording.StreamPath);
    else
        Source.Log("The stub of the recording cannot be read or names no stream: %s", stub.GetPathOnly());
}

int64_t CPlayerSource::ToReadTime(int64_t milliseconds) const
{
    if (m_clipLength < 0)
        return milliseconds;
    return std::clamp<int64_t>(milliseconds, m_clipStart, m_clipStart + m_clipLength) - m_clipStart;
}

void CPlayerSource::Complete(CFilmFacts& facts) const
{
    if (m_duration > 0)
        facts.Duration = m_duration;
    if (!m_chapters.empty())
        facts.Chapters = m_chapters;
}
