// The writing half of PNGFormat.

#include "siblings/image/formats/CPNGLibrary.h"
#include "siblings/image/formats/PNGFormat.h"

namespace
{
constexpr int CompressionLevel = 1;
constexpr int BitDepth = 8;
// Z_RLE of zlib.
constexpr int RunLengthStrategy = 3;

void OnWrite(png_structp png, png_bytep bytes, size_t count)
{
    if (!static_cast<CByteSink*>(CPNGLibrary::Get()->png_get_io_ptr(png))->Append(bytes, count))
        CPNGLibrary::OnError(png, "there is not enough memory");
}

void OnFlush(png_structp) {}

class Encoder
{
public:
    explicit Encoder(const CPNGFunctions& library) : m_library(library)
    {
        m_png = m_library.png_create_write_struct(PNG_LIBPNG_VER_STRING, &m_jump, CPNGLibrary::OnError, CPNGLibrary::OnWarning);
    }
    ~Encoder() { m_library.png_destroy_write_struct(&m_png, &m_info); }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    bool Encode(const CPixelView& picture, CByteSink& sink, std::string& message);

private:
    void WriteHeader(const CPixelView& picture, CByteSink& sink);

    const CPNGFunctions& m_library;
    CErrorJump m_jump;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
};

bool Encoder::Encode(const CPixelView& picture, CByteSink& sink, std::string& message)
{
    if (m_png == nullptr)
    {
        message = "libpng cannot be used";
        return false;
    }
    const bool isEncoded = m_jump.Run(
        [&]
        {
            WriteHeader(picture, sink);
            for (int32_t y = 0; y < picture.Height; ++y)
                m_library.png_write_row(m_png, picture.Row(y));
            m_library.png_write_end(m_png, nullptr);
        });
    message = m_jump.GetMessage();
    return isEncoded;
}

void Encoder::WriteHeader(const CPixelView& picture, CByteSink& sink)
{
    const bool isOpaque = picture.IsOpaque();
    m_info = m_library.png_create_info_struct(m_png);
    if (m_info == nullptr)
        m_jump.Leave("there is not enough memory");
    m_library.png_set_write_fn(m_png, &sink, OnWrite, OnFlush);
    m_library.png_set_user_limits(m_png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    m_library.png_set_IHDR(m_png, m_info, static_cast<png_uint_32>(picture.Width), static_cast<png_uint_32>(picture.Height),
                           BitDepth, isOpaque ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE,
                           PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    m_library.png_set_compression_level(m_png, CompressionLevel);
    // The fastest for frames of films, and at that speed the smallest: to look for repetitions in grain takes long and finds few.
    m_library.png_set_compression_strategy(m_png, RunLengthStrategy);
    m_library.png_set_filter(m_png, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
    m_library.png_write_info(m_png, m_info);
    m_library.png_set_bgr(m_png);
    if (isOpaque)
        m_library.png_set_filler(m_png, 0, PNG_FILLER_AFTER);
}
}

bool PNGFormat::Encode(const CPixelView& picture, CByteSink& sink, std::string& message)
{
    const CPNGFunctions* const library = CPNGLibrary::Get();
    if (library != nullptr)
        return Encoder(*library).Encode(picture, sink, message);
    message = CPNGLibrary::MissingMessage;
    return false;
}
