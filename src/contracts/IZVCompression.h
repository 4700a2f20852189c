#pragma once

#include <cstdint>

// Inflates one block of compressed bytes piece by piece. Belongs to one thread.
class IZVDecoder
{
public:
    // Gives the next bytes, at most count of them; 0 at the end, and at the first fault of the compressed bytes.
    virtual int64_t Read(void* bytes, int64_t count) = 0;
    // True when the compressed bytes are damaged or cut.
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
    // A decoder of gzip data (RFC 1952), which may consist of several members, over bytes that stay with the caller and must live as
    // long as the decoder. Null when there is no memory, or no library that inflates.
    virtual IZVDecoder* CreateGzipDecoder(const void* bytes, int64_t count) = 0;

protected:
    ~IZVCompression() = default;
};
