#pragma once

#include "contracts/IZVCompression.h"
#include "contracts/ZVReleasePointer.h"
#include "siblings/tools/compression/CZLibrary.h"

// A decoder of gzip data. Members follow one another as if they were one; zeros between them are padding, and whatever else comes
// after the last one is ignored, as gzip itself does. What comes before a fault is given first.
class CGzipDecoder final : public ZVReleasable<IZVDecoder>
{
public:
    CGzipDecoder(const CZLibrary& library, const void* bytes, int64_t count);
    ~CGzipDecoder() override;
    CGzipDecoder(const CGzipDecoder&) = delete;
    CGzipDecoder& operator=(const CGzipDecoder&) = delete;

    int64_t Read(void* bytes, int64_t count) override;
    bool HasFailed() override { return m_hasFailed; }

private:
    void BeginNextMember();
    void Fail();

    const CZLibrary& m_library;
    const unsigned char* m_end = nullptr;
    // Its next_in is the place in the input.
    z_stream m_stream {};
    bool m_isInitialized = false;
    bool m_isAtEnd = false;
    bool m_hasFailed = false;
};
