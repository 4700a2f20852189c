#include "siblings/player/CVideoPlayer.h"

#include "system/log/ZVLog.h"

#include <new>

namespace
{
constexpr ZVLogSource OpenSource {ZVLogCategory::Media, L"CVideoPlayer::Open"};
constexpr ZVLogSource PlaySource {ZVLogCategory::Media, L"CVideoPlayer::Play"};

void SetText(IZVDllString* string, const ZVString& text)
{
    if (string != nullptr)
        string->SetString(text, text.GetLength());
}
}

bool CVideoPlayer::Open(const wchar_t* path, int32_t)
{
    Close();
    try
    {
        return OpenFilm(path);
    }
    catch (const std::bad_alloc&)
    {
        OpenSource.Log("There is not enough memory to open a film");
        Close();
        return false;
    }
}

bool CVideoPlayer::OpenFilm(const wchar_t* path)
{
    m_source.emplace(ZVFilename(ZVString(path)));
    if (!m_source->IsFound())
        return false;
    auto frames = std::make_unique<CFilmFrames>(*m_source);
    if (!frames->Open())
        return false;
    m_facts = frames->GetFacts();
    m_frames = std::move(frames);
    return true;
}

void CVideoPlayer::Close()
{
    m_delivery.TakeBack();
    m_frames.reset();
    m_facts = CFilmFacts();
    m_source.reset();
    m_begin = 0;
}

bool CVideoPlayer::Play(int32_t)
{
    try
    {
        return PlayFilm();
    }
    catch (const std::bad_alloc&)
    {
        PlaySource.Log("There is not enough memory to play a film");
        return false;
    }
}

bool CVideoPlayer::PlayFilm()
{
    if (m_facts.VideoStream < 0 || m_output == nullptr || !m_output->IsFormatSupported(IZVVideoPlayerVideoOutput::FormatRGB32))
    {
        PlaySource.Log("There is no film to play, or nothing that takes its frames");
        return false;
    }
    if (auto frames = m_delivery.TakeBack())
        m_frames = std::move(frames);
    // A thread that is stuck keeps the film, and another look at it may get further.
    if (m_frames == nullptr)
    {
        auto frames = std::make_unique<CFilmFrames>(*m_source);
        if (!frames->Open() || !frames->HasVideo())
            return false;
        m_frames = std::move(frames);
    }
    static_cast<CFilmFrames&>(*m_frames).Begin(m_begin);
    return m_delivery.Start(std::move(m_frames), *m_output);
}

int32_t CVideoPlayer::GetStreamIndex(int32_t kind)
{
    if (kind == ZVStreamInfo::KindVideo)
        return m_facts.VideoStream;
    return kind == ZVStreamInfo::KindAudio ? m_facts.AudioStream : -1;
}

bool CVideoPlayer::GetStreamInfo(int32_t index, ZVStreamInfo& info)
{
    if (index < 0 || static_cast<size_t>(index) >= m_facts.Streams.size())
        return false;
    const CStreamFacts& facts = m_facts.Streams[static_cast<size_t>(index)];
    info.Stream = index;
    SetText(info.Title, facts.Title);
    SetText(info.Language, facts.Language);
    SetText(info.Compression, facts.Compression);
    SetText(info.Codec, facts.Codec);
    info.Kind = facts.Kind;
    info.Width = facts.WidthOrChannels;
    info.Height = facts.HeightOrSampleRate;
    info.BitDepth = facts.BitDepth;
    info.Fps = facts.Fps;
    info.Rotation = facts.Rotation;
    return true;
}

void CVideoPlayer::GetTag(const char* name, IZVDllString& value)
{
    try
    {
        SetText(&value, m_facts.GetTag(name));
    }
    catch (const std::bad_alloc&)
    {
        value.Empty();
    }
}

const CChapterFacts* CVideoPlayer::FindChapter(int32_t index) const
{
    return index < 0 || static_cast<size_t>(index) >= m_facts.Chapters.size() ? nullptr
                                                                              : &m_facts.Chapters[static_cast<size_t>(index)];
}

void CVideoPlayer::GetChapterName(int32_t index, IZVDllString& name)
{
    const CChapterFacts* const chapter = FindChapter(index);
    SetText(&name, chapter == nullptr ? ZVString() : chapter->Name);
}

int64_t CVideoPlayer::GetChapterTime(int32_t index)
{
    const CChapterFacts* const chapter = FindChapter(index);
    return chapter == nullptr ? 0 : chapter->Milliseconds;
}
