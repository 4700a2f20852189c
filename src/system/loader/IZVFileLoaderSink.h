#pragma once

#include <cstdint>

// Takes the bytes of a load, on its thread.
class IZVFileLoaderSink
{
public:
    // Asked before the first byte of a load that was to go on where an earlier one ended. resourceSize is -1 when it is not
    // known, start the place in the resource that the bytes will come from. False ends the load.
    virtual bool CanResume(int64_t resourceSize, int64_t start) = 0;
    // Takes bytes and tells how many of them; fewer than count end the load.
    virtual int64_t Write(const void* bytes, int64_t count) = 0;
    // No more bytes come, since the load is whole, or since it failed or was cancelled. False when what was written is not safe.
    virtual bool Close(bool isWhole) = 0;
    // Nothing comes: the resource did not open, its start was out of reach, or it is larger than allowed.
    virtual void OnFailure() = 0;

protected:
    ~IZVFileLoaderSink() = default;
};
