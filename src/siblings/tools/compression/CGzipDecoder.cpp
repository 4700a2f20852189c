#include "siblings/tools/compression/CGzipDecoder.h"

#include <algorithm>
#include <climits>

namespace
{
// The largest window, and 16 for a gzip header and trailer around the data, whose checksum and length zlib then tests.
constexpr int GzipWindowBits = 15 + 16;

// How every member begins (RFC 1952, 2.3.1).
constexpr unsigned char MemberStart[] = {0x1f, 0x8b};
}

CGzipDecoder::CGzipDecoder(const CZLibrary& library, const void* bytes, int64_t count) : m_library(library)
{
    m_stream.next_in = static_cast<Bytef*>(const_cast<void*>(bytes));
    m_end = m_stream.next_in + std::max<int64_t>(count, 0);
    m_isInitialized = m_library.inflateInit2_(&m_stream, GzipWindowBits, ZLIB_VERSION, static_cast<int>(sizeof m_stream)) == Z_OK;
    if (!m_isInitialized)
        Fail();
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
        // zlib counts its input in 32 bits.
        if (m_stream.avail_in == 0)
            m_stream.avail_in = static_cast<uInt>(std::min<int64_t>(m_end - m_stream.next_in, INT_MAX));
        switch (m_library.inflate(&m_stream, Z_NO_FLUSH))
        {
        case Z_OK:
            break;
        case Z_STREAM_END:
            BeginNextMember();
            break;
        default:
            // The rest is damaged, or the input has ended inside a member.
            Fail();
            break;
        }
    }
    return room - m_stream.avail_out;
}

void CGzipDecoder::BeginNextMember()
{
    m_stream.avail_in = 0;
    while (m_stream.next_in != m_end && *m_stream.next_in == 0)
        ++m_stream.next_in;
    const bool isMember = m_end - m_stream.next_in >= static_cast<int64_t>(sizeof MemberStart) &&
                          std::equal(std::begin(MemberStart), std::end(MemberStart), m_stream.next_in);
    if (!isMember)
        m_isAtEnd = true;
    else if (m_library.inflateReset(&m_stream) != Z_OK)
        Fail();
}

void CGzipDecoder::Fail()
{
    m_isAtEnd = true;
    m_hasFailed = true;
}
