#include "video/film/ZVSharedPicture.h"

#include <algorithm>
#include <iterator>

namespace
{
constexpr AVCodecID SharingCodecs[] = {AV_CODEC_ID_H264, AV_CODEC_ID_HEVC};
}

ZVSharedPicture::ZVSharedPicture(const CZVAVLibraries& codec) : m_codec(codec) {}

void ZVSharedPicture::ServeDecoder(AVCodecContext& decoder)
{
    if (std::find(std::begin(SharingCodecs), std::end(SharingCodecs), decoder.codec_id) == std::end(SharingCodecs))
        return;
    m_getBuffer = decoder.get_buffer2;
    decoder.opaque = this;
    decoder.get_buffer2 = GetBuffer;
}

// Called from any thread of the decoder.
int ZVSharedPicture::GetBuffer(AVCodecContext* decoder, AVFrame* frame, int flags)
{
    ZVSharedPicture& picture = *static_cast<ZVSharedPicture*>(decoder->opaque);
    const int result = picture.FillFrame(*decoder, *frame, flags);
    if (result == AVERROR(ENOMEM))
        picture.m_hasNoMemory = true;
    return result;
}

int ZVSharedPicture::FillFrame(AVCodecContext& decoder, AVFrame& frame, int flags)
{
    const AVFrame* const memory = FindMemory(decoder, frame, flags);
    if (memory == nullptr)
        return m_getBuffer(&decoder, &frame, flags);
    // Decoders know their reference frames apart by their buffers, so each frame has one of its own, if only a small one.
    frame.buf[0] = m_codec.av_buffer_alloc(1);
    if (frame.buf[0] == nullptr)
        return AVERROR(ENOMEM);
    std::copy(std::begin(memory->data), std::end(memory->data), frame.data);
    std::copy(std::begin(memory->linesize), std::end(memory->linesize), frame.linesize);
    frame.extended_data = frame.data;
    return 0;
}

// The memory for a frame of this format and size, or null.
const AVFrame* ZVSharedPicture::FindMemory(AVCodecContext& decoder, const AVFrame& frame, int flags)
{
    const std::lock_guard lock(m_mutex);
    for (ZVFramePointer& memory : m_memory)
    {
        if (memory == nullptr)
            memory = MakeMemory(decoder, frame, flags);
        if (memory == nullptr)
            return nullptr;
        if (memory->format == frame.format && memory->width == frame.width && memory->height == frame.height)
            return memory.get();
    }
    return nullptr;
}

ZVFramePointer ZVSharedPicture::MakeMemory(AVCodecContext& decoder, const AVFrame& frame, int flags) const
{
    ZVFramePointer memory(m_codec.av_frame_alloc(), {m_codec.av_frame_free});
    if (memory == nullptr)
        return nullptr;
    memory->format = frame.format;
    memory->width = frame.width;
    memory->height = frame.height;
    if (m_getBuffer(&decoder, memory.get(), flags) < 0)
        return nullptr;
    return memory;
}
