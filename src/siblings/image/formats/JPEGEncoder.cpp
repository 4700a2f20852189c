// The writing half of JPEGFormat.

#include "siblings/image/formats/CJPEGLibrary.h"
#include "siblings/image/formats/JPEGFormat.h"

namespace
{
constexpr int Quality = 90;

// Where the library puts what it has encoded.
struct Destination : jpeg_destination_mgr
{
    static Destination& Of(j_compress_ptr info) { return *static_cast<Destination*>(info->dest); }

    void Restart()
    {
        next_output_byte = Block;
        free_in_buffer = sizeof Block;
    }

    // Hands on the first bytes of the block.
    void Flush(j_compress_ptr info, size_t count)
    {
        if (!Sink->Append(Block, count))
            CJPEGErrors::Of(reinterpret_cast<j_common_ptr>(info)).Jump.Leave("there is not enough memory");
        Restart();
    }

    CByteSink* Sink;
    JOCTET Block[16 * 1024];
};

void OnStart(j_compress_ptr info)
{
    Destination::Of(info).Restart();
}

// The free space in the block means nothing here.
boolean OnFull(j_compress_ptr info)
{
    Destination::Of(info).Flush(info, sizeof Destination::Block);
    return TRUE;
}

void OnEnd(j_compress_ptr info)
{
    Destination::Of(info).Flush(info, sizeof Destination::Block - info->dest->free_in_buffer);
}

class Encoder
{
public:
    Encoder(const CJPEGFunctions& library, CByteSink& sink) : m_library(library), m_errors(library)
    {
        m_destination.init_destination = OnStart;
        m_destination.empty_output_buffer = OnFull;
        m_destination.term_destination = OnEnd;
        m_destination.Sink = &sink;
        m_info.err = &m_errors;
    }
    ~Encoder() { m_library.jpeg_destroy_compress(&m_info); }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    bool Encode(const CPixelView& picture);
    const char* GetMessage() const { return m_errors.Jump.GetMessage(); }

private:
    const CJPEGFunctions& m_library;
    CJPEGErrors m_errors;
    Destination m_destination;
    jpeg_compress_struct m_info {};
};

bool Encoder::Encode(const CPixelView& picture)
{
    return m_errors.Jump.Run(
        [&]
        {
            m_library.jpeg_CreateCompress(&m_info, JPEG_LIB_VERSION, sizeof m_info);
            m_info.dest = &m_destination;
            m_info.image_width = static_cast<JDIMENSION>(picture.Width);
            m_info.image_height = static_cast<JDIMENSION>(picture.Height);
            m_info.input_components = CPixelView::PixelSize;
            m_info.in_color_space = JCS_EXT_BGRX;
            m_library.jpeg_set_defaults(&m_info);
            m_library.jpeg_set_quality(&m_info, Quality, TRUE);
            m_library.jpeg_start_compress(&m_info, TRUE);
            while (m_info.next_scanline < m_info.image_height)
            {
                // The library reads the row only.
                JSAMPROW row = const_cast<JSAMPROW>(picture.Row(static_cast<int32_t>(m_info.next_scanline)));
                m_library.jpeg_write_scanlines(&m_info, &row, 1);
            }
            m_library.jpeg_finish_compress(&m_info);
        });
}
}

bool JPEGFormat::Encode(const CPixelView& picture, CByteSink& sink, std::string& message)
{
    const CJPEGFunctions* const library = CJPEGLibrary::Get();
    if (library == nullptr)
    {
        message = CJPEGLibrary::MissingMessage;
        return false;
    }
    Encoder encoder(*library, sink);
    const bool isEncoded = encoder.Encode(picture);
    message = encoder.GetMessage();
    return isEncoded;
}
