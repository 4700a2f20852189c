#pragma once

#include "contracts/IZVCompression.h"
#include "contracts/ZVReleasePointer.h"
#include "siblings/tools/compression/CZLibrary.h"

// A decoder of gzip data. Members follow one another as if they were one; zeros behind the last are padding, and anything else
// there is a fault. What comes in front of a fault is given first.
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
    void GiveInput();
    bool BeginNextMember();
    bool End(bool hasFailed);

    const CZLibrary& m_library;
    const unsigned char* m_next;
    int64_t m_left;
    z_stream m_stream {};
    bool m_isInitialized = false;
    bool m_isAtEnd = false;
    bool m_hasFailed = false;
};
