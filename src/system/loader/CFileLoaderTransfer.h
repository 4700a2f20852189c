#pragma once

#include "core/containers/ZVBuffer.h"

#include <cstdint>

class CFileLoaderReport;
class IZVFileLoaderSink;
class IZVReader;
class ZVCancelHelper;
struct CFileLoaderOptions;

// Moves the bytes from an open reader into a buffer, a sink, or both, and tests the first of them on the way. It ends with the
// resource, at the budget, at the first error, and when it is cancelled.
class CFileLoaderTransfer
{
public:
    // Everything must outlive the transfer. Either of buffer and sink may be null; the buffer is empty.
    CFileLoaderTransfer(const CFileLoaderOptions& options, IZVReader& reader, ZVBuffer* buffer, IZVFileLoaderSink* sink);

    // Moves at most budget bytes, in blocks of blockSize. False when reading, writing or the test of the first bytes failed. A
    // transfer that was cancelled has not failed.
    bool Run(int64_t budget, int64_t blockSize, CFileLoaderReport& report, ZVCancelHelper& cancel);
    // How many bytes have come.
    int64_t GetLoaded() const { return m_loaded; }
    // True when the first bytes failed the test.
    bool IsRefused() const { return m_isRefused; }

private:
    int64_t ReadBlock(int64_t wanted);
    bool WriteBlock(const uint8_t* bytes, int64_t count);
    int64_t GetBlockUpToTest(int64_t wanted) const;
    bool TestFirstBytes();
    bool TestShortResource();
    bool Test();
    bool HasMarker(const ZVBuffer& bytes) const;
    const ZVBuffer& GetFirstBytes() const { return m_buffer != nullptr ? *m_buffer : m_firstBytes; }

    const CFileLoaderOptions& m_options;
    IZVReader& m_reader;
    ZVBuffer* m_buffer;
    IZVFileLoaderSink* m_sink;
    ZVBuffer m_block;
    ZVBuffer m_firstBytes;
    bool m_isTestOpen;
    bool m_isRefused = false;
    int64_t m_loaded = 0;
};
