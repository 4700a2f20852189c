// The reading half of PNGFormat.

#include "core/bytes/ZVByteCursor.h"
#include "siblings/image/formats/CPNGLibrary.h"
#include "siblings/image/formats/PNGFormat.h"

#include <algorithm>
#include <cstring>

namespace
{
using Cursor = ZVByteCursor<std::endian::big, ZVZeroPastEnd>;

constexpr uint8_t Start[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

// The chunks of any length that say nothing of the pixels. They are passed over without memory for them, so they may be as long
// as they like: cameras and editors write megabytes. What is read of the others is a palette at most.
constexpr uint8_t UnreadChunks[] = "tEXt\0zTXt\0iTXt\0iCCP\0sPLT\0eXIf\0hIST\0pCAL\0sCAL";
constexpr int UnreadChunkCount = sizeof UnreadChunks / 5;
constexpr png_alloc_size_t AnyChunkSize = 0;

void OnRead(png_structp png, png_bytep bytes, size_t count)
{
    const CPNGFunctions& library = *CPNGLibrary::Get();
    const std::string_view read = static_cast<Cursor*>(library.png_get_io_ptr(png))->ReadBytes(static_cast<int64_t>(count));
    if (read.size() != count)
        CPNGLibrary::OnError(png, "it is cut");
    memcpy(bytes, read.data(), count);
}

class Decoder
{
public:
    Decoder(const CPNGFunctions& library, const ZVByteSpan& bytes) : m_library(library), m_cursor(bytes)
    {
        m_png = m_library.png_create_read_struct(PNG_LIBPNG_VER_STRING, &m_jump, CPNGLibrary::OnError, CPNGLibrary::OnWarning);
    }
    ~Decoder() { m_library.png_destroy_read_struct(&m_png, &m_info, nullptr); }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    bool Decode(const CImageLimits& limits, CPixels& pixels, std::string& message);

private:
    bool ReadHeader();
    bool ReadRows(CPixels& pixels);

    const CPNGFunctions& m_library;
    Cursor m_cursor;
    CErrorJump m_jump;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
};

bool Decoder::Decode(const CImageLimits& limits, CPixels& pixels, std::string& message)
{
    if (m_png == nullptr)
    {
        message = "libpng cannot be used";
        return false;
    }
    bool isRead = ReadHeader();
    if (isRead)
    {
        const png_uint_32 width = m_library.png_get_image_width(m_png, m_info);
        const png_uint_32 height = m_library.png_get_image_height(m_png, m_info);
        if (!limits.Allow(width, height, message))
            return false;
        pixels = CPixels(static_cast<int32_t>(width), static_cast<int32_t>(height));
        isRead = ReadRows(pixels);
    }
    message = m_jump.GetMessage();
    return isRead;
}

bool Decoder::ReadHeader()
{
    return m_jump.Run(
        [&]
        {
            m_info = m_library.png_create_info_struct(m_png);
            if (m_info == nullptr)
                m_jump.Leave("there is not enough memory");
            m_library.png_set_read_fn(m_png, &m_cursor, OnRead);
            m_library.png_set_user_limits(m_png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
            m_library.png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, nullptr, 0);
            m_library.png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, UnreadChunks, UnreadChunkCount);
            m_library.png_set_chunk_malloc_max(m_png, AnyChunkSize);
            m_library.png_read_info(m_png, m_info);
        });
}

// Every kind of pixels is turned into ours: palettes, gray, 16 bits, a transparent colour.
bool Decoder::ReadRows(CPixels& pixels)
{
    return m_jump.Run(
        [&]
        {
            m_library.png_set_expand(m_png);
            m_library.png_set_scale_16(m_png);
            m_library.png_set_gray_to_rgb(m_png);
            m_library.png_set_add_alpha(m_png, CPixelView::Opaque, PNG_FILLER_AFTER);
            m_library.png_set_bgr(m_png);
            const int passes = m_library.png_set_interlace_handling(m_png);
            m_library.png_read_update_info(m_png, m_info);
            if (m_library.png_get_rowbytes(m_png, m_info) != pixels.RowSize())
                m_jump.Leave("its pixels are of an unknown kind");
            for (int pass = 0; pass < passes; ++pass)
                for (int32_t y = 0; y < pixels.View().Height; ++y)
                    m_library.png_read_row(m_png, pixels.Row(y), nullptr);
        });
}
}

bool PNGFormat::IsStart(const ZVByteSpan& bytes)
{
    const uint8_t* const start = bytes.Find(0, sizeof Start);
    return start != nullptr && std::equal(std::begin(Start), std::end(Start), start);
}

bool PNGFormat::Decode(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message)
{
    const CPNGFunctions* const library = CPNGLibrary::Get();
    if (library != nullptr)
        return Decoder(*library, bytes).Decode(limits, pixels, message);
    message = CPNGLibrary::MissingMessage;
    return false;
}
