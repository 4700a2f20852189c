#pragma once

#include "core/property/ZVPropertyMap.h"
#include "system/filename/ZVFilename.h"
#include "video/codec/CZVAVLibraries.h"
#include "video/extended/ZVCodecObjects.h"
#include "video/extended/ZVSharedPicture.h"

#include <cstdarg>
#include <cstdint>

class ZVSamplePositions;

// Tells what a film is from its container and its first frames: codec, bit rate, depth, colours, high dynamic range, scan type,
// aspect, and the list of its audio and subtitle streams. Made for one file. Only as much is read as the first frames need.
class CZVVideoAnalyzeExtended
{
public:
    CZVVideoAnalyzeExtended() = default;
    CZVVideoAnalyzeExtended(const CZVVideoAnalyzeExtended&) = delete;
    CZVVideoAnalyzeExtended& operator=(const CZVVideoAnalyzeExtended&) = delete;

    // Analyses a file, once per object. With blackBars frames from all over the film are looked at. False, with the reason in the
    // log, when the codec libraries are missing, for a kind of input that is not analysed here, and for a file that they do not
    // open; what else is missing in the file is missing in the result.
    bool AnalyzeFile(const ZVFilename& file, bool blackBars);

    // The result.
    ZVPropertyMap Properties;

    // The log of the codec libraries, which they write from any of their threads: warnings and worse go to the product's log.
    // context is null or begins with a pointer to an AVClass; of a message 2,047 bytes are kept.
    __attribute__((format(printf, 3, 0))) static void AVLog(void* context, int level, const char* format, va_list arguments);

private:
    // The video stream that the result is about, and one that may carry an enhancement layer of it.
    struct Layer
    {
        AVStream* Stream = nullptr;
        ZVCodecContextPointer Decoder;
    };

    bool IsRefused(const ZVFilename& file) const;
    bool Open(const ZVString& path);
    void Close();
    ZVString GetReason(int error) const;
    void Analyze(const ZVFilename& file, bool blackBars);
    void ChooseMainStream();
    void WriteMainStream();
    void WalkStreams();
    bool IsSecondLayer(const AVStream& stream) const;
    ZVCodecContextPointer OpenDecoder(const AVStream& stream, bool needsPixels);
    void DecodeSamples(bool blackBars);
    void DecodeSample(int32_t frameLimit);
    bool ReadPacket();
    void SeekTo(int32_t seconds);
    void DecodePacket(const Layer& layer);
    void TakeFrames(const Layer& layer);
    void ProcessFrame(const Layer& layer);
    void WriteAspectRatio(const ZVString& extension);

    CZVAVLibraries m_codec;
    ZVSharedPicture m_picture {m_codec};
    ZVFormatContextPointer m_context;
    Layer m_main;
    Layer m_second;
    ZVPacketPointer m_packet;
    ZVFramePointer m_frame;
    int32_t m_framesSeen = 0;
    AVRational m_sampleAspect {0, 1};
};
