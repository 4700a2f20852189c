// JPEG files that no frame is saved as, but that come from elsewhere.

#include "siblings/image/ImageFixture.h"
#include "siblings/image/formats/CJPEGLibrary.h"

#include <cstdlib>

// clang-format off
#define ZV_TEST_JPEG_FUNCTIONS(function) \
    function(jpeg_std_error)             \
    function(jpeg_CreateCompress)        \
    function(jpeg_mem_dest)              \
    function(jpeg_set_defaults)          \
    function(jpeg_set_quality)           \
    function(jpeg_simple_progression)    \
    function(jpeg_start_compress)        \
    function(jpeg_write_scanlines)       \
    function(jpeg_finish_compress)       \
    function(jpeg_destroy_compress)
// clang-format on
ZV_DEFINE_FUNCTION_TABLE(CTestJPEGFunctions, ZV_TEST_JPEG_FUNCTIONS);

namespace
{
using testing::HasSubstr;

class JPEGFormatTest : public ImageTest
{
protected:
    // A file of one colour, whose channels are those of the colour space.
    static std::string Encode(J_COLOR_SPACE space, const std::vector<uint8_t>& colour, uint32_t side, bool isProgressive)
    {
        const auto* const library = OpenOnce<CTestJPEGFunctions>(CJPEGLibrary::FileName);
        jpeg_compress_struct info {};
        jpeg_error_mgr errors;
        info.err = library->jpeg_std_error(&errors);
        library->jpeg_CreateCompress(&info, JPEG_LIB_VERSION, sizeof info);
        unsigned char* bytes = nullptr;
        unsigned long count = 0;
        library->jpeg_mem_dest(&info, &bytes, &count);
        info.image_width = side;
        info.image_height = side;
        info.input_components = static_cast<int>(colour.size());
        info.in_color_space = space;
        library->jpeg_set_defaults(&info);
        library->jpeg_set_quality(&info, 100, TRUE);
        // libjpeg writes Adobe's marker for four channels.
        if (isProgressive)
            library->jpeg_simple_progression(&info);
        library->jpeg_start_compress(&info, TRUE);
        std::vector<uint8_t> pixels;
        for (uint32_t x = 0; x < side; ++x)
            pixels.insert(pixels.end(), colour.begin(), colour.end());
        for (JSAMPROW row = pixels.data(); info.next_scanline < side;)
            library->jpeg_write_scanlines(&info, &row, 1);
        library->jpeg_finish_compress(&info);
        std::string file(reinterpret_cast<char*>(bytes), count);
        library->jpeg_destroy_compress(&info);
        free(bytes);
        return file;
    }
};

TEST_F(JPEGFormatTest, MixesInks)
{
    std::string file = Encode(JCS_CMYK, {255, 128, 0, 255}, 16, false);
    m_folder.Write("adobe.jpg", file);
    // Adobe's marker is the only one of its kind; without it the channels hold ink.
    const size_t marker = file.find("\xff\xee");
    ASSERT_NE(marker, std::string::npos);
    m_folder.Write("plain.jpg", file.erase(marker, 16));
    struct Mix
    {
        const char* Name;
        Pixel Colour;
    };
    for (const Mix& mix : {
             Mix {"adobe.jpg", {0, 128, 255, 255}},
              Mix {"plain.jpg", {0, 0, 0, 255}    }
    })
    {
        const Frame picture = Load(mix.Name);
        ASSERT_EQ(picture.Width, 16) << TakeLog();
        for (size_t channel = 0; channel < 4; ++channel)
            EXPECT_NEAR(picture.At(8, 8)[channel], mix.Colour[channel], 2) << mix.Name << " " << channel;
    }
}

TEST_F(JPEGFormatTest, BoundsTheScans)
{
    const std::string file = Encode(JCS_RGB, {200, 100, 50}, 64, true);
    m_folder.Write("few.jpg", file);
    const Frame picture = Load("few.jpg");
    ASSERT_EQ(picture.Width, 64) << TakeLog();
    EXPECT_NEAR(picture.At(30, 30)[2], 200, 2);

    const std::string end = file.substr(file.size() - 2);
    const std::string lastScan = file.substr(file.rfind("\xff\xda"), file.size() - 2 - file.rfind("\xff\xda"));
    std::string many = file.substr(0, file.size() - 2);
    for (int count = 0; count < 5000; ++count)
        many += lastScan;
    m_folder.Write("many.jpg", many + end);
    EXPECT_EQ(Load("many.jpg").Width, 0);
    EXPECT_THAT(TakeLog(), HasSubstr("it has too many scans"));
}
}
