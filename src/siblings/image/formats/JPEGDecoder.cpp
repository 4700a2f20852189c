// The reading half of JPEGFormat.

#include "siblings/image/ShrinkPixels.h"
#include "siblings/image/formats/CJPEGLibrary.h"
#include "siblings/image/formats/JPEGFormat.h"

#include <algorithm>

namespace
{
constexpr uint8_t Start[] = {0xff, 0xd8, 0xff};

// The scales, in eighths, at which the library has fast transformations.
constexpr unsigned Scales[] = {1, 2, 4, 8};
constexpr unsigned FullScale = 8;

// A file of some kilobytes can have thousands of scans, each of which goes through the whole picture. Encoders write about ten.
constexpr int MaximumScans = 100;
constexpr int64_t MaximumPixelsOfScans = 20 * CImageLimits::DefaultPixels;

void OnProgress(j_common_ptr common)
{
    const auto* const info = reinterpret_cast<j_decompress_ptr>(common);
    const int64_t pixels = int64_t {info->image_width} * info->image_height;
    if (info->input_scan_number > MaximumScans || info->input_scan_number * pixels > MaximumPixelsOfScans)
        CJPEGErrors::Of(common).Jump.Leave("it has too many scans");
}

class Decoder
{
public:
    explicit Decoder(const CJPEGFunctions& library) : m_library(library), m_errors(library)
    {
        m_info.err = &m_errors;
        m_progress.progress_monitor = OnProgress;
    }
    ~Decoder() { m_library.jpeg_destroy_decompress(&m_info); }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    bool Decode(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message);

private:
    bool ReadHeader(const ZVByteSpan& bytes);
    bool SetOutput(const ZVImageSize& fit);
    bool ReadRows(CPixels& pixels);
    void TurnInkIntoLight(uint8_t* row) const;

    const CJPEGFunctions& m_library;
    CJPEGErrors m_errors;
    jpeg_progress_mgr m_progress {};
    jpeg_decompress_struct m_info {};
};

bool Decoder::Decode(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message)
{
    bool isRead = ReadHeader(bytes);
    if (isRead && !limits.Allow(m_info.image_width, m_info.image_height, message))
        return false;
    // The format has sides of 16 bits.
    const ZVImageSize size {static_cast<int32_t>(m_info.image_width), static_cast<int32_t>(m_info.image_height)};
    if (isRead && SetOutput(ShrinkPixels::FindFit(size, limits.FittingSize)))
    {
        pixels = CPixels(static_cast<int32_t>(m_info.output_width), static_cast<int32_t>(m_info.output_height));
        isRead = ReadRows(pixels);
    }
    else
        isRead = false;
    message = isRead ? m_errors.Warning : m_errors.Jump.GetMessage();
    if (isRead && m_errors.IsCutEarly)
        message = "most of it is missing";
    return isRead && !m_errors.IsCutEarly;
}

bool Decoder::ReadHeader(const ZVByteSpan& bytes)
{
    return m_errors.Jump.Run(
        [&]
        {
            m_library.jpeg_CreateDecompress(&m_info, JPEG_LIB_VERSION, sizeof m_info);
            m_info.progress = &m_progress;
            m_library.jpeg_mem_src(&m_info, bytes.Find(0, 0), static_cast<unsigned long>(bytes.GetSize()));
            m_library.jpeg_read_header(&m_info, TRUE);
        });
}

// Chooses the smallest scale that is not below the size that the picture will be shrunk to.
bool Decoder::SetOutput(const ZVImageSize& fit)
{
    const bool isInk = m_info.jpeg_color_space == JCS_CMYK || m_info.jpeg_color_space == JCS_YCCK;
    m_info.out_color_space = isInk ? JCS_CMYK : JCS_EXT_BGRA;
    m_info.scale_denom = FullScale;
    return m_errors.Jump.Run(
        [&]
        {
            for (const unsigned scale : Scales)
            {
                m_info.scale_num = scale;
                m_library.jpeg_calc_output_dimensions(&m_info);
                if (m_info.output_width >= static_cast<unsigned>(fit.Width) &&
                    m_info.output_height >= static_cast<unsigned>(fit.Height))
                    return;
            }
        });
}

// The file is not read to its end: after the last row there is nothing to expect from it.
bool Decoder::ReadRows(CPixels& pixels)
{
    return m_errors.Jump.Run(
        [&]
        {
            m_library.jpeg_start_decompress(&m_info);
            while (m_info.output_scanline < m_info.output_height)
            {
                uint8_t* row = pixels.Row(static_cast<int32_t>(m_info.output_scanline));
                m_library.jpeg_read_scanlines(&m_info, &row, 1);
                if (m_info.out_color_space == JCS_CMYK)
                    TurnInkIntoLight(row);
            }
        });
}

// Makes BGRA of CMYK in place. Files with Adobe's marker hold how much light is left instead of how much ink there is.
void Decoder::TurnInkIntoLight(uint8_t* row) const
{
    const uint8_t inversion = m_info.saw_Adobe_marker ? 0 : 0xff;
    for (uint8_t* const end = row + size_t {m_info.output_width} * CPixelView::PixelSize; row != end;
         row += CPixelView::PixelSize)
    {
        const int black = row[3] ^ inversion;
        const auto toLight = [&](uint8_t ink) { return static_cast<uint8_t>(((ink ^ inversion) * black + 127) / 255); };
        const uint8_t blue = toLight(row[2]);
        row[2] = toLight(row[0]);
        row[1] = toLight(row[1]);
        row[0] = blue;
        row[3] = CPixelView::Opaque;
    }
}
}

bool JPEGFormat::IsStart(const ZVByteSpan& bytes)
{
    const uint8_t* const start = bytes.Find(0, sizeof Start);
    return start != nullptr && std::equal(std::begin(Start), std::end(Start), start);
}

bool JPEGFormat::Decode(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message)
{
    const CJPEGFunctions* const library = CJPEGLibrary::Get();
    if (library != nullptr)
        return Decoder(*library).Decode(bytes, limits, pixels, message);
    message = CJPEGLibrary::MissingMessage;
    return false;
}
