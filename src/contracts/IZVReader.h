#pragma once

#include "contracts/IZVDllString.h"

#include <cstdint>

// One resource that is read as a stream of bytes: a local file, bytes in memory, or what an internet address gives. A reader
// is made closed by one of the factories below. All of it belongs to one thread, but for Cancel.
class IZVReader
{
public:
    // Opens the resource at its first byte, or where RANGE_START says when the server keeps to it; GetPosition tells which.
    // False when it cannot be read, or when a server answers with an error or that nothing has changed; GetInfo then tells
    // what the server said. An open reader is opened anew.
    virtual bool Open() = 0;
    // Reads count bytes into bytes. Fewer come only where the resource ends, or where reading it fails; HasFailed tells which.
    virtual int64_t Read(void* bytes, int64_t count) = 0;
    // The size of the whole resource in bytes, -1 while it is not known.
    virtual int64_t GetSize() = 0;
    // The place of the next byte, counted from the start of the resource.
    virtual int64_t GetPosition() = 0;
    // Goes to a place, counted from the start of the resource, and returns where the reader then is; anything else than
    // position is a failed seek, after which the reader is where it was. A place behind the end is none. Within a known size
    // no server is asked before the next Read.
    virtual int64_t Seek(int64_t position) = 0;
    // What a server told of the resource, empty where there is nothing to tell: "StatusCode" (three digits), "AllHeaders" (the
    // header lines of the last answer, each with its CR and LF), "Location" (where a redirect led to, or what the last answer
    // names), "ContentEncoding".
    virtual void GetInfo(const wchar_t* key, IZVDllString& value) = 0;
    // The longest time in milliseconds to wait for a connection, and then for the next bytes; 0 or below is no limit. Before
    // Open.
    virtual void SetTimeout(int32_t milliseconds) = 0;
    // The body of a POST or PUT, which stays with the caller and must live as long as the reader; 0 bytes are no body. Before
    // Open.
    virtual void SetPost(const void* data, int64_t size) = 0;
    // The header lines of the request, joined by "|"; an entry may hold several lines, parted by CR and LF. These are no
    // headers but options, written like them: "HTTPREQUEST_TYPE: GET, HEAD, POST or PUT", "RANGE_START: the first byte
    // wanted", "USE_CACHE: 1" and "SUCCEED_ON_ERROR: 1", with which Open succeeds on an answer that tells of an error, so that
    // its body can be read. Without USE_CACHE the caches on the way are told to ask the server again. The lengths among the
    // headers are worked out anew. Before Open.
    virtual void SetHeaders(const wchar_t* headers) = 0;
    // True between an Open that succeeded and the end of the reader.
    virtual bool IsOpen() = 0;
    // True when the last Open or Read ended with a failure and not with the end of the resource.
    virtual bool HasFailed() = 0;
    // Ends a running Open or Read soon, and all later ones at once, with a failure. May be called from any thread.
    virtual void Cancel() = 0;
    // Closes the resource and frees the reader.
    virtual void Release() = 0;

protected:
    ~IZVReader() = default;
};

// The factories of the reader library. A name is a path, or an address with "://". Null when there is no memory, or no reader for
// such a name.
using ZVCreateReaderByName = IZVReader*(const wchar_t* name);
// The bytes stay with the caller and must live as long as the reader.
using ZVCreateReaderOfMemory = IZVReader*(const void* bytes, int64_t count);
