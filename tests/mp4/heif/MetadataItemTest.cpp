// Metadata of image sequences, which another library reads.

#include "mp4/model/EncodeText.h"
#include "mp4/save/SaveFixture.h"

#include <gtest/gtest.h>

namespace
{
using namespace AtomBytes;

// Writes the metadata of the primary picture of a file to files that have the names of their types of items.
constexpr char ReadItems[] = R"(
import ctypes, sys
heif = ctypes.CDLL("libheif.so.1")
class Error(ctypes.Structure):
    _fields_ = [("code", ctypes.c_int), ("detail", ctypes.c_int), ("message", ctypes.c_char_p)]
def call(name, *arguments, result=Error):
    function = getattr(heif, name)
    function.restype = result
    value = function(*arguments)
    if result is Error and value.code != 0:
        sys.exit(value.message)
    return value
context = ctypes.c_void_p(call("heif_context_alloc", result=ctypes.c_void_p))
if len(sys.argv) > 1:
    call("heif_context_read_from_file", context, sys.argv[1].encode(), None)
    picture = ctypes.c_void_p()
    call("heif_context_get_primary_image_handle", context, ctypes.byref(picture))
    ids = (ctypes.c_uint32 * 9)()
    count = call("heif_image_handle_get_list_of_metadata_block_IDs", picture, None, ids, 9, result=ctypes.c_int)
    for item in map(ctypes.c_uint32, ids[:count]):
        name = call("heif_image_handle_get_metadata_type", picture, item, result=ctypes.c_char_p)
        size = call("heif_image_handle_get_metadata_size", picture, item, result=ctypes.c_size_t)
        data = ctypes.create_string_buffer(size)
        call("heif_image_handle_get_metadata", picture, item, data)
        open(name, "wb").write(data.raw)
)";

// A TIFF block with one entry, the maker of the camera.
Bytes MakeExif(const Bytes& maker)
{
    constexpr uint64_t Make = 0x010f;
    constexpr uint64_t Text = 2;
    constexpr uint64_t EndOfEntries = 26;
    return "MM" + Number(42, 2) + Number(8, 4) + Number(1, 2) + Number(Make, 2) + Number(Text, 2) + Number(maker.size() + 1, 4) +
           Number(EndOfEntries, 4) + Zeros(4) + maker + Zeros(1);
}

class MetadataItemTest : public SaveFixture
{
protected:
    MetadataItemTest() { Put("read.py", ReadItems); }

    bool Run(const std::string& command) const
    {
        return system(("cd " + m_folder + " && (" + command + ") </dev/null >log 2>&1").c_str()) == 0;
    }

    Bytes GetFrames(const std::string& name) const
    {
        EXPECT_TRUE(Run("ffmpeg -v error -y -i " + name + " -map 0 -f framemd5 frames")) << GetAt("log");
        return GetAt("frames");
    }

    // Sets metadata, or removes them if the text is empty, and saves.
    void Set(const std::string& name, MetadataItemKind kind, const Bytes& bytes) const
    {
        CMp4File film;
        ASSERT_TRUE(Open(film, name));
        film.SetMetadataItem(kind, AsBytes(bytes));
        EXPECT_EQ(film.GetLastError(), L"");
        film.Save();
        EXPECT_EQ(film.GetLastError(), L"");
        EXPECT_TRUE(Run("rm -f mime Exif; python3 read.py " + name)) << GetAt("log");
    }
};

TEST_F(MetadataItemTest, AnotherLibraryReadsWhatWasSet)
{
    const std::string name = "film.avif";
    if (!Run("python3 read.py && "
             "ffmpeg -v error -f lavfi -i testsrc2=s=64x48:d=1:r=10 -map 0 -c:v libaom-av1 -cpu-used 8 -threads 1 " +
             name))
        GTEST_SKIP() << "no image sequence can be made and read here: " << GetAt("log");
    const Bytes frames = GetFrames(name);
    ASSERT_GT(std::ranges::count(frames, '\n'), 10);
    for (const Bytes& text : {Bytes("first"), Bytes(70'000, 'x'), Bytes("y")})
    {
        Set(name, MetadataItemKind::XMP, "<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + text + "</x:xmpmeta>");
        Set(name, MetadataItemKind::Exif, MakeExif(text));
        EXPECT_EQ(GetAt("mime"), "<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + text + "</x:xmpmeta>");
        // The bytes in front of the TIFF block that are passed over.
        EXPECT_EQ(GetAt("Exif"), Number(0, 4) + MakeExif(text));
        EXPECT_EQ(GetFrames(name), frames);
    }
    Set(name, MetadataItemKind::XMP, "");
    EXPECT_FALSE(IsAt("mime"));
    EXPECT_EQ(GetAt("Exif"), Number(0, 4) + MakeExif("y"));
    Set(name, MetadataItemKind::Exif, "");
    EXPECT_FALSE(IsAt("Exif"));
    EXPECT_EQ(GetFrames(name), frames);
}
}
