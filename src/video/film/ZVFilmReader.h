#pragma once

#include "core/string/ZVString.h"
#include "video/film/ZVCodecObjects.h"
#include "video/film/ZVFilmBudget.h"
#include "video/film/ZVFilmOptions.h"
#include "video/film/ZVJoinedFiles.h"
#include "video/film/ZVSharedPicture.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

// Reads one film through the codec libraries: opens it, chooses its main video stream, decodes that and if wanted a second stream,
// and goes to other places of the film.
//
// Failures that are not facts about the film are logged. Whatever a film does, each place of it ends: after a budget of time and
// bytes without a frame, and after many packets without one; the log then says so. The codec libraries must be loaded for
// everything but the construction.
class ZVFilmReader
{
public:
    explicit ZVFilmReader(const ZVFilmOptions& options);
    ZVFilmReader(const ZVFilmReader&) = delete;
    ZVFilmReader& operator=(const ZVFilmReader&) = delete;
    ~ZVFilmReader() { Close(); }

    const CZVAVLibraries& GetCodec() const { return m_codec; }

    // Opens a file or a disk, or an address where the libraries have a protocol for it. False, with the reason in the log, when
    // the libraries cannot read it.
    bool Open(const ZVString& path);
    // The same with several files that are read as one.
    bool OpenJoined(const ZVStringArray& paths);
    // Reads on until the parameters of each stream are known, as Open does unless the options say otherwise. False when the
    // libraries cannot read the film.
    bool ProbeStreams();
    // Has the reading of everything end soon after the flag is set, which another thread may do. The flag outlives the film.
    void ObeyCancel(const std::atomic<bool>& isCancelled) { m_budget.ObeyCancel(isCancelled); }
    bool IsCancelled() const { return m_budget.IsCancelled(); }
    // Frees the file and everything that came out of it, which the end of the object does too.
    void Close();

    // The container, while the film is open.
    const AVFormatContext& GetContainer() const { return *m_context; }
    std::span<AVStream* const> GetStreams() const { return {m_context->streams, m_context->nb_streams}; }

    // Chooses the largest video stream for the main stream, the first of several. Null when there is no video but cover pictures.
    const AVStream* ChooseMainStream();
    const AVStream* GetMainStream() const { return m_main.Stream; }
    // The time stamp at which the film starts, in the time base of the main stream; 0 when the container does not tell.
    int64_t GetStart() const;
    // Whether the container tells it, which some do only once the streams are probed.
    bool HasStart() const { return m_context->start_time != AV_NOPTS_VALUE; }
    // The bytes of the film's files.
    int64_t GetSize() const;
    // Has one more video stream decoded, beside the main stream, if there is a decoder for it.
    void SetSecondStream(AVStream& stream) { m_second.Stream = &stream; }

    // Opens the decoders of the chosen streams. The place of the film is its beginning. False when no decoder is known for the
    // main stream or it does not take the stream, which is a fact about the film, and when there is no memory. Decoders that are
    // open already are freed.
    bool OpenDecoders(ZVFilmOptions::Threads threads = ZVFilmOptions::Threads::Frames);

    // The next frame, which is valid until the next call. Null at the end of the place: as many frames as were asked for, the end
    // of the film, or one of the bounds above.
    const AVFrame* NextFrame();
    // Whether the frame that was returned last is one of the main stream.
    bool IsOfMainStream() const { return m_source == &m_main; }
    // True once the machine had no memory or threads for a decoder: what came out of it does not say what the film is.
    bool HasNoMemory() const { return m_hasNoMemory || m_picture.HasNoMemory(); }

    // Reads on to the next packet of the main stream that decoding can begin with, and keeps it for NextFrame. Null when there is
    // none in this place. No decoder is needed yet.
    const AVPacket* FindKeyPacket();
    // Decodes the packet that FindKeyPacket has kept and nothing after it, so that its frame comes out at once. Null when the decoder
    // makes no frame of it alone. Before NextFrame the film must be moved.
    const AVFrame* DecodeKeyAlone();
    // Reads the first packets of the film and tells the earliest time stamp of its pictures and sounds, in the time base of the main
    // stream; nothing when there is none. Afterwards the film must be moved.
    std::optional<int64_t> ReadEarliest();
    // From now on frames that no other refers to may be left out if they are known to end before a time stamp of the main stream.
    void SkipFramesBefore(int64_t timeStamp);

    // Begins a new place at a key frame that is not after a time stamp of the main stream, where the container has such an index,
    // or at a position among the bytes of the film. False when the film cannot be moved there.
    bool SeekToTime(int64_t timeStamp) { return Seek(timeStamp, AVSEEK_FLAG_BACKWARD) >= 0; }
    bool SeekToByte(int64_t position) { return Seek(position, AVSEEK_FLAG_BYTE) >= 0; }
    // Begins a new place at a time of the main stream, counted from the start of the film, or at a key frame before it. The
    // decoders must be open.
    //
    // False when the beginning of the new place depends on what was read of the film before: it cannot be moved at all, or its
    // index only grows while it is read and does not reach that far.
    bool SeekTo(int32_t seconds);

    // What a result code of the libraries means.
    ZVString GetReason(int error) const;

private:
    struct Layer
    {
        AVStream* Stream = nullptr;
        ZVCodecContextPointer Decoder;
    };

    // What one place of the film has given since its beginning.
    struct Place
    {
        int32_t PacketsOfOthers = 0;      // since the last packet of the main stream
        int32_t PacketsWithoutFrame = 0;  // packets of the main stream since its last frame
        int32_t RefusedPackets = 0;       // of the main stream
        int32_t FramesSeen = 0;           // of the main stream
        bool IsAtEnd = false;
        bool IsDecoderAtEnd = false;
    };

    bool OpenContext(const std::string& name);
    bool Fail(int result);
    ZVString GetLimits() const;
    bool MakePacket();
    bool OpenDecoder(Layer& layer, ZVFilmOptions::Threads threads);
    int Seek(int64_t target, int flags);
    void LeaveOutOtherStreams();
    void BeginPlace();
    void EndPlace(int result);
    bool ReadPacket();
    bool CanGoOn();
    Layer* FindLayer(int32_t streamIndex);
    void SendPacket();
    bool CanSkip(const AVPacket& packet) const;
    const AVFrame* NextFrameOfPacket();
    const AVFrame* NextKeptFrame();
    const AVFrame* ReceiveFrame();
    void NoteResult(int result);

    const ZVFilmOptions m_options;
    CZVAVLibraries m_codec;
    ZVString m_path;
    ZVFilmBudget m_budget;
    ZVSharedPicture m_picture {m_codec};
    std::unique_ptr<ZVJoinedFiles> m_joined;
    ZVFormatContextPointer m_context;
    Layer m_main;
    Layer m_second;
    ZVPacketPointer m_packet;
    ZVFramePointer m_frame;
    Layer* m_source = nullptr;  // whose packet was sent last
    bool m_isPending = false;   // the packet waits for room in the decoder
    bool m_isKept = false;      // the packet waits for a decoder
    int64_t m_skipBefore = INT64_MIN;
    bool m_hasNoMemory = false;
    Place m_place;
};
