#pragma once

#include "siblings/player/CFilmFacts.h"
#include "siblings/player/CFrameAim.h"
#include "siblings/player/CFrameFilter.h"
#include "siblings/player/CPlayerSource.h"
#include "siblings/player/IFrameSource.h"

#include <cstdint>
#include <memory>

// A film from which frames are fetched for the screen. The reading and the decoding end soon after Cancel.
class CFilmFrames final : public IFrameSource
{
public:
    explicit CFilmFrames(const CPlayerSource& source);

    // Opens the film. Of its streams no more is read than what the facts need. False, with the reason in the log, when the film or
    // the codec libraries cannot be opened.
    bool Open();
    // What the film is.
    const CFilmFacts& GetFacts() const { return m_facts; }
    // Whether the film has pictures.
    bool HasVideo() const { return m_film.GetMainStream() != nullptr; }

    // Has the next frame be the one that is on screen at a time, in milliseconds since the start of the film.
    void Begin(int64_t milliseconds);

    Outcome Next(ZVVideoFrame& frame) override;

private:
    bool OpenFiles();
    bool NeedsProbing() const;
    void LogDolbyVision() const;
    const AVFrame* FindFirst();
    int64_t GetBegin() const;
    const AVFrame* FindAt(int64_t milliseconds);
    bool Reopen();
    const AVFrame* NextPicture();
    CFrameFilter::Presentation GetPresentation(const AVFrame& frame) const;
    void Fill(const AVFrame& picture, ZVVideoFrame& frame) const;

    const CPlayerSource m_source;
    ZVFilmReader m_film;
    CFilmFacts m_facts;
    CFrameFilter m_filter;
    std::unique_ptr<CFrameAim> m_aim;
    int64_t m_begin = 0;
    bool m_isFirst = true;
    bool m_isEnded = false;
    bool m_hasFailed = false;
};
