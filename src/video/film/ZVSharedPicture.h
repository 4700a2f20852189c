#pragma once

#include "video/film/ZVCodecObjects.h"

#include <atomic>
#include <mutex>

// The memory that all frames of a decoder are decoded into, for an analysis that looks at what comes with a frame and not at its
// pixels. Fresh memory for each frame, which the system has to clear, is a quarter of such a decoder's time and most of its
// memory.
//
// What H.264 and HEVC decoders read out of a stream never depends on a pixel; only further pixels do. Frames may therefore be
// written over each other, from several threads as well.
class ZVSharedPicture
{
public:
    explicit ZVSharedPicture(const CZVAVLibraries& codec);
    ZVSharedPicture(const ZVSharedPicture&) = delete;
    ZVSharedPicture& operator=(const ZVSharedPicture&) = delete;

    // Has a decoder use it, unless the codec's frames cannot share. The decoder is not open yet, and is freed, with all of its
    // frames, before this object. Several decoders may share.
    void ServeDecoder(AVCodecContext& decoder);

    // True once there was no memory for a frame. Decoders do not always pass that on.
    bool HasNoMemory() const { return m_hasNoMemory; }

private:
    // Frames of one size; a stream whose size changes more often gets fresh memory for the others.
    static constexpr size_t MaximumSizes = 4;

    static int GetBuffer(AVCodecContext* decoder, AVFrame* frame, int flags);
    int FillFrame(AVCodecContext& decoder, AVFrame& frame, int flags);
    const AVFrame* FindMemory(AVCodecContext& decoder, const AVFrame& frame, int flags);
    ZVFramePointer MakeMemory(AVCodecContext& decoder, const AVFrame& frame, int flags) const;

    const CZVAVLibraries& m_codec;
    decltype(AVCodecContext::get_buffer2) m_getBuffer = nullptr;
    std::atomic<bool> m_hasNoMemory = false;
    std::mutex m_mutex;
    ZVFramePointer m_memory[MaximumSizes];
};
