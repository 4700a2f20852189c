#pragma once

#include "contracts/IZVDllString.h"

#include <cstdint>

// A resource that is read as a stream of bytes: a local file, bytes in memory, or an internet address. The factories below return
// a reader that is closed. All functions belong to one thread, except Cancel.
class IZVReader
{
public:
    // Opens the resource at its first byte, or at RANGE_START if the server supports that; GetPosition says which. False if it
    // cannot be read, or if a server answers with an error or that nothing has changed; GetInfo then has the server's answer. A
    // reader that is already open is opened again.
    virtual bool Open() = 0;
    // Reads count bytes into bytes and returns how many. Fewer only at the end of the resource or after a failure; HasFailed says
    // which.
    virtual int64_t Read(void* bytes, int64_t count) = 0;
    // The size of the whole resource in bytes, or -1 while it is not known.
    virtual int64_t GetSize() = 0;
    // The position of the next byte, counted from the start of the resource.
    virtual int64_t GetPosition() = 0;
    // Goes to a position, counted from the start of the resource, and returns where the reader is then. If that is not position,
    // the seek has failed and the reader is where it was. A position after the end fails. Within a known size no server is asked
    // before the next Read.
    virtual int64_t Seek(int64_t position) = 0;
    // What a server said about the resource, or empty: "StatusCode" (three digits), "AllHeaders" (the header lines of the last
    // answer, each with its CR and LF), "Location" (the target of a redirect, or what the last answer names), "ContentEncoding".
    virtual void GetInfo(const wchar_t* key, IZVDllString& value) = 0;
    // Sets how many milliseconds to wait at most for a connection, and then for the next bytes; 0 or less means no limit. To be
    // called before Open.
    virtual void SetTimeout(int32_t milliseconds) = 0;
    // Sets the body of a POST or PUT, which belongs to the caller and must live as long as the reader; 0 bytes mean no body. To
    // be called before Open.
    virtual void SetPost(const void* data, int64_t size) = 0;
    // Sets the header lines of the request, joined by "|"; an entry may have several lines, separated by CR and LF. Some entries
    // look like headers but are options: "HTTPREQUEST_TYPE: GET, HEAD, POST or PUT", "RANGE_START: the first byte wanted",
    // "USE_CACHE: 1", without which caches on the way are told to ask the server again, and "SUCCEED_ON_ERROR: 1", with which
    // Open succeeds even if the server answers with an error, so that the body of the answer can be read. Headers with lengths
    // are replaced by the right ones. To be called before Open.
    virtual void SetHeaders(const wchar_t* headers) = 0;
    // True after an Open that succeeded.
    virtual bool IsOpen() = 0;
    // True if the last Open or Read failed, and did not just reach the end of the resource.
    virtual bool HasFailed() = 0;
    // Makes a running Open or Read fail soon, and all later ones at once. May be called from any thread.
    virtual void Cancel() = 0;
    // Closes the resource and frees the reader.
    virtual void Release() = 0;

protected:
    ~IZVReader() = default;
};

// The factories of the reader library. A name is a path, or an address with "://". Null if there is no memory, or no reader for
// such a name.
using ZVCreateReaderByName = IZVReader*(const wchar_t* name);
// The bytes belong to the caller and must live as long as the reader.
using ZVCreateReaderOfMemory = IZVReader*(const void* bytes, int64_t count);
