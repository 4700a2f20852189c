// Metadata of image sequences, which another library reads.

#include "mp4/model/EncodeText.h"
#include "mp4/save/SaveFixture.h"

#include <gmock/gmock.h>

namespace
{
using namespace AtomBytes;
using testing::Contains;

// Writes the metadata of the primary picture of a file to files that have the names of their types of items.
constexpr char ReadItems[] = R"(
import ctypes, sys
heif = ctypes.CDLL("libheif.so.1")
heif.heif_context_alloc.restype = ctypes.c_void_p
heif.heif_image_handle_get_metadata_type.restype = ctypes.c_char_p
context, picture, ids = ctypes.c_void_p(heif.heif_context_alloc()), ctypes.c_void_p(), (ctypes.c_uint32 * 9)()
assert heif.heif_context_read_from_file(context, sys.argv[1].encode(), None) == 0
assert heif.heif_context_get_primary_image_handle(context, ctypes.byref(picture)) == 0
for item in ids[:heif.heif_image_handle_get_list_of_metadata_block_IDs(picture, None, ids, 9)]:
    data = ctypes.create_string_buffer(heif.heif_image_handle_get_metadata_size(picture, item))
    assert heif.heif_image_handle_get_metadata(picture, item, data) == 0
    open(heif.heif_image_handle_get_metadata_type(picture, item), "wb").write(data.raw)
)";

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
    if (!Run("python3 -c 'import ctypes; ctypes.CDLL(\"libheif.so.1\")' && "
             "ffmpeg -v error -f lavfi -i testsrc2=s=64x48:d=1:r=10 -map 0 -c:v libaom-av1 -cpu-used 8 -threads 1 " +
             name))
        GTEST_SKIP() << "no image sequence can be made and read here: " << GetAt("log");
    const Bytes frames = GetFrames(name);
    ASSERT_GT(std::ranges::count(frames, '\n'), 10);
    for (const Bytes& text : {Bytes("first"), Bytes(70'000, 'x'), Bytes("y")})
    {
        Set(name, MetadataItemKind::XMP, text);
        Set(name, MetadataItemKind::Exif, "II*" + Zeros(1) + text);
        EXPECT_EQ(GetAt("mime"), text);
        // The bytes in front of the TIFF block that are passed over.
        EXPECT_EQ(GetAt("Exif"), Zeros(4) + "II*" + Zeros(1) + text);
        EXPECT_EQ(GetFrames(name), frames);
    }
    EXPECT_THAT(m_tools.Manager.Lines, Contains("1|IInfAtom::GetMetadataItemID|AddReference was successful"));
    Set(name, MetadataItemKind::XMP, "");
    EXPECT_FALSE(IsAt("mime"));
    EXPECT_EQ(GetAt("Exif"), Zeros(4) + "II*" + Zeros(1) + "y");
    Set(name, MetadataItemKind::Exif, "");
    EXPECT_FALSE(IsAt("Exif"));
    EXPECT_EQ(GetFrames(name), frames);
}
}
