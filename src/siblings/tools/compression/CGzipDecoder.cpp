#include "siblings/tools/compression/CGzipDecoder.h"

#include <algorithm>
#include <climits>

namespace
{
// The largest window, and 16 for a gzip header and trailer around the data, whose checksum and length zlib then tests.
constexpr int GzipWindowBits = 15 + 16;
}

CGzipDecoder::CGzipDecoder(const CZLibrary& library, const void* bytes, int64_t count)
    : m_library(library), m_next(static_cast<const unsigned char*>(bytes)), m_left(std::max<int64_t>(count, 0))
{
    m_isInitialized = m_library.inflateInit2_(&m_stream, GzipWindowBits, ZLIB_VERSION, static_cast<int>(sizeof m_stream)) == Z_OK;
    if (!m_isInitialized)
        End(true);
}

CGzipDecoder::~CGzipDecoder()
{
    if (m_isInitialized)
        m_library.inflateEnd(&m_stream);
}

int64_t CGzipDecoder::Read(void* bytes, int64_t count)
{
    const int64_t room = std::clamp<int64_t>(count, 0, INT_MAX);
    m_stream.next_out = static_cast<Bytef*>(bytes);
    m_stream.avail_out = static_cast<uInt>(room);
    while (!m_isAtEnd && m_stream.avail_out > 0)
    {
        GiveInput();
        switch (m_library.inflate(&m_stream, Z_NO_FLUSH))
        {
        case Z_OK:
            break;
        case Z_STREAM_END:
            BeginNextMember();
            break;
        default:
            // Nothing more can be done with what is left: it is damaged, or nothing is left of a member that has not ended.
            End(true);
            break;
        }
    }
    return room - m_stream.avail_out;
}

// zlib counts its input in 32 bits.
void CGzipDecoder::GiveInput()
{
    if (m_stream.avail_in > 0 || m_left == 0)
        return;
    const int64_t count = std::min<int64_t>(m_left, INT_MAX);
    m_stream.next_in = const_cast<Bytef*>(m_next);
    m_stream.avail_in = static_cast<uInt>(count);
    m_next += count;
    m_left -= count;
}

bool CGzipDecoder::BeginNextMember()
{
    do
    {
        while (m_stream.avail_in > 0 && *m_stream.next_in == 0)
        {
            ++m_stream.next_in;
            --m_stream.avail_in;
        }
        GiveInput();
    } while (m_stream.avail_in > 0 && *m_stream.next_in == 0);
    if (m_stream.avail_in == 0)
        return End(false);
    return m_library.inflateReset(&m_stream) == Z_OK || End(true);
}

bool CGzipDecoder::End(bool hasFailed)
{
    m_isAtEnd = true;
    m_hasFailed = hasFailed;
    return false;
}
