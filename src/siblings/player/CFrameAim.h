#pragma once

#include "video/film/ZVFilmReader.h"

#include <cstdint>

// Finds the frame of a film that is on screen at a time: the first one that ends after it or, where that only begins later, the one
// before it.
class CFrameAim
{
public:
    // One frame may cost more than ten seconds where a film has a single key frame. Who waits for a thumbnail has a worse frame
    // rather than none.
    static constexpr int64_t MaximumMicroseconds = 10'000'000;

    // The film is open and its main stream chosen.
    explicit CFrameAim(ZVFilmReader& film);
    // The same for a film that was opened again because it cannot be moved, and whose start is known, in the time base of its main
    // stream. Nothing is read yet.
    CFrameAim(ZVFilmReader& film, int64_t start);

    int64_t GetStart() const { return m_start; }

    // Goes to a time, in milliseconds since the start of the film, and returns its frame. Before the start that is the first
    // frame, after the end the last; after the time above, whichever was decoded last. Null when no frame can be
    // decoded, and for a film that cannot be moved, but only read from its start.
    const AVFrame* Find(int64_t milliseconds);
    // The same without a move: decodes the film from where it is, which is its start.
    const AVFrame* FindUnmoved(int64_t milliseconds);
    // The frame after the one that was returned last; null at the end of the film.
    const AVFrame* FindNext();
    // The same for a film whose time stamps begin anew: finds the first frame after a share of its bytes, from 0 to 1.
    const AVFrame* FindByShare(double share);

    // The time of a frame in milliseconds since the start of the film, by a time stamp that counts in a time base.
    int64_t GetTime(int64_t timeStamp, AVRational timeBase) const;

private:
    // Where decoding begins.
    struct Place
    {
        bool IsFound = false;
        bool HasTime = false;  // the container tells when the first frame begins
        bool IsStart = false;  // of the film
        int64_t KeyEnd = 0;    // when the first frame ends
    };

    void Begin();
    int64_t ReadStart();
    int64_t GetTarget(int64_t milliseconds) const;
    bool IsFrameInPacket() const;
    Place GoBefore(int64_t target, int64_t& step);
    Place GoToStart();
    const AVFrame* FindAlone(int64_t target);
    const AVFrame* FindFrom(int64_t target, Place place, int64_t step);
    const AVFrame* DecodeTo(int64_t target, bool isStart);
    bool Keep(const AVFrame& frame, ZVFramePointer& kept) const;
    int64_t GetLatestStart(const AVPacket& packet) const;
    int64_t GetEnd(int64_t start, int64_t duration) const;
    bool IsTooLate() const;

    ZVFilmReader& m_film;
    const CZVAVLibraries& m_codec;
    const AVStream& m_stream;
    int64_t m_frameDuration;  // of a usual frame, in the time base of the stream, like the others
    int64_t m_start;
    bool m_canBeMoved = false;
    int64_t m_firstStart = AV_NOPTS_VALUE;  // of the first frame that came out after the last move
    int64_t m_startMicroseconds = 0;
    bool m_isAlone = false;    // the frame that was returned last was decoded alone
    int64_t m_aloneEnd = 0;    // when it ends
    bool m_isPastEnd = false;  // no frame ends after the target
    bool m_isHeld = false;     // a frame that was decoded is still to be returned
    int64_t m_gap = 0;         // between the frame before that one and it
    ZVFramePointer m_last;
    ZVFramePointer m_held;
};
