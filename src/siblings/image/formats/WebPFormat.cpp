#include "siblings/image/formats/WebPFormat.h"

#include "siblings/image/ShrinkPixels.h"
#include "siblings/image/formats/OpenOnce.h"

#include <algorithm>
#include <cstring>
#include <webp/decode.h>
#include <webp/encode.h>

// clang-format off
#define ZV_WEBP_FUNCTIONS(function)         \
    function(WebPGetFeaturesInternal)       \
    function(WebPInitDecoderConfigInternal) \
    function(WebPDecode)                    \
    function(WebPConfigInitInternal)        \
    function(WebPPictureInitInternal)       \
    function(WebPPictureImportBGRX)         \
    function(WebPPictureImportBGRA)         \
    function(WebPEncode)                    \
    function(WebPPictureFree)
// clang-format on
ZV_DEFINE_FUNCTION_TABLE(CWebPFunctions, ZV_WEBP_FUNCTIONS);

namespace
{
constexpr char FileName[] = "libwebp.so.7";
constexpr char MissingMessage[] = "libwebp is not installed";

// "RIFF", 4 bytes of length, "WEBP".
constexpr char OuterStart[] = "RIFF";
constexpr char InnerStart[] = "WEBP";
constexpr size_t InnerPosition = 8;
constexpr size_t StartSize = 12;

constexpr float Quality = 85;
// The next one takes twice the time for files that are a tenth smaller.
constexpr int Method = 0;

bool FailByNumber(int error, std::string& message)
{
    message = "libwebp reports error " + std::to_string(error);
    return false;
}

int OnWrite(const uint8_t* bytes, size_t count, const WebPPicture* picture)
{
    return static_cast<CByteSink*>(picture->custom_ptr)->Append(bytes, count) ? 1 : 0;
}

class Encoder
{
public:
    explicit Encoder(const CWebPFunctions& library) : m_library(library)
    {
        m_isReady = m_library.WebPConfigInitInternal(&m_config, WEBP_PRESET_DEFAULT, Quality, WEBP_ENCODER_ABI_VERSION) != 0 &&
                    m_library.WebPPictureInitInternal(&m_picture, WEBP_ENCODER_ABI_VERSION) != 0;
        m_config.method = Method;
        m_config.thread_level = 1;
    }
    ~Encoder()
    {
        if (m_isReady)
            m_library.WebPPictureFree(&m_picture);
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    bool Encode(const CPixelView& picture, CByteSink& sink, std::string& message);

private:
    const CWebPFunctions& m_library;
    bool m_isReady;
    WebPConfig m_config;
    WebPPicture m_picture;
};

bool Encoder::Encode(const CPixelView& picture, CByteSink& sink, std::string& message)
{
    if (!m_isReady)
    {
        message = "libwebp is of another version";
        return false;
    }
    m_picture.width = picture.Width;
    m_picture.height = picture.Height;
    m_picture.writer = OnWrite;
    m_picture.custom_ptr = &sink;
    const auto import = picture.IsOpaque() ? m_library.WebPPictureImportBGRX : m_library.WebPPictureImportBGRA;
    const bool isEncoded =
        import(&m_picture, picture.First, picture.Stride) != 0 && m_library.WebPEncode(&m_config, &m_picture) != 0;
    return isEncoded || FailByNumber(m_picture.error_code, message);
}

// Whether the library, which counts positions in a picture in 32 bits, can read the rows where they are.
bool HasPlainRows(const CPixelView& picture)
{
    return picture.Stride > 0 && int64_t {picture.Stride} * picture.Height <= INT32_MAX;
}
}

bool WebPFormat::IsStart(const ZVByteSpan& bytes)
{
    const uint8_t* const start = bytes.Find(0, StartSize);
    return start != nullptr && memcmp(start, OuterStart, strlen(OuterStart)) == 0 &&
           memcmp(start + InnerPosition, InnerStart, strlen(InnerStart)) == 0;
}

bool WebPFormat::Decode(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message)
{
    const CWebPFunctions* const library = OpenOnce<CWebPFunctions>(FileName);
    WebPDecoderConfig config;
    if (library == nullptr || library->WebPInitDecoderConfigInternal(&config, WEBP_DECODER_ABI_VERSION) == 0)
    {
        message = MissingMessage;
        return false;
    }
    const uint8_t* const data = bytes.Find(0, 0);
    const auto size = static_cast<size_t>(bytes.GetSize());
    int error = library->WebPGetFeaturesInternal(data, size, &config.input, WEBP_DECODER_ABI_VERSION);
    if (error != VP8_STATUS_OK)
        return FailByNumber(error, message);
    if (config.input.has_animation != 0)
    {
        message = "it is an animation";
        return false;
    }
    if (!limits.Allow(config.input.width, config.input.height, message))
        return false;

    const ZVImageSize fit = ShrinkPixels::FindFit({config.input.width, config.input.height}, limits.FittingSize);
    pixels = CPixels(fit.Width, fit.Height);
    config.options.use_scaling = fit.Width != config.input.width || fit.Height != config.input.height ? 1 : 0;
    config.options.scaled_width = fit.Width;
    config.options.scaled_height = fit.Height;
    config.output.colorspace = MODE_BGRA;
    config.output.is_external_memory = 1;
    config.output.u.RGBA.rgba = pixels.Row(0);
    config.output.u.RGBA.stride = pixels.View().Stride;
    config.output.u.RGBA.size = pixels.RowSize() * static_cast<size_t>(fit.Height);
    error = library->WebPDecode(data, size, &config);
    return error == VP8_STATUS_OK || FailByNumber(error, message);
}

bool WebPFormat::Encode(const CPixelView& picture, CByteSink& sink, std::string& message)
{
    if (std::max(picture.Width, picture.Height) > WEBP_MAX_DIMENSION)
    {
        message = "a side has more than " + std::to_string(WEBP_MAX_DIMENSION) + " pixels";
        return false;
    }
    const CWebPFunctions* const library = OpenOnce<CWebPFunctions>(FileName);
    if (library == nullptr)
    {
        message = MissingMessage;
        return false;
    }
    Encoder encoder(*library);
    return HasPlainRows(picture) ? encoder.Encode(picture, sink, message)
                                 : encoder.Encode(CPixels(picture).View(), sink, message);
}
