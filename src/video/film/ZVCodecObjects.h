#pragma once

#include "video/codec/CZVAVLibraries.h"

#include <memory>

// Owners of what the codec libraries make. The table of functions must outlive them.
template <class Object>
struct ZVCodecDeleter
{
    void (*Free)(Object** object) = nullptr;

    void operator()(Object* object) const { Free(&object); }
};

template <class Object>
using ZVCodecPointer = std::unique_ptr<Object, ZVCodecDeleter<Object>>;

using ZVFormatContextPointer = ZVCodecPointer<AVFormatContext>;
using ZVCodecContextPointer = ZVCodecPointer<AVCodecContext>;
using ZVPacketPointer = ZVCodecPointer<AVPacket>;
using ZVFramePointer = ZVCodecPointer<AVFrame>;
