#pragma once

#include <cstdint>

// How the bytes of a load ended.
enum class ZVLoadEnd
{
    Whole,
    Broken,  // the load failed or was cancelled
};

// Takes the bytes of a load, on its thread.
class IZVFileLoaderSink
{
public:
    // Asked before the first byte of a load that should go on where an earlier one ended. resourceSize is -1 when it is not
    // known; start is the place in the resource that the bytes will come from. False ends the load.
    virtual bool CanResume(int64_t resourceSize, int64_t start) = 0;
    // Takes bytes and returns how many; fewer than count end the load.
    virtual int64_t Write(const void* bytes, int64_t count) = 0;
    // No more bytes come. False when what was written is not safe.
    virtual bool Close(ZVLoadEnd end) = 0;
    // No bytes come at all: the resource did not open, its start was out of reach, or it is larger than allowed.
    virtual void OnFailure() = 0;

protected:
    ~IZVFileLoaderSink() = default;
};
