#pragma once

#include "contracts/IZVSiblingInterface.h"
#include "contracts/ZVStreamInfo.h"

#include <cstdint>

class IZVDllString;

// A frame as the player delivers it. It belongs to the player and is valid during the call alone.
struct ZVVideoFrame
{
    // The time of the frame since the start of the film, in milliseconds.
    int64_t Milliseconds = 0;
    // The size in pixels, which are square.
    int32_t Width = 0;
    int32_t Height = 0;
    // The first row, which is the top one, and the distance of two rows in bytes. Each pixel has four bytes: B, G, R and one
    // without a meaning.
    const uint8_t* Pixels = nullptr;
    int32_t Stride = 0;
};

// Where the player tells how it goes on. OnStop comes from the thread that stops the player, all other calls from the player's own;
// none may call the player. The order of the virtual functions is fixed.
class IZVVideoPlayerBaseOutput
{
public:
    // The film, or what can be read of it, has been delivered to its end.
    virtual void OnEndOfStream() = 0;
    // The delivery has begun.
    virtual void OnPlay() = 0;
    // The delivery is stopped. No other call follows.
    virtual void OnStop() = 0;
    // The place of the film to begin at has been found. Its frame follows.
    virtual void OnSeekDone() = 0;
    // The frames that follow have another size than those before, if there were any.
    virtual void OnFormatChange() = 0;
    // The film cannot be read or decoded any further. OnEndOfStream follows.
    virtual void OnError() = 0;

protected:
    ~IZVVideoPlayerBaseOutput() = default;
};

// What takes the frames of a player.
class IZVVideoPlayerVideoOutput : public IZVVideoPlayerBaseOutput
{
public:
    // Frames with four bytes a pixel; see ZVVideoFrame.
    static constexpr int32_t FormatRGB32 = 121;

    virtual void OnVideoFrame(const ZVVideoFrame& frame) = 0;
    // Whether the output takes frames of a format.
    virtual bool IsFormatSupported(int32_t format) = 0;
    // The window that frames are shown in; 0 for none.
    virtual uint64_t GetWindow() = 0;
    virtual ~IZVVideoPlayerVideoOutput() = default;
};

// Reads a film or a sound file: tells what it is, and delivers its frames. Belongs to one thread, which may be another than the one
// that frames come from. Nothing throws.
class IZVVideoPlayer
{
public:
    // Opens a file, a disc by one of its files, or a recording by its stub; the name may have properties. False, with the reason
    // in the log, when it cannot be read. reserved is -10000.
    virtual bool Open(const wchar_t* path, int32_t reserved) = 0;
    // Sets what takes the frames, which outlives the delivery; null for nobody. Not while frames are delivered.
    virtual void SetVideoOutput(IZVVideoPlayerVideoOutput* output) = 0;
    // The duration in milliseconds; 0 when it is not known.
    virtual int64_t GetDuration() = 0;
    // Sets where the next Play begins, in milliseconds since the start of the film. A time before the start means the start, and
    // one after the end the last frame.
    virtual void Seek(int64_t milliseconds) = 0;
    // Delivers the frames of the film from the set time on, as fast as the output takes them: the first is the one that is on
    // screen at that time. False, with the reason in the log, without a film, without a decoder for it, or without an output
    // that takes its frames. reserved is 0.
    virtual bool Play(int32_t reserved) = 0;
    // Ends the delivery. It waits for a call of the output that is going on, after which there are no more, and never for a
    // decoder.
    virtual void Stop() = 0;
    // Closes the film; without one nothing happens.
    virtual void Close() = 0;
    // The index of the main stream of a kind, or -1 when there is none. A cover picture is no video.
    virtual int32_t GetStreamIndex(int32_t kind) = 0;
    // Tells what a stream is. False for an index that no stream has.
    virtual bool GetStreamInfo(int32_t index, ZVStreamInfo& info) = 0;
    // The text of a tag by its name, which is compared without regard to case; empty when there is no such tag.
    virtual void GetTag(const char* name, IZVDllString& value) = 0;
    // The chapters in the order of their times: how many there are, their names, and their starts in milliseconds.
    virtual int32_t GetChapterCount() = 0;
    virtual void GetChapterName(int32_t index, IZVDllString& name) = 0;
    virtual int64_t GetChapterTime(int32_t index) = 0;
    // Closes the film and frees the player.
    virtual void Release() = 0;

protected:
    ~IZVVideoPlayer() = default;
};

// The player library as its callers see it. May be called from any thread.
class IZVPlayerLibrary : public IZVSiblingInterface
{
public:
    // Makes a player. Null if there is no memory.
    virtual IZVVideoPlayer* CreateVideoPlayer() = 0;

protected:
    ~IZVPlayerLibrary() = default;
};
