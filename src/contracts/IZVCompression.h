#pragma once

#include <cstdint>

// Inflates one block of compressed bytes piece by piece. Belongs to one thread.
class IZVDecoder
{
public:
    // Writes the next bytes, at most count, and returns how many; 0 at the end, and at the first fault in the compressed bytes.
    virtual int64_t Read(void* bytes, int64_t count) = 0;
    // True if the compressed bytes are damaged or cut off.
    virtual bool HasFailed() = 0;
    // Frees the decoder.
    virtual void Release() = 0;

protected:
    ~IZVDecoder() = default;
};

// The compression services of the tools library. May be called from any thread.
class IZVCompression
{
public:
    // Returns a decoder of gzip data (RFC 1952), which may consist of several members. The bytes belong to the caller and must
    // live as long as the decoder. Null if there is no memory, or no library that can inflate.
    virtual IZVDecoder* CreateGzipDecoder(const void* bytes, int64_t count) = 0;

protected:
    ~IZVCompression() = default;
};
